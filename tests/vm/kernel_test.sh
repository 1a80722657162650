#!/usr/bin/env bash
# Checks that the script fails with a message when it has no folder for the kernel: kernel_test.sh KERNEL
set -euo pipefail
kernel=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

refuses() { # refuses TEXT [FOLDER]: prints no folder, names TEXT on standard error, and fails
    local text=$1 status=0
    shift
    "$kernel" "$@" >"$work/out" 2>"$work/said" || status=$?
    [ "$status" -ne 0 ] || { echo "kernel $*: no failure" >&2; exit 1; }
    [ ! -s "$work/out" ] || { echo "kernel $*: printed a folder" >&2; exit 1; }
    grep -qF -- "$text" "$work/said" || { echo "kernel $*: did not say: $text" >&2; exit 1; }
}
refuses FOLDER
refuses "$work/missing" "$work/missing"
touch "$work/file"
refuses "$work/file" "$work/file"
