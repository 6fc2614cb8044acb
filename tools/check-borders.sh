#!/bin/bash
# Checks who includes whom. The folders of the tree see each other as this says and no further:
#
#   base, platform/include    themselves
#   platform/host             itself, platform/include, base, resources
#   include                   itself, platform/include
#   util, common              themselves, include, platform/include, base
#   app                       itself, include, platform/include, base
#
#   check-borders.sh [<tree>]      prints every include that goes further; status 1 if there is one
#   check-borders.sh --self-test   whether planted includes of that kind are found
set -euo pipefail

tools=$(cd "$(dirname "$0")" && pwd)

# may_include <area> <area>
may_include() {
  case $1 in
    base | platform/include) [ "$2" = "$1" ] ;;
    platform/host) [[ $2 =~ ^(platform/host|platform/include|base|resources)$ ]] ;;
    include) [[ $2 =~ ^(include|platform/include)$ ]] ;;
    util | common) [[ $2 =~ ^(util|common|include|platform/include|base)$ ]] ;;
    app) [[ $2 =~ ^(app|include|platform/include|base)$ ]] ;;
  esac
}

# Sets area to the part of the tree that a path of the tree lies in.
find_area() {
  case $1 in
    platform/include/* | platform/host/*) area=${1%"${1#platform/*/}"} && area=${area%/} ;;
    */*) area=${1%%/*} ;;
    *) area=. ;;
  esac
}

# Sets clean to a path without "." and "..".
tidy() {
  local part parts=() rest=()
  IFS=/ read -ra rest <<<"$1"
  for part in "${rest[@]}"; do
    case $part in
      "" | .) ;;
      ..) [ ${#parts[@]} -eq 0 ] || unset 'parts[-1]' ;;
      *) parts+=("$part") ;;
    esac
  done
  clean=$(IFS=/ && echo "${parts[*]}")
}

# Sets found to the file of the tree that an include names, or to nothing. The folder of the
# including file comes first, then every folder that some target searches.
resolve() {
  local directory=$1 name=$2 place
  for place in "$directory" include platform/include base platform/host . util common app; do
    if [ -e "$place/$name" ]; then
      tidy "$place/$name"
      found=$clean
      return
    fi
  done
  found=
}

check_tree() {
  cd "$1"
  local folder folders=() file line name here clean found area status=0
  for folder in base include util common app platform/include platform/host; do
    [ ! -d "$folder" ] || folders+=("$folder")
  done
  while IFS=: read -r file line name; do
    name=${name#*[\"<]}
    name=${name%%[\">]*}
    resolve "${file%/*}" "$name"
    [ -n "$found" ] || continue
    find_area "$file" && here=$area
    find_area "$found"
    if ! may_include "$here" "$area"; then
      echo "$file:$line: $here does not see $found"
      status=1
    fi
  done < <(grep -rnE '^[[:space:]]*#[[:space:]]*include[[:space:]]*[<"]' "${folders[@]}" \
    --include='*.h' --include='*.hpp' --include='*.c' --include='*.cpp')
  return $status
}

# plant <file> <include> <message>: a copy of the tree with this include must be found.
plant() {
  local tree=$work/tree
  rm -rf "$tree"
  cp -r "$work/clean" "$tree"
  mkdir -p "$tree/$(dirname "$1")"
  printf '#include <glib.h>\n#include %s\n' "$2" >"$tree/$1"
  if ("$tools/check-borders.sh" "$tree") >"$work/output" || ! grep -qxF "$3" "$work/output"; then
    echo "self-test: $2 in $1 was not found"
    cat "$work/output"
    exit 1
  fi
  planted=$((planted + 1))
}

self_test() {
  work=$(mktemp -d)
  trap 'rm -rf "$work"' EXIT
  local planted=0 folder
  for folder in base include platform/include platform/host/planted common/planted util app; do
    mkdir -p "$work/clean/$folder"
  done
  touch "$work"/clean/{base/owner.hpp,include/pb-planted.h,platform/include/phone-planted.h}
  touch "$work"/clean/{platform/host,common}/planted/private.hpp "$work/clean/app/screen.hpp"
  cp -r "$work/clean" "$work/tree"
  printf '#include <%s>\n' pb-planted.h phone-planted.h owner.hpp gtk/gtk.h \
    >"$work/tree/app/allowed.cpp"
  printf '#include "%s"\n' ../common/planted/private.hpp phone-planted.h missing.h \
    >"$work/tree/util/allowed.cpp"
  "$tools/check-borders.sh" "$work/tree" || { echo "self-test: an allowed include was found" && exit 1; }

  plant platform/host/planted/a.cpp '<pb-planted.h>' \
    'platform/host/planted/a.cpp:2: platform/host does not see include/pb-planted.h'
  plant platform/host/planted/a.cpp '"common/planted/private.hpp"' \
    'platform/host/planted/a.cpp:2: platform/host does not see common/planted/private.hpp'
  plant platform/include/a.h '<owner.hpp>' \
    'platform/include/a.h:2: platform/include does not see base/owner.hpp'
  plant platform/include/a.h '<pb-planted.h>' \
    'platform/include/a.h:2: platform/include does not see include/pb-planted.h'
  plant app/a.cpp '"../common/planted/private.hpp"' \
    'app/a.cpp:2: app does not see common/planted/private.hpp'
  plant app/sub/a.cpp '"../../platform/host/planted/private.hpp"' \
    'app/sub/a.cpp:2: app does not see platform/host/planted/private.hpp'
  plant util/a.cpp '"planted/private.hpp"' \
    'util/a.cpp:2: util does not see platform/host/planted/private.hpp'
  plant common/b/a.hpp '"../../platform/host/planted/private.hpp"' \
    'common/b/a.hpp:2: common does not see platform/host/planted/private.hpp'
  plant common/b/a.cpp '"app/screen.hpp"' 'common/b/a.cpp:2: common does not see app/screen.hpp'
  plant include/a.h '"owner.hpp"' 'include/a.h:2: include does not see base/owner.hpp'
  plant base/a.hpp '<pb-planted.h>' 'base/a.hpp:2: base does not see include/pb-planted.h'
  echo "self-test: $planted planted includes found"
}

case ${1:-} in
  --self-test) self_test ;;
  -*)
    sed -n '2,12s/^# \{0,1\}//p' "$0"
    exit 2
    ;;
  *) check_tree "${1:-$tools/..}" ;;
esac
