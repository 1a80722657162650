#!/usr/bin/env bash
# The library lies in the build folder's root and is known as libdoccam.so.1: soname.sh BUILD
set -euo pipefail

[ -e "$1/libdoccam.so" ]
objdump -p "$1/libdoccam.so" | grep 'SONAME *libdoccam\.so\.1$' >/dev/null
