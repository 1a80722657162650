#!/usr/bin/env bash
# Checks that only exports/ uses exported names and includes public headers, apart from the shared
# types, modules being linked without the library; that a room includes only those below it; and that a folder of src or apps holds at most
# twelve subjects, a subject being a source and its header.
#   rooms.sh OBJECTS SOURCE
set -euo pipefail
objects=$1 source=$2
failed=0

exported=$(grep -v '^#' "$source/tests/boundary/exported_names.txt" | LC_ALL=C sort)
for room in $(cd "$source/src" && find . -name '*.cpp' -not -path './exports/*' \
    -not -path './modules/*' -printf '%P\n'); do
    wanted=$(nm --undefined-only -P "$objects/$room.o" | awk '{print $1}' | LC_ALL=C sort |
        LC_ALL=C comm -12 - <(echo "$exported"))
    [ -z "$wanted" ] || { echo "rooms: $room calls" $wanted >&2; failed=1; }
done

public=$(grep -rnE '#include <doccam/' "$source/src" --include='*.h' --include='*.cpp' |
    grep -v "^$source/src/exports/" | grep -v '<doccam/types.h>' || true)
[ -z "$public" ] || { echo "rooms: public headers in rooms:" >&2; echo "$public" >&2; failed=1; }

while read -r room below; do
    parent=${room%/*}
    [ "$parent" != "$room" ] && prefix="$parent/" || prefix=
    above=$(grep -rhoE "^#include \"$prefix[a-z]+/" "$source/src/$room" | cut -d'"' -f2 | sed 's|/$||' | sort -u |
        grep -vxE "$room|${below// /|}" || true)
    [ -z "$above" ] || { echo "rooms: $room includes" $above >&2; failed=1; }
done <<'END'
base none
base/handles none
base/files base/handles
base/modules base/files
base/pictures base/handles base/modules
state base
faults base state
discovery base state
decode base
docimage base state
docimage/pixels none
docimage/turn docimage/pixels
docimage/sheet docimage/pixels
docimage/clean docimage/pixels docimage/sheet
page base
page/paper none
page/search none
output base state faults docimage page
output/files none
output/pdf output/files
output/still output/files output/pdf
barcode base state
codes base
codes/readers none
preview base state
capture base state faults discovery decode docimage page output barcode preview
exports base state faults discovery decode docimage page output barcode codes preview capture
modules base decode
modules/formats none
modules/mjpeg none
modules/seal none
END

above=$(cd "$source" && grep -rnE "^#include \"(state|faults|discovery|decode|docimage|page|output|barcode|preview|capture|exports|modules)/" \
    apps examples || true)
# Hosts have a folder codes/, too.
own=$(cd "$source/src" && find codes -name '*.h' | paste -sd '|' | sed 's/\./\\./g')
above+=$(cd "$source" && grep -rnE "^#include \"($own)\"" apps examples || true)
[ -z "$above" ] || { echo "rooms: hosts include rooms other than base:" >&2; echo "$above" >&2; failed=1; }

while read -r folder; do
    count=$(find "$folder" -maxdepth 1 -type f \( -name '*.cpp' -o -name '*.h' -o -name '*.js' \) -printf '%f\n' |
        sed 's/\.[^.]*$//' | sort -u | wc -l)
    [ "$count" -le 12 ] || { echo "rooms: $count subjects in ${folder#"$source"/}" >&2; failed=1; }
done < <(find "$source/src" "$source/apps" -type d)
exit "$failed"
