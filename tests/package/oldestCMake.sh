#!/usr/bin/env bash
# Nothing in the build's files is younger than the CMake that they ask for: no command, variable, property or module, by
# what this machine's CMake tells of each in its manual.
#   oldestCMake.sh SOURCE_FOLDER
set -euo pipefail
export LC_ALL=C # for sort and comm
cd "$1"
oldest=$(sed -n 's/^cmake_minimum_required(VERSION \([0-9]*\.[0-9]*\).*/\1/p' CMakeLists.txt)

# An older CMake ignores the target property of the first name; CMakeLists.txt sets the second where it is unknown.
known=' SYSTEM PROJECT_IS_TOP_LEVEL '

# A heading is underlined; what says when the thing came to be follows at once.
young=$({ cmake --help-commands; cmake --help-variables; cmake --help-properties; cmake --help-modules; } | awk -v oldest="$oldest" '
    /^(-+|\^+|~+)$/ { heading = previous; at = NR }
    /^\.\. versionadded:: / && heading != "" && NR <= at + 3 {
        split($3, version, "."); split(oldest, least, ".")
        if (version[1] + 0 > least[1] + 0 || version[1] == least[1] && version[2] + 0 > least[2] + 0)
            print heading
        heading = ""
    }
    { previous = $0 }' | grep -xE '[A-Za-z_]+' | sort -u)
count=$(wc -l <<<"$young")
[ "$count" -gt 20 ] || { echo "FAILED: this CMake names only $count things as younger than $oldest" >&2; exit 1; }

find . \( -path ./build -o -name node_modules \) -prune -o \( -name CMakeLists.txt -o -name '*.cmake' \) -print |
    xargs sed 's/#.*//' | grep -oE '[A-Za-z_]+' | sort -u | comm -12 - <(echo "$young") | while read -r name; do
    [[ $known == *" $name "* ]] || { echo "FAILED: $name is younger than CMake $oldest" >&2; exit 1; }
done
echo "None of $count things that are younger than CMake $oldest."
