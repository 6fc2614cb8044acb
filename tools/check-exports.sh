#!/usr/bin/env bash
# Compares what a library exports with the list in the tree: an export is a decision.
#   tools/check-exports.sh LIBRARY LIST
set -euo pipefail
library=$1
list=$2
exported=$(nm -D --defined-only "$library" | awk '$2 ~ /[A-Z]/ {print $3}' | grep -v '^_init$\|^_fini$' | LC_ALL=C sort)
if ! diff <(grep -v '^#' "$list" | LC_ALL=C sort) <(printf '%s\n' "$exported"); then
  echo "Left: tools/exports; right: what $(basename "$library") exports." >&2
  exit 1
fi
