#!/usr/bin/env bash
# The library exports the listed names and nothing else: exported_names.sh LIBRARY LIST
set -euo pipefail

diff <(nm -D --defined-only "$1" | awk '{print $3}' | LC_ALL=C sort) \
     <(grep -v '^#' "$2" | LC_ALL=C sort) || {
    echo "left: exported by $1; right: listed in $2" >&2
    exit 1
}
