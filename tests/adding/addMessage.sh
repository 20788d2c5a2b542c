#!/usr/bin/env bash
# Follows docs/adding-a-message.md in a copy of the project, and runs the copy's tests: what the page leaves out, or says
# wrongly, fails here. Holds the page to what it promises, at most 7 files and 25 lines.
#   addMessage.sh SOURCE_FOLDER WORK_FOLDER
set -euo pipefail
source=$1 work=$2
rm -rf "$work"/{new,block*}
mkdir -p "$work"/{new,tree}
tar -C "$source" --exclude=./build --exclude=./.git -cf - . | tar -C "$work/new" -xf -
cd "$work/new"

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

# What an earlier run has compiled serves again: only files that differ are put in place.
(cd "$work/tree" && find . -type f) | while read -r file; do
    [ -e "$file" ] || rm "$work/tree/$file"
done
find . -type f | while read -r file; do
    cmp -s "$file" "$work/tree/$file" || install -D -m "$(stat -c %a "$file")" "$file" "$work/tree/$file"
done
cd "$work/tree"

# A host of the new message, by the typed front.
cat >"$work/host.cpp" <<'EOF'
#include "vek/api/vekParams2ASCII.hpp"
#include <iostream>
int main(int, char **arguments) {
    const auto shutter = vek::parse<vek::Shutter>(arguments[1]);
    std::cout << shutter->shutter.c_str() << ' ' << shutter->openTime << '\n' << vek::print(*shutter) << '\n';
}
EOF

# Unoptimised, for the time it takes.
run() {
    "$@" >>"$work/log.txt" 2>&1 || { tail -n 30 "$work/log.txt" >&2; exit 1; }
}
: >"$work/log.txt"
run cmake -S . -B "$work/build" -G Ninja -DCMAKE_BUILD_TYPE= -DVEK_DEVELOPER=ON -DVEK_TESTS=ON -DVEK_UNITY=ON
run cmake --build "$work/build" --target reference recordTests modelTests vekParams2ASCII
grep -q '4120' docs/messages.md
run c++ -std=c++20 -I. "$work/host.cpp" -o "$work/host" -L"$work/build" -lvekParams2ASCII -lvekTypes
message=$(cat examples/messages/4120-shutter.txt)
answer=$(LD_LIBRARY_PATH=$work/build "$work/host" "$message")
[ "$answer" = "Front 12.5"$'\n'"${message/7 41/7 42}" ] || { echo "FAILED: the new message's host printed $answer" >&2; exit 1; }
(cd "$work/build" && ctest --output-on-failure -R '4120|^Samples|^Structures|^layout') | tail -n 12
