#!/bin/bash
# Compares the functions that platform/include/ declares with those that the two sides of the
# seam define: exactly the declared ones, neither less nor more.
#
#   check-seam.sh --host <libphone-platform.so>   what the library exports
#   check-seam.sh --fakes <object>...             what the recording fakes define
#   check-seam.sh --self-test                     whether planted differences are found
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
include=$root/platform/include

# What the gallery alone uses and the library never calls: the host has it, the fakes do not.
host_only() {
  case $1 in
    media_index_start | media_index_stop | media_index_rescan) return 0 ;;
    media_index_get_progress | media_index_add_listener | media_index_remove_listener) return 0 ;;
    media_index_get_position | media_index_get_id_by_path) return 0 ;;
    media_index_export_user_data | media_index_import_user_data) return 0 ;;
    picture_loader_load | picture_loader_cancel | picture_loader_shutdown) return 0 ;;
    thumbnail_manager_add_listener | thumbnail_manager_remove_listener) return 0 ;;
    thumbnail_manager_shutdown) return 0 ;;
    phone_icon_view_*) return 0 ;; # the view with all its functions
    phone_main_window_add_title_widget | phone_main_window_add_bottom_widget | phone_theme_apply | phone_threads_init) return 0 ;;
  esac
  return 1
}

# The names of all functions that the headers declare. The preprocessor expands GLib's macros;
# of its output only the lines that come from the seam's own files count.
declared() {
  local header flags
  read -ra flags <<<"$(pkg-config --cflags gtk+-2.0 gconf-2.0)"
  for header in "$include"/*.h; do
    echo "#include \"$header\""
  done |
    ${CC:-cc} -std=c11 -E -x c -I "$include" "${flags[@]}" - |
    awk -v include="$include/" '
      /^# [0-9]+ "/ { ours = index($3, "\"" include) == 1; next }
      /^#/ { next }
      ours { text = text " " $0 }
      END {
        # Bodies first: inline functions, records and enumerations.
        while (match(text, /\{[^{}]*\}/)) {
          text = substr(text, 1, RSTART - 1) " ;" substr(text, RSTART + RLENGTH)
        }
        count = split(text, statements, ";")
        for (i = 1; i <= count; i++) {
          statement = statements[i]
          gsub(/__attribute__ *\(\([^;]*\)\)/, "", statement)
          gsub(/^ +/, "", statement)
          if (statement ~ /^(typedef|static|_Static_assert|struct|enum|union)/) continue
          if (!match(statement, /[A-Za-z_][A-Za-z0-9_]* *\(/)) continue
          name = substr(statement, RSTART, RLENGTH)
          gsub(/[ (]/, "", name)
          print name
        }
      }' |
    sort -u
}

# The C names that files define for others. Mangled names are C++ inside one side; names with two
# underscores are the compiler's and the linker's.
# Arguments as for nm.
defined() {
  nm --defined-only --extern-only "$@" | awk 'NF == 3 { print $3 }' |
    { grep -vE '^(_Z|__|_init$|_fini$|_edata$|_end$)|\.' || true; } | sort -u
}

# compare <side> <declared> <defined>
compare() {
  local side=$1 missing extra status=0
  missing=$(comm -23 "$2" "$3")
  extra=$(comm -13 "$2" "$3")
  local name
  for name in $missing; do
    echo "$side: $name is declared in platform/include/ and not defined"
    status=1
  done
  for name in $extra; do
    echo "$side: $name is defined and not declared in platform/include/"
    status=1
  done
  return $status
}

without_host_only() {
  local name
  while read -r name; do
    host_only "$name" || echo "$name"
  done
}

check_host() {
  declared >"$work/declared"
  defined -D "$1" >"$work/defined"
  compare host "$work/declared" "$work/defined"
}

check_fakes() {
  declared | without_host_only >"$work/declared"
  defined "$@" >"$work/defined"
  compare fakes "$work/declared" "$work/defined"
}

# An object with an empty function for every name read.
object_with() {
  sed 's/.*/void &(void) {}/' | ${CC:-cc} -w -x c -c -fPIC -o "$1" -
}

expect() {
  local what=$1 wanted=$2 line=$3 status=0
  shift 3
  "$@" >"$work/output" || status=$?
  if [ "$status" -ne "$wanted" ] || { [ -n "$line" ] && ! grep -qxF "$line" "$work/output"; }; then
    echo "self-test: $what: status $status, output:"
    cat "$work/output"
    exit 1
  fi
}

self_test() {
  declared >"$work/all"
  for name in pm_control fm_svc_mb_get_list gtk_virtual_list_store_get_type _debug_message \
    media_index_start fexplorer_finalize MMAttrsGetData; do
    grep -qx "$name" "$work/all" || { echo "self-test: $name was not read"; exit 1; }
  done
  ! grep -qE '^(_Static_assert|G_|gtk_widget|vesk_noti_cb|GTK_)' "$work/all" ||
    { echo "self-test: names were read that are no functions of the seam"; exit 1; }

  object_with "$work/whole.o" <"$work/all"
  without_host_only <"$work/all" | object_with "$work/fakes.o"
  grep -vx pm_control "$work/all" | object_with "$work/lacking.o"
  { without_host_only <"$work/all"; echo pm_kontrol; } | object_with "$work/more.o"
  ${CC:-cc} -shared -o "$work/whole.so" "$work/whole.o"
  ${CC:-cc} -shared -o "$work/lacking.so" "$work/lacking.o"
  ${CC:-cc} -shared -o "$work/more.so" "$work/more.o"

  expect "a whole host" 0 "" check_host "$work/whole.so"
  expect "whole fakes" 0 "" check_fakes "$work/fakes.o"
  expect "a missing function" 1 \
    "host: pm_control is declared in platform/include/ and not defined" \
    check_host "$work/lacking.so"
  expect "a function too many" 1 \
    "fakes: pm_kontrol is defined and not declared in platform/include/" \
    check_fakes "$work/more.o"
  expect "a missing function of the gallery's" 1 \
    "host: media_index_start is declared in platform/include/ and not defined" \
    check_host "$work/more.so"
  expect "a fake of the gallery's function" 1 \
    "fakes: media_index_start is defined and not declared in platform/include/" \
    check_fakes "$work/whole.o"
  echo "self-test: $(wc -l <"$work/all") functions, 4 planted differences found"
}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
case ${1:-} in
  --host) shift && check_host "$@" ;;
  --fakes) shift && check_fakes "$@" ;;
  --self-test) self_test ;;
  *)
    sed -n '2,8s/^# \{0,1\}//p' "$0"
    exit 2
    ;;
esac
