#!/usr/bin/env bash
# Checks which libraries the installed program loads for which work, and what it says of modules that
# are missing, cut, damaged or of another version: modules.sh BUILD OLD_MODULE SOURCE
set -euo pipefail
build=$1 old=$2 source=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build" --prefix "$work/prefix" >/dev/null
program=$work/prefix/bin/doccam
modules=$(dirname "$(find "$work/prefix" -name mjpeg.so)")
LD_LIBRARY_PATH=$(dirname "$modules")
export LD_LIBRARY_PATH
cd "$work"

fail() {
    echo "modules: $*" >&2
    exit 1
}

# loaded WORDS...: runs the program, and names the libraries that any of its processes loaded.
loaded() {
    rm -f "$work"/loader.*
    LD_DEBUG=files LD_DEBUG_OUTPUT=$work/loader "$program" "$@" >said 2>&1 || true
    for process in "$work"/loader.*; do
        grep -q "program: .*/bin/doccam$\|initialize program: .*/doccam$" "$process" || continue
        sed -nE 's/.*file=([^ ]+) \[0\];  (generating|needed|dynamically).*/\1/p' "$process"
    done | sed 's|.*/||' | sort -u
}

# expect WORK PATTERN: libraries of that pattern were loaded for the work; refuse: they were not.
expect() { loaded_by_work | grep -qE "^($2)" || fail "$1 did not load $2"; }
refuse() { ! loaded_by_work | grep -E "^($2)" || fail "$1 loaded $2"; }
loaded_by_work() { cat libraries; }

large='mjpeg\.so|formats\.so|libavcodec|libswscale|libavutil|libopencv_imgcodecs|libgdal'
"$program" --virtual capture page.png page.jpg page.tif >/dev/null

for words in --version --help list doctor "read page.png" "read page.jpg" "clean --force page.jpg"; do
    # shellcheck disable=SC2086
    loaded $words >libraries
    refuse "$words" "$large|documents\.so|libqpdf|libtiff"
    count=$(wc -l <libraries)
    [ "$count" -gt 20 ] || fail "$words: only $count libraries were seen"
    [ "$count" -lt 60 ] || fail "$words loaded $count libraries"
done

loaded pdf --force pages.pdf page.jpg page.png >libraries
expect "a PDF" 'documents\.so'
expect "a PDF" libqpdf
refuse "a PDF" "$large"
loaded --virtual capture --force page.jpg >libraries
expect "an MJPEG session" 'mjpeg\.so'
expect "an MJPEG session" libavcodec
refuse "an MJPEG session" 'formats\.so|libopencv_imgcodecs'
loaded --virtual capture --force page.tif >libraries
expect "a TIFF still" 'formats\.so'
expect "a TIFF still" libopencv_imgcodecs
loaded read page.tif >libraries
expect "the reading of a TIFF" 'formats\.so'
refuse "the reading of a TIFF" 'mjpeg\.so|libavcodec\.so'

# complains SENTENCE WORDS...: the program fails with that sentence alone, and leaves no file.
complains() {
    local sentence=$1 code=0
    shift
    "$program" "$@" >said 2>&1 || code=$?
    [ "$code" -ge 2 ] && [ "$code" -le 5 ] || fail "$*: ended with $code"
    [ "$(cat said)" = "doccam: The module $sentence; install doccam again." ] || fail "$*: $(cat said)"
    [ ! -e new.jpg ] && [ ! -e new.tif ] || fail "$* left a file"
}

for module in mjpeg formats documents; do
    file=$modules/$module.so
    new=new.jpg
    [ $module = mjpeg ] || new=new.tif
    [ $module != documents ] || new=new.pdf
    cp "$file" whole
    rm "$file"
    complains "$file is missing" --virtual capture $new
    complains "$file is missing" --virtual doctor
    [ $module != formats ] || complains "$file is missing" read page.tif
    head -c 9000 whole >"$file"
    complains "$file is damaged" --virtual capture $new
    : >"$file"
    complains "$file is damaged" --virtual capture $new
    cp whole "$file"
    printf 'X' | dd of="$file" bs=1 seek=4200 conv=notrunc status=none
    complains "$file is damaged" --virtual capture $new
    if [ $module = formats ]; then
        cp "$old" "$file"
        version=$("$program" --version)
        complains "$file is of version 0.0.1, the library of ${version#doccam }" --virtual capture $new
    fi
    other=formats
    [ $module = mjpeg ] || other=mjpeg
    cp "$modules/$other.so" "$file"
    complains "$file is the module $other" --virtual capture $new
    # What needs no module works without it.
    "$program" --version >/dev/null
    "$program" --virtual list >/dev/null
    "$program" clean --force page.jpg >/dev/null
    cp whole "$file"
done

# A host of the library sees the frames fail, and is told why.
rm "$modules/mjpeg.so"
cc -std=c99 -I"$work/prefix/include" "$source/examples/host.c" -L"$LD_LIBRARY_PATH" -ldoccam -o host
launcher=$work/prefix/libexec/doccam/doccam-virtualcam
timeout 60 "$launcher" -- ./host still.jpg >out 2>said || true
grep -qx "doccam: The module $modules/mjpeg.so is missing; install doccam again." said || fail "$(cat said)"
grep -qx "decode error." out || fail "frames were decoded without libav"
