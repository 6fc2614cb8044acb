set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_INTERPROCEDURAL_OPTIMIZATION_RELEASE OFF)

add_compile_options(-Wall -Wextra -Wshadow -Wformat=2 -Wno-deprecated-declarations
  -Wno-missing-field-initializers -fstack-protector-strong)
option(PB_WERROR "Warnings are errors" ON)
if(PB_WERROR)
  add_compile_options(-Werror)
endif()

# Requests that GLib offers only when asked: no single-include surprises, no GTK+ 3 names.
add_compile_definitions(_GNU_SOURCE _FILE_OFFSET_BITS=64)

find_program(PB_CCACHE ccache)
if(PB_CCACHE)
  # Precompiled headers are cached too; they hold no time stamps that matter. What is not in the
  # cache is read once, by the compiler, which says what it read.
  set(launcher ${CMAKE_COMMAND} -E env CCACHE_DEPEND=1
    CCACHE_SLOPPINESS=pch_defines,time_macros ${PB_CCACHE})
  set(CMAKE_C_COMPILER_LAUNCHER ${launcher})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${launcher})
  add_compile_options(-fpch-preprocess)
endif()
find_program(PB_LLD ld.lld)
if(PB_LLD)
  add_link_options(-fuse-ld=lld)
endif()
