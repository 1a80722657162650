#!/usr/bin/env bash
# Checks that installed files are hardened, by their contents and their compile commands: hardening.sh BUILD
set -euo pipefail
build=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0

fail() {
    echo "$1" >&2
    failed=1
}
shows() { # shows FILE WHAT PATTERN READELF-OPTION...
    local file=$1 what=$2 pattern=$3
    shift 3
    readelf -W "$@" "$file" | grep -E -- "$pattern" >/dev/null || fail "$file: no $what"
}

cmake --install "$build" --prefix "$work/prefix" >/dev/null
mapfile -t files < <(find "$work/prefix" -type f -exec sh -c 'readelf -h "$1" >/dev/null 2>&1' _ {} \; -print)
[ "${#files[@]}" -ge 4 ] || fail "only ${#files[@]} programs and libraries are installed"
for file in "${files[@]}"; do
    shows "$file" 'position-independent code' 'Type: +DYN' -h
    shows "$file" 'read-only relocations' GNU_RELRO -l
    shows "$file" 'binding at the start' '\(FLAGS_1\).* NOW|BIND_NOW' -d
    shows "$file" 'stack that is not run' 'GNU_STACK .* RW ' -l
    shows "$file" 'stack protector' __stack_chk_fail --dyn-syms
    if readelf -Wd "$file" | grep -E 'RPATH|RUNPATH'; then
        fail "$file: looks for libraries in places of its own"
    fi
    if command -v hardening-check >/dev/null; then
        # Not every file calls a function that can be fortified, and the C runtime's start files lack the
        # control-flow property.
        hardening-check --quiet --nofortify --nocfprotection --nobranchprotection "$file" || failed=1
    fi
done
shows "$(find "$work/prefix" -name 'libdoccam.so.*.*')" 'fortified call' '__[a-z]+_chk@' --dyn-syms

# The rest shows only in the compile commands. The virtual camera interposes fortified functions itself.
needed='-fstack-protector-strong -fstack-clash-protection -D_FORTIFY_SOURCE=2'
[ "$(uname -m)" = x86_64 ] && needed="$needed -fcf-protection=full"
commands=$(grep '"command"' "$build/compile_commands.json" | grep -E -- '-o (src|apps|virtualcam)/')
[ -n "$commands" ] || fail 'no command is known'
for flag in $needed; do
    missing=$(grep -cv -- " $flag " <<<"$commands" || true)
    [ "$missing" -eq 0 ] || fail "$missing files are compiled without $flag"
done
exit $failed
