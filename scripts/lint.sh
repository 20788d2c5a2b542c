#!/usr/bin/env bash
# Checks all C and C++ sources, tests included: their form (.clang-format), and what clang-tidy finds (.clang-tidy).
#   lint.sh [FILE...]   the files, each alone, or all
# Public headers that the build compiles alone are not analysed as such: what includes them is.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/packages.sh test

# In a source archive as in a clone.
files=("$@")
[ ${#files[@]} -gt 0 ] || mapfile -t files < <(find bench examples fuzz tests tools vek -type f \
    -not -path '*/node_modules/*' \( -name '*.cpp' -o -name '*.hpp' -o -name '*.c' -o -name '*.h' \) | sort)

clang-format --dry-run -Werror "${files[@]}"

# How each file is compiled, alone and together with others; nothing needs to be built for it.
cmake --preset release -DVEK_TESTS=ON -DVEK_BENCH=ON >/dev/null
cmake --preset release -B build/together -DVEK_TESTS=ON -DVEK_BENCH=ON -DVEK_UNITY=ON >/dev/null
cmake --preset fuzz >/dev/null

# tidy FILE: prints what was found, and nothing else.
tidy() {
    local build=build/release output
    case $1 in
    fuzz/*) build=build/fuzz ;;
    build/together/*) build=build/together ;;
    esac
    output=$(clang-tidy --quiet --extra-arg=-Wno-unknown-warning-option -p "$build" "$1" 2>&1) && return 0
    echo "$output"
    return 1
}

# Most of the time goes into the headers, so that sources are analysed together; each alone where that finds anything.
tidyTogether() {
    local source sources=("$1") status=0
    case $1 in
    */Unity/unity_*) # it only includes them: the analyzer wants to see them in the file itself
        mapfile -t sources < <(sed -n "s|^#include \"$PWD/\(.*\)\"$|\1|p" "$1")
        [ ${#sources[@]} -gt 0 ] || { echo "lint: no sources in $1"; return 1; }
        for source in "${sources[@]}"; do
            echo "#line 1 \"$PWD/$source\""
            cat "$source"
        done >"$1"
        timeout 60 bash -c "tidy '$1'" >/dev/null && return 0 # the analyzer loses itself in some
        ;;
    esac
    for source in "${sources[@]}"; do tidy "$source" || status=1; done
    return $status
}
export -f tidy tidyTogether

# compiledBy BUILD: the files that are compiled there, from this folder on.
compiledBy() {
    sed -n "s|^ *\"file\": \"$PWD/\(.*\)\".*|\1|p" "build/$1/compile_commands.json" | grep -v '/headers/'
}

status=0
if [ $# -eq 0 ]; then
    { compiledBy together && compiledBy fuzz | grep '^fuzz/'; } | sort -u |
        xargs -r -P "$(nproc)" -I '{}' bash -c 'tidyTogether {}' || status=1
else # those that are compiled here: a peer that is not installed is not
    { compiledBy release && compiledBy fuzz; } | sort -u | { grep -Fx "$(printf '%s\n' "${files[@]}")" || true; } |
        xargs -r -P "$(nproc)" -I '{}' bash -c 'tidy {}' || status=1
fi
exit $status
