#!/usr/bin/env bash
# Makes the zip for Windows, builds the two outside hosts against what it holds, and runs them under Wine.
#   windowsZip.sh SOURCE_FOLDER BUILD_FOLDER C_COMPILER CXX_COMPILER WINE_RUN
set -euo pipefail
source=$1 build=$2 cc=$3 cxx=$4 wineRun=$5
work=$build/packageTest
rm -rf "$work"
mkdir -p "$work/unpacked"

(cd "$build" && cpack -B "$work/packages" >"$work/cpack.txt")
(cd "$work/unpacked" && cmake -E tar xf "$work"/packages/*.zip)
root=$(find "$work/unpacked" -name 'vekParams2ASCII-*' -type d | head -n 1)
for file in bin/vekParams2ASCII.dll bin/vekInspect.dll bin/vekmsg.exe lib/libvekParams2ASCII.dll.a lib/vekParams2ASCII.def lib/libvekTypes.a \
    include/vek/api/vekParams2ASCII.h include/vek/api/vekParams2ASCII.hpp \
    doc/{README.md,CHANGELOG.md,copyright,vekParams2ASCII.3,docs/messages.md,examples/host.cpp}; do
    [ -f "$root/$file" ] || { echo "FAILED: $file is not in the zip" >&2; exit 1; }
done

"$source/tests/package/installedTree.sh" "$root" 50

# Hosts find the DLL in their own folder.
flags=(-Wall -Wextra -Wpedantic -Werror -I"$root/include")
libraries=("$root/lib/libvekTypes.a" "$root/lib/libvekParams2ASCII.dll.a" -static -fstack-protector-strong)
"$cc" -std=c99 "${flags[@]}" "$source/examples/host.c" -o "$root/bin/hostInC.exe" "${libraries[@]}"
"$cxx" -std=c++20 "${flags[@]}" "$source/examples/host.cpp" -o "$root/bin/hostInCpp.exe" "${libraries[@]}"
for host in hostInC hostInCpp; do
    "$wineRun" "$root/bin/$host.exe" >"$work/$host.txt" || exit
    grep -q '^@@41' "$work/$host.txt"
done
echo "The hosts run against what the zip holds."
