#!/usr/bin/env bash
# Checks that the manual page is well formed and names each command, option and exit code of the
# program: manual.sh PROGRAM PAGE
set -euo pipefail
program=$1 page=$2

fail() {
    echo "$1" >&2
    exit 1
}
warnings=$(groff -ww -man -Tutf8 -z "$page" 2>&1)
[ -z "$warnings" ] || fail "$warnings"
text=$(groff -man -Tascii -P-c "$page" | sed 's/.\x08//g')

names() { grep -qE -- "(^|[^a-z-])$1([^a-z-]|\$)" <<<"$text" || fail "the manual does not name $1"; }
commands=$("$program" --help | sed -nE '/^Subcommands:/,/^$/s/^  ([a-z]+) .*/\1/p')
for command in $commands; do
    names "$command"
    for option in $("$program" "$command" --help | grep -oE -- '--[a-z-]+' | sort -u); do
        names "$option"
    done
done
for option in $("$program" --help | grep -oE -- '--[a-z-]+' | sort -u); do
    names "$option"
done
for code in $("$program" --help | sed -n '/^Exit codes:/,/^$/p' | grep -oE '[0-9]+'); do
    grep -qE "^ +$code( |\$)" <<<"$text" || fail "the manual does not name exit code $code"
done
