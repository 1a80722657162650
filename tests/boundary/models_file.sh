#!/usr/bin/env bash
# Checks that a table of models replaces the built-in one when the library loads, and that a malformed
# one is reported with its line instead: models_file.sh BUILD SOURCE LAUNCHER
set -euo pipefail
build=$1 source=$2 launcher=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cc -std=c99 -I"$source/include" "$source/examples/host.c" -L"$build" -ldoccam -o "$work/host"

host() { # host TABLE: runs the host with a table of models, its output in $work/said
    DOCCAM_MODELS=$1 LD_LIBRARY_PATH=$build "$launcher" -- "$work/host" "$work/page.jpg" \
        >/dev/null 2>"$work/said" || return $?
}
fail() {
    echo "$1" >&2
    cat "$work/said" >&2
    exit 1
}

echo '0c45:6366  # the second of the two cameras' >"$work/one"
host "$work/one" || fail "no camera found with a table of its model"
grep -q 'camera:  Doc Cam$' "$work/said" || fail "the table did not replace the built-in one"

echo 'ffff:0001' >"$work/other"
code=0
host "$work/other" || code=$?
[ "$code" -eq 3 ] || fail "a camera was found that is not in the table"

printf '1778:0210\n1778-0214\n' >"$work/malformed"
host "$work/malformed" || fail "a malformed table left no camera"
grep -q "^doccam: $work/malformed:2: expected vvvv:pppp" "$work/said" || fail "no line names the row"

host "$work/missing" || fail "a missing table left no camera"
[ "$(grep -c "^doccam: $work/missing: " "$work/said")" -eq 1 ] || fail "no line names the file"

host "$work/$(printf '\033[2J')" || fail "a table with an odd name left no camera"
grep -qF "doccam: $work/\\x1b[2J: " "$work/said" || fail "a name reached the terminal as it is"

host '' || fail "an empty name left no camera"
! grep -q '^doccam: ' "$work/said" || fail "an empty name was taken for a file's"
