#!/usr/bin/env bash
# Follows docs/adding-a-message.md in a copy of the project, and runs the copy's tests: what the page leaves out, or says
# wrongly, fails here. Holds the page to what it promises, at most 7 files and 25 lines.
#   addMessage.sh SOURCE_FOLDER WORK_FOLDER
set -euo pipefail
source=$1 work=$2
rm -rf "$work"
mkdir -p "$work/tree"
tar -C "$source" --exclude=./build --exclude=./.git -cf - . | tar -C "$work/tree" -xf -
cd "$work/tree"

# Each block of the page as a file, and a list of where they go: BLOCK, file, text in front of which it belongs.
awk -v out="$work" '
    /^<!-- .* -->$/ { place = substr($0, 6, length($0) - 9); next }
    /^```/ { inside = !inside && place != ""; if (inside) { block = out "/block" ++count; printf "" > block
             split(place, part, / ?\| ?/); print block "\t" part[1] "\t" part[2] } else place = ""; next }
    inside { print > block }' docs/adding-a-message.md >"$work/steps"

while IFS=$'\t' read -r block file before; do
    echo "$file"
    if [ -z "$before" ]; then
        head -c -1 "$block" >"$file" # a message has no line break at its end
        continue
    fi
    [ "$(grep -cF -- "$before" "$file")" -eq 1 ] || { echo "FAILED: not one place for '$before' in $file" >&2; exit 1; }
    BEFORE=$before awk -v block="$block" '
        BEGIN { while ((getline line < block) > 0) text = text line "\n" }
        at = index($0, ENVIRON["BEFORE"]) { printf "%s%s%s\n", substr($0, 1, at - 1), text, substr($0, at); next }
        { print }' "$file" >"$work/changed"
    cp "$work/changed" "$file"
done <"$work/steps" | sort -u >"$work/files"

files=$(wc -l <"$work/files")
lines=$(cat "$work"/block* | grep -c .)
echo "A message of two keys: $files files, $lines lines"
[ "$files" -le 7 ] && [ "$lines" -le 25 ] && [ "$files" -ge 6 ]

cmake -S . -B "$work/build" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DVEK_DEVELOPER=ON -DVEK_BENCH=OFF >"$work/build.txt"
cmake --build "$work/build" --target reference recordTests modelTests frontTests referenceTests vekParams2ASCII >>"$work/build.txt" ||
    { tail -n 30 "$work/build.txt" >&2; exit 1; }
grep -q '4120' docs/messages.md
(cd "$work/build" && ctest --output-on-failure -R '4120|^Samples|^Structures|^Front|^reference|^layout') | tail -n 12
