# pb_add_module(<module path> <source>...)
# Adds the sources of one module of the library. Log lines carry the module's path,
# whichever file of its folder they stand in.
function(pb_add_module path)
  foreach(source IN LISTS ARGN)
    target_sources(pb_objects PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/${source})
    set_source_files_properties(${CMAKE_CURRENT_SOURCE_DIR}/${source}
      TARGET_DIRECTORY pb_objects
      PROPERTIES COMPILE_OPTIONS
        "-fmacro-prefix-map=${CMAKE_CURRENT_SOURCE_DIR}/${source}=${path}")
  endforeach()
endfunction()

# phone_add_service(<name> SOURCES <source>... [LIBRARIES <target>...])
# Adds one service of the host's platform as the object library phone-<name>; its code becomes
# part of libphone-platform.so.
function(phone_add_service name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
  if(NOT arg_SOURCES)
    return()
  endif()
  add_library(phone-${name} OBJECT ${arg_SOURCES})
  target_link_libraries(phone-${name} PUBLIC phone-seam pb-base PkgConfig::GTK2 ${arg_LIBRARIES})
  target_include_directories(phone-${name} PUBLIC ${PROJECT_SOURCE_DIR}/platform/host
    ${PROJECT_BINARY_DIR}/resources)
  target_compile_definitions(phone-${name} PRIVATE G_LOG_DOMAIN="phone-${name}")
  set_target_properties(phone-${name} PROPERTIES POSITION_INDEPENDENT_CODE ON)
  set_property(GLOBAL APPEND PROPERTY PHONE_SERVICES phone-${name})
endfunction()

# pb_compile_as_test(<target>)
# Compiles a target of the tests quickly: line numbers without types of locals for the debugger,
# and no UBSan in the templates of the test framework. What is tested keeps both.
function(pb_compile_as_test target)
  target_compile_options(${target} PRIVATE -g1)
  if(CMAKE_CXX_FLAGS MATCHES "undefined")
    target_compile_options(${target} PRIVATE -fno-sanitize=undefined)
  endif()
  if(NOT target STREQUAL test-headers)
    target_precompile_headers(${target} REUSE_FROM test-headers)
  endif()
endfunction()

# pb_add_test(<name> SOURCES <source>... [LIBRARIES <target>...] [LABELS <label>...])
# A test program: every test in it runs in a process of its own. Library tests name
# pb_objects and fake-platform, host tests the phone-<service> libraries they link.
# WHOLE_STACKS: under ASan, stacks are unwound through libraries without frame pointers too, which
# takes four times as long, for leaks that tools/lsan.supp knows by a function further out.
# Labels: display (needs an X server), dbus (needs a session bus), threads (runs under TSan too).
function(pb_add_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "WHOLE_STACKS" "" "SOURCES;LIBRARIES;LABELS")
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} test-support PkgConfig::GTK2
    GTest::gmock GTest::gtest)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/tests)
  pb_compile_as_test(${name})
  set(PB_DEFAULT_LABELS ${arg_LABELS})
  if(NOT arg_LABELS)
    set(PB_DEFAULT_LABELS plain)
  endif()
  if(threads IN_LIST PB_DEFAULT_LABELS)
    add_dependencies(threads-tests ${name})
  endif()
  set(whole_stacks)
  if(arg_WHOLE_STACKS)
    set(whole_stacks ENVIRONMENT_MODIFICATION
      ASAN_OPTIONS=path_list_append:fast_unwind_on_malloc=0)
  endif()
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST TEST_PREFIX ${name}.
    PROPERTIES LABELS "${PB_DEFAULT_LABELS}" TIMEOUT 120 ${whole_stacks})
endfunction()
