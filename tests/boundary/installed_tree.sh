#!/usr/bin/env bash
# A C host builds against an installed tree with pkg-config, and with CMake, and takes a still with
# the virtual camera; so does the installed command line: installed_tree.sh BUILD SOURCE LAUNCHER
set -euo pipefail
build=$1 source=$2 launcher=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build" --prefix "$work/prefix" >/dev/null
libraries=$(dirname "$(find "$work/prefix" -name libdoccam.so)")
export PKG_CONFIG_PATH=$libraries/pkgconfig

# shellcheck disable=SC2046
cc -std=c99 -Wall -Wextra -Werror -pedantic "$source/examples/host.c" \
    $(pkg-config --cflags --libs doccam) -o "$work/host"
LD_LIBRARY_PATH=$libraries "$launcher" -- "$work/host" "$work/page.jpg"
[ "$(head -c 2 "$work/page.jpg" | od -An -tx1)" = " ff d8" ]

mkdir "$work/consumer"
cat >"$work/consumer/CMakeLists.txt" <<'CMAKE'
cmake_minimum_required(VERSION 3.25)
project(consumer LANGUAGES C)
find_package(doccam 1 REQUIRED)
add_executable(consumer host.c)
target_link_libraries(consumer PRIVATE doccam::doccam)
CMAKE
cp "$source/examples/host.c" "$work/consumer"
cmake -S "$work/consumer" -B "$work/consumer/build" -DCMAKE_PREFIX_PATH="$work/prefix" >/dev/null
cmake --build "$work/consumer/build" >/dev/null
"$launcher" -- "$work/consumer/build/consumer" "$work/again.jpg"
[ -s "$work/again.jpg" ]

# The command line finds its virtual camera in the tree.
"$work/prefix/bin/doccam" --virtual capture --size 640x480 "$work/still.png"
[ -s "$work/still.png" ]
