#!/usr/bin/env bash
# Checks that the installed tree suffices: a host in C and one in C++ are built outside it, each with
# pkg-config and with CMake, and take a picture with the virtual camera, as does the installed command
# line: installed_tree.sh BUILD SOURCE LAUNCHER
set -euo pipefail
build=$1 source=$2 launcher=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
warnings=(-Wall -Wextra -Werror -pedantic)

cmake --install "$build" --prefix "$work/prefix" >/dev/null
libraries=$(dirname "$(find "$work/prefix" -name libdoccam.so)")
export PKG_CONFIG_PATH=$libraries/pkgconfig

fail() {
    echo "installed_tree: $*" >&2
    exit 1
}

# run PICTURE FIRST_BYTES HOST: runs HOST, which must write PICTURE, beginning with FIRST_BYTES.
run() {
    LD_LIBRARY_PATH=$libraries "$launcher" -- "$3" "$1"
    [ "$(head -c 2 "$1" | od -An -tx1)" = "$2" ] || fail "$3 wrote no picture"
}

# flags PACKAGE: pkg-config's output, one flag per line.
flags() {
    pkg-config --cflags --libs "$1" | xargs -n1
}

# configure FOLDER LANGUAGE TARGET OPTIONS...: configures a project whose one host links TARGET.
configure() {
    local folder=$1 language=$2 target=$3 host=host.c
    shift 3
    [ "$language" = C ] || host=host.cpp
    mkdir "$folder"
    cp "$source/examples/$host" "$folder"
    cat >"$folder/CMakeLists.txt" <<CMAKE
cmake_minimum_required(VERSION 3.25)
project(consumer LANGUAGES $language)
find_package(doccam 1 REQUIRED)
add_executable(consumer $host)
target_link_libraries(consumer PRIVATE $target)
target_compile_features(consumer PRIVATE $([ "$language" = C ] && echo c_std_99 || echo cxx_std_20))
target_compile_options(consumer PRIVATE ${warnings[*]})
CMAKE
    cmake -S "$folder" -B "$folder/build" -DCMAKE_PREFIX_PATH="$work/prefix" "$@" >/dev/null
}

mapfile -t c_flags < <(flags doccam)
mapfile -t cpp_flags < <(flags doccam-opencv)
# A host in C must not need OpenCV.
[[ ${c_flags[*]} != *opencv* ]] || fail "doccam.pc names OpenCV: ${c_flags[*]}"

cc -std=c99 "${warnings[@]}" "$source/examples/host.c" "${c_flags[@]}" -o "$work/c_host"
run "$work/c.jpg" " ff d8" "$work/c_host"

c++ -std=c++20 "${warnings[@]}" "$source/examples/host.cpp" "${cpp_flags[@]}" -o "$work/cpp_host"
run "$work/cpp.png" " 89 50" "$work/cpp_host"

configure "$work/c" C doccam::doccam -DCMAKE_DISABLE_FIND_PACKAGE_OpenCV=ON
cmake --build "$work/c/build" >/dev/null
run "$work/c_again.jpg" " ff d8" "$work/c/build/consumer"

configure "$work/cpp" CXX doccam::opencv
cmake --build "$work/cpp/build" >/dev/null
run "$work/cpp_again.png" " 89 50" "$work/cpp/build/consumer"

# The C header also compiles as C++.
echo '#include <doccam/doccam.h>' |
    c++ -std=c++20 "${warnings[@]}" "${c_flags[@]}" -x c++ -fsyntax-only -

# The service starts the installed program; without systemd no more can be checked.
service=$work/prefix/lib/systemd/user/doccam.service
program=$(sed -n 's/^ExecStart=\([^ ]*\) .*/\1/p' "$service")
[ -x "$work/prefix/bin/$program" ] || fail "the service starts \"$program\", which is not installed"

# The command line finds its virtual camera in the tree.
LD_LIBRARY_PATH=$libraries "$work/prefix/bin/doccam" --virtual capture --size 640x480 "$work/still.png"
[ -s "$work/still.png" ]
