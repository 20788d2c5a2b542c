#!/usr/bin/env bash
# Checks all C and C++ sources, tests included: their form (.clang-format), and what clang-tidy finds (.clang-tidy).
#   lint.sh [FILE...]   the files, or all
# Public headers that the build compiles alone are not analysed as such: what includes them is.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/packages.sh all

# In a source archive as in a clone.
files=("$@")
[ ${#files[@]} -gt 0 ] || mapfile -t files < <(find bench examples fuzz tests tools vek -type f \
    -not -path '*/node_modules/*' \( -name '*.cpp' -o -name '*.hpp' -o -name '*.c' -o -name '*.h' \) | sort)

clang-format --dry-run -Werror "${files[@]}"

# How the files are compiled; nothing needs to be built for it. All of them are analysed many at once, so that what they
# include is read and followed once for all; single ones alone, and the fuzzers, which compile what others do, too.
unity=OFF
[ $# -gt 0 ] || unity=ON
cmake --preset release -B build/lint/release -DVEK_UNITY=$unity -DVEK_UNITY_BATCH=24 -DVEK_TESTS=ON -DVEK_BENCH=ON \
    -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON >/dev/null
cmake --preset fuzz -B build/lint/fuzz -DVEK_UNITY=OFF -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON >/dev/null

# tidy FILE: prints what was found, and nothing else. What the build wrote is checked as the folder's own files are. The
# static analyzer follows a tenth of the paths through a function that it would: beyond, it takes three times as long.
tidy() {
    local build=release folder=${1#"$PWD/build/lint/"} output
    [[ $1 != "$PWD/fuzz/"* ]] || build=fuzz
    folder=${folder#*/}
    output=$(clang-tidy --quiet -p "build/lint/$build" \
        --checks="-bugprone-suspicious-include,$(sed -n 's/^Checks: //p' "${folder%%/*}/.clang-tidy" 2>/dev/null)" \
        --extra-arg=-Wno-unknown-warning-option --extra-arg=-Wno-ignored-optimization-argument \
        --extra-arg=-Xclang --extra-arg=-analyzer-opt-analyze-headers \
        --extra-arg=-Xclang --extra-arg=-analyzer-config --extra-arg=-Xclang --extra-arg=max-nodes=20000 "$1" 2>&1) && return 0
    echo "$output"
    return 1
}
export -f tidy

# What is compiled here (a peer that is not installed is not); of the fuzzers' build their own folder alone. First what
# holds most sources, so that no processor waits for it at the end.
compiled() {
    {
        sed -n 's/^ *"file": "\(.*\)",\{0,1\}$/\1/p' build/lint/release/compile_commands.json |
            grep -v '/tests/front/headers/'
        sed -n 's/^ *"file": "\(.*\)",\{0,1\}$/\1/p' build/lint/fuzz/compile_commands.json |
            grep -E "^.{${#PWD}}/fuzz/"
    } | sort -u | xargs -d '\n' grep -cH '^#include "/' | sort -t : -k 2,2nr | sed 's/:[0-9]*$//'
}
if [ $# -gt 0 ]; then # a program's files are compiled together all the same
    compiled | while read -r one; do
        grep -qxF "$one" <<<"$(printf '%s\n' "${files[@]/#/$PWD/}")" ||
            { [[ $one == */Unity/* ]] && grep -qF "$(printf '"%s"\n' "${files[@]/#/$PWD/}")" "$one"; } && echo "$one"
    done || true
else
    compiled
fi | xargs -r -d '\n' -P "$(nproc)" -n 1 bash -c 'tidy "$0"'
