#!/usr/bin/env bash
# Checks that a suite fails when a case fails or its process ends early, and that the output names
# the case: suite_test.sh SUITE ENDINGS
set -euo pipefail
suite=$1 endings=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

run() { # run CASE...: the suite of those cases, its output in $work/output, its status in $status
    status=0
    "$suite" "$work" "GTEST_FILTER=$(printf ':Ending.%s' "$@")" "$endings" >"$work/output" || status=$?
}
expect() { # expect TEXT
    grep -qF -- "$1" "$work/output" && return
    echo "missing in the output: $1" >&2
    cat "$work/output" >&2
    exit 1
}
fail() {
    echo "$1" >&2
    cat "$work/output" >&2
    exit 1
}

run Passes IsSkipped
[ "$status" -eq 0 ] || fail "a suite without a failure failed"
expect '[  PASSED  ] 1 test.'
expect '[  SKIPPED ] Ending.IsSkipped'
! grep -q '\] Ending\.Passes' "$work/output" || fail "a passed case is listed"

for ending in Fails Aborts LeavesWithSuccess; do
    run Passes "$ending"
    [ "$status" -ne 0 ] || fail "the suite passed with a case that $ending"
    expect "Ending.$ending"
done
[ -z "$(find "$work" -name 'suite-*')" ] || { echo "a suite left a file" >&2; exit 1; }
