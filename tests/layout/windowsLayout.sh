#!/usr/bin/env bash
# Checks the layout tables for Windows of both widths: with MinGW's compilers, and with clang++ and the Microsoft C++ ABI.
# The tables are static assertions, so compiling them is the test.
#   windowsLayout.sh FOLDER-FOR-SCRATCH-FILES
set -euo pipefail
cd "$(dirname "$0")/../.."
scratch=$1
mkdir -p "$scratch/vek/records/private/layouts"

for tool in i686-w64-mingw32-g++ x86_64-w64-mingw32-g++ clang++; do
    if ! command -v $tool >/dev/null; then
        echo "$tool is missing, the layouts were NOT checked (scripts/packages.sh test installs it)"
        exit 1
    fi
done

# check NAME TAKES-PADDING COMPILER...: compiles the tables, and a class that shows which ABI is in effect: whether a
# member may take the padding of its base.
check() {
    local name=$1 takesPadding=$2
    shift 2
    local compile=("$@" -std=c++20 -fsyntax-only -Wall -Wextra -Werror)
    cat >"$scratch/abi.cpp" <<EOF
struct base { virtual ~base(); int number; char flag; };
struct derived : base { char more; };
static_assert((sizeof(derived) == sizeof(base)) == $takesPadding);
EOF
    "${compile[@]}" "$scratch/abi.cpp"
    "${compile[@]}" -I. vek/records/layouts.cpp
    # With one member elsewhere it must not compile.
    sed 's/double, thick, \([0-9]*\), /double, thick, \1 + 4, 4 + /' vek/records/private/layouts/media.hpp >"$scratch/vek/records/private/layouts/media.hpp"
    if "${compile[@]}" -I"$scratch" -I. vek/records/layouts.cpp 2>"$scratch/errors" ||
        ! grep -q 'the member lies elsewhere' "$scratch/errors"; then
        echo "$name: a wrong table was not noticed"
        exit 1
    fi
    echo "$name: every member lies where the tables say"
}
# What MinGW's headers define for their own compiler only.
printf '%s\n' '#include <_mingw.h>' '#define __MINGW_IMPORT extern __declspec(dllimport)' >"$scratch/import.h"

# checkWidth PROCESSOR MACRO: MinGW's headers serve clang too, all but those that belong to its compiler.
checkWidth() {
    local headers
    headers=$("$1-w64-mingw32-g++" -xc++ -E -v /dev/null 2>&1 | sed -n '/^#include </,/^End of/s/^ //p' | xargs realpath |
        grep -v '/gcc/.*/include\(-fixed\)\?$' | sed 's/^/-isystem /')
    check "MinGW, $1" true "$1-w64-mingw32-g++"
    # shellcheck disable=SC2086 # one word a header folder
    check "Microsoft, $1" false clang++ --target="$1-pc-windows-msvc" -fgnuc-version=12.2 "-D$2" -D__STRICT_ANSI__ $headers \
        -include "$scratch/import.h"
}
checkWidth i686 _X86_
checkWidth x86_64 _AMD64_
