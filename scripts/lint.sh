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

# How each file is compiled; nothing needs to be built for it.
cmake --preset release -DVEK_TESTS=ON -DVEK_BENCH=ON >/dev/null
cmake --preset fuzz >/dev/null

# tidy FILE: prints what was found, and nothing else. The static analyzer follows a tenth of the paths through a function
# that it would: beyond, it takes three times as long in all.
tidy() {
    local build=build/release output
    [[ $1 != fuzz/* ]] || build=build/fuzz
    output=$(clang-tidy --quiet --extra-arg=-Wno-unknown-warning-option \
        --extra-arg=-Wno-ignored-optimization-argument --extra-arg=-Xclang --extra-arg=-analyzer-config \
        --extra-arg=-Xclang --extra-arg=max-nodes=20000 -p "$build" "$1" 2>&1) && return 0
    echo "$output"
    return 1
}
export -f tidy
for file in "${files[@]}"; do # those that are compiled here: a peer that is not installed is not
    if grep -qF "\"$PWD/$file\"" build/release/compile_commands.json build/fuzz/compile_commands.json; then echo "$file"; fi
done | xargs -r -P "$(nproc)" -I '{}' bash -c 'tidy {}'
