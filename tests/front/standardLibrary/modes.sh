#!/usr/bin/env bash
# A host built in other modes of the standard library than vekTypes, and with clang's own, where that is installed.
#   modes.sh SOURCE_FOLDER CXX_COMPILER VEK_TYPES VEK_PARAMS_2_ASCII
set -euo pipefail
source=$1 cxx=$2 types=$3 library=$4
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# serves COMPILER OPTIONS...
serves() {
    "$@" -std=c++20 -I "$source" "$source/tests/front/standardLibrary/host.cpp" "$types" "$library" -l:libstdc++.so.6 \
        -Wl,-rpath,"$(dirname "$library")" -o "$folder/host"
    "$folder/host" || { echo "FAILED: $*" >&2; exit 1; }
}
serves "$cxx" -D_GLIBCXX_DEBUG
serves "$cxx" -D_GLIBCXX_USE_CXX11_ABI=0
if echo '#include <string>' | clang++ -stdlib=libc++ -fsyntax-only -x c++ - 2>/dev/null; then
    serves clang++ -stdlib=libc++ -DWITHOUT_JOBS
fi
