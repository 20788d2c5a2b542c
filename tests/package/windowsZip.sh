#!/usr/bin/env bash
# Makes the zip for Windows, twice the same, builds the outside hosts against what it holds by MinGW, and one by
# Microsoft's C++ ABI and a linker like Microsoft's, and runs them under Wine.
#   windowsZip.sh SOURCE_FOLDER BUILD_FOLDER C_COMPILER CXX_COMPILER WINE_RUN WINDRES VERSION
set -euo pipefail
source=$1 build=$2 cc=$3 cxx=$4 wineRun=$5 windres=$6 version=$7
work=$build/packageTest
rm -rf "$work"
mkdir -p "$work/unpacked"

for out in packages again; do
    (cd "$build" && cpack -B "$work/$out" >"$work/cpack.txt")
    rm -r "$work/$out/_CPack_Packages"
    sleep 2 # the finest that a zip tells of time
done
diff -r "$work/packages" "$work/again" || { echo "FAILED: a zip made twice differs" >&2; exit 1; }
(cd "$work/unpacked" && cmake -E tar xf "$work"/packages/*.zip)
root=$(find "$work/unpacked" -name 'vekParams2ASCII-*' -type d | head -n 1)
for file in bin/vekmsg.exe lib/libvekTypes.a lib/{libvekParams2ASCII.dll.a,vekParams2ASCII.{def,lib}} \
    lib/{libvekInspect.dll.a,vekInspect.{def,lib}} include/vek/api/vekParams2ASCII.{h,hpp} include/vek/inspect/vekInspect.h \
    doc/{README.md,CHANGELOG.md,copyright,vekParams2ASCII.3,docs/messages.md,examples/host.cpp}; do
    [ -f "$root/$file" ] || { echo "FAILED: $file is not in the zip" >&2; exit 1; }
done

"$source/tests/package/installedTree.sh" "$root" 50
"$source/tests/package/bills.py" "$build" "$root/doc/vekParams2ASCII.spdx.json" vekParams2ASCII "$root/bin/vekParams2ASCII.dll" \
    vekTypes "$root/lib/libvekTypes.a" vekInspect "$root/bin/vekInspect.dll" vekmsg "$root/bin/vekmsg.exe"

for file in vekParams2ASCII.dll vekInspect.dll vekmsg.exe; do
    resource=$("$windres" -O rc -i "$root/bin/$file")
    [[ $resource == *"FILEVERSION ${version//./, }, 0"* && $resource == *"OriginalFilename\", \"$file\""* ]] ||
        { echo "FAILED: $file does not tell its version" >&2; exit 1; }
done

# Hosts find the DLL in their own folder.
flags=(-Wall -Wextra -Wpedantic -Werror -I"$root/include")
libraries=("$root/lib/libvekTypes.a" "$root/lib/libvekParams2ASCII.dll.a" -static -fstack-protector-strong)
"$cc" -std=c99 "${flags[@]}" "$source/examples/host.c" -o "$root/bin/hostInC.exe" "${libraries[@]}"
for host in host cassettes job status image gateway; do
    "$cxx" -std=c++20 "${flags[@]}" "$source/examples/$host.cpp" -o "$root/bin/$host.exe" "${libraries[@]}"
done
for host in hostInC host cassettes job status image gateway; do
    "$wineRun" "$root/bin/$host.exe" >"$work/$host.txt" || exit
    grep -q '@@4\|^State 1\|, 0 of them' "$work/$host.txt" || { echo "FAILED: $host" >&2; exit 1; }
done

# MinGW's headers serve clang too, all but those that belong to its compiler.
machine=$("$cxx" -dumpmachine)
processor=${machine%%-*} macro=_AMD64_ options=(/machine:x64)
[ "$processor" != i686 ] || macro=_X86_ options=(/machine:x86 /safeseh)
mapfile -t headers < <("$cxx" -xc++ -E -v /dev/null 2>&1 | sed -n '/^#include </,/^End of/s/^ //p' | xargs realpath |
    grep -v '/gcc/.*/include\(-fixed\)\?$' | sed 's/^/-isystem/')
printf '%s\n' '#include <_mingw.h>' '#define __MINGW_IMPORT extern __declspec(dllimport)' >"$work/import.h"
clang++ --target="$processor-pc-windows-msvc" -fgnuc-version=12.2 -D$macro -D__STRICT_ANSI__ "${headers[@]}" \
    -include "$work/import.h" -std=c++20 -O1 -fno-exceptions -Wall -Wextra -Werror -I"$root/include" \
    -c "$source/tests/package/microsoftHost.cpp" -o "$work/microsoftHost.obj"
lld-link /nologo /entry:begin /subsystem:console /nodefaultlib "${options[@]}" "/out:$root/bin/microsoftHost.exe" \
    "$work/microsoftHost.obj" "$root/lib/vekParams2ASCII.lib" "$root/lib/vekInspect.lib"

# The sources of vekTypes, through the zip's CMake package, by a compiler with Microsoft's command line.
mkdir "$work/microsoft"
echo 'cmake_minimum_required(VERSION 3.20)
project(microsoft LANGUAGES CXX)
find_package(vekParams2ASCII 1 REQUIRED COMPONENTS vekInspect)
add_library(host OBJECT ../microsoftHost.cpp)
target_link_libraries(host PRIVATE vekParams2ASCII::cpp vekParams2ASCII::vekInspect)' >"$work/microsoft/CMakeLists.txt"
cp "$source/tests/package/microsoftHost.cpp" "$work"
env -u CMAKE_CXX_COMPILER_LAUNCHER cmake -S "$work/microsoft" -B "$work/microsoft/out" -G Ninja -DCMAKE_SYSTEM_NAME=Windows \
    -DCMAKE_CXX_COMPILER="$(clang++ -print-prog-name=clang-cl)" -DCMAKE_LINKER=lld-link -DCMAKE_AR="$(command -v llvm-lib)" \
    -DCMAKE_MT="$(command -v llvm-mt)" -DCMAKE_TRY_COMPILE_TARGET_TYPE=STATIC_LIBRARY \
    -DCMAKE_FIND_ROOT_PATH_MODE_PACKAGE=NEVER -DCMAKE_PREFIX_PATH="$root" -DCMAKE_CXX_FLAGS="/EHsc /W0 \
    --target=$processor-pc-windows-msvc -fgnuc-version=12.2 -D$macro -D__STRICT_ANSI__ ${headers[*]/#-isystem/-imsvc} \
    \"-FI$work/import.h\"" >"$work/microsoft.txt" && cmake --build "$work/microsoft/out" >>"$work/microsoft.txt" ||
    { tail -n 20 "$work/microsoft.txt" >&2; exit 1; }
"$wineRun" "$root/bin/microsoftHost.exe" || { echo "FAILED: step $? of the host of Microsoft's ABI" >&2; exit 1; }
echo "The hosts run against what the zip holds."
