#!/bin/bash
# Checks that every text that the code asks for is there, in every language of the string files.
# A number from 1000 to 1220 in util, common or app is a text of the package, one from 10000 to
# 10999 a text of the phone, unless something is computed with it or it stands in a constant named
# as a quantity or a bound (kLongestMs, kLineSize, kFirst..., kLast..., kMax..., kMin...).
#
#   check-strings.sh [<tree>]      prints every text that is missing; status 1 if there is one
#   check-strings.sh --self-test   whether planted gaps of that kind are found
set -euo pipefail

tools=$(cd "$(dirname "$0")" && pwd)

# Prints "file:line number" for each text that the sources name.
list_used() {
  find util common app \( -name '*.cpp' -o -name '*.hpp' \) -exec awk '
    function is_text(number) {
      return number ~ /^[0-9]+$/ && ((number >= 1000 && number <= 1220) ||
                                     (number >= 10000 && number <= 10999))
    }
    {
      line = $0
      gsub(/"[^"]*"/, "", line)
      sub(/\/\/.*/, "", line)
      if (line ~ /k([A-Z][A-Za-z]*)?(Ms|Us|Bytes|Size|Limit|Count)[[:space:]]*[={]/) next
      if (line ~ /k(First|Last|Max|Min)[A-Za-z]*[[:space:]]*[={]/) next
      while (match(line, /[A-Za-z0-9_.\047]+/)) {
        word = substr(line, RSTART, RLENGTH)
        before = before substr(line, 1, RSTART - 1)
        line = substr(line, RSTART + RLENGTH)
        if (is_text(word) && before !~ /[-+*\/%<>][[:space:]]*$/ &&
            line !~ /^[[:space:]]*[-+*\/%<>]/) print FILENAME ":" FNR " " word
        before = word
      }
      before = ""
    }' {} +
}

# check_file <string file> <first> <last>: every text in use and every translation is in the file.
check_file() {
  local file=$1 first=$2 last=$3 place number language
  local languages
  languages=$(sed -n 's/^[0-9]*\[\([A-Za-z_@]*\)\]=.*/\1/p' "$file" | sort -u)
  while read -r place number; do
    [ "$number" -ge "$first" ] && [ "$number" -le "$last" ] || continue
    if ! grep -q "^$number=." "$file"; then
      echo "$place: $file has no text $number"
      status=1
    fi
  done <<<"$used"
  while read -r number; do
    for language in $languages; do
      if ! grep -q "^$number\[$language\]=." "$file"; then
        echo "$file: text $number is missing in the language $language"
        status=1
      fi
    done
  done < <(sed -n 's/^\([0-9]*\)=.*/\1/p' "$file")
}

check_tree() {
  cd "$1"
  status=0
  used=$(list_used)
  if [ -z "$used" ]; then
    echo "No text is used anywhere, so nothing was checked."
    exit 1
  fi
  check_file resources/strings/pb-res-string.ini 1000 1220
  check_file resources/strings/system-strings.ini 10000 10999
  return "$status"
}

# plant <file> <line> <message>: a copy of the tree with this further line must be found wanting.
plant() {
  rm -rf "$work/tree"
  cp -r "$work/clean" "$work/tree"
  echo "$2" >>"$work/tree/$1"
  if ("$tools/check-strings.sh" "$work/tree") >"$work/output" || ! grep -qxF "$3" "$work/output"; then
    echo "self-test: the gap in $1 was not found: $2"
    cat "$work/output"
    exit 1
  fi
}

self_test() {
  work=$(mktemp -d)
  trap 'rm -rf "$work"' EXIT
  mkdir -p "$work"/clean/{util,common,app,resources/strings}
  printf '[Strings]\n1001=One\n1001[de]=Eins\n' >"$work/clean/resources/strings/pb-res-string.ini"
  printf '[Strings]\n10035=Wait\n10035[de]=Warte\n' \
    >"$work/clean/resources/strings/system-strings.ini"
  cat >"$work/clean/util/a.cpp" <<'END'
constexpr int kTitle = 1001;  // and not 1002
constexpr int kText{10035};
constexpr int kLongestMs = 10000;
constexpr int kLast = 1058;
int seconds(int ms) { return ms / 1000 + 1000 * 2; }
const char *text = "1003";
const int many = 10'001;
END
  "$tools/check-strings.sh" "$work/clean" || { echo "self-test: a sound tree was refused" && exit 1; }

  local package=resources/strings/pb-res-string.ini phone=resources/strings/system-strings.ini
  plant util/a.cpp 'constexpr int kOther = 1002;' "util/a.cpp:8: $package has no text 1002"
  plant util/a.cpp 'show(kTitle, pb_get_res_string(1219));' "util/a.cpp:8: $package has no text 1219"
  plant util/a.cpp 'constexpr Text kUser{1218, "User"};' "util/a.cpp:8: $package has no text 1218"
  plant util/a.cpp 'case 4: return 10036;' "util/a.cpp:8: $phone has no text 10036"
  plant $package '1004=Four' "$package: text 1004 is missing in the language de"
  plant $phone '10035[fr]=' "$phone: text 10035 is missing in the language fr"
  echo "self-test: every planted gap found"
}

case ${1:-} in
  --self-test) self_test ;;
  -*)
    sed -n '2,8s/^# \{0,1\}//p' "$0"
    exit 2
    ;;
  *) check_tree "${1:-$tools/..}" ;;
esac
