#!/usr/bin/env bash
# Checks that the library is in the build folder's root, with the soname libdoccam.so.1: soname.sh BUILD
set -euo pipefail

[ -e "$1/libdoccam.so" ]
objdump -p "$1/libdoccam.so" | grep 'SONAME *libdoccam\.so\.1$' >/dev/null
