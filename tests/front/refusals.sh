#!/usr/bin/env bash
# Misuse of the front, compiled: each case must fail with exactly one error, which says what to do. And what must
# compile: a host in C that passes constant structures.
#   refusals.sh SOURCE_FOLDER CXX_COMPILER C_COMPILER
set -euo pipefail
source=$1 cxx=$2 c=$3
include='#include "vek/api/vekParams2ASCII.hpp"'

# refuses STANDARD STATEMENT MESSAGE
refuses() {
    local said
    if said=$(printf '%s\nint main() { %s }\n' "$include" "$2" |
        LC_ALL=C "$cxx" -std="$1" -Wall -Wextra -Werror -fsyntax-only -I "$source" -x c++ - 2>&1); then
        echo "FAILED: '$2' compiles" >&2
        exit 1
    fi
    local errors
    errors=$(grep -cE '(fatal )?error:' <<<"$said")
    if [ "$errors" -ne 1 ] || ! grep -qF -- "$3" <<<"$said"; then
        printf 'FAILED: %s says, with %s errors:\n%s\n' "'$2'" "$errors" "$said" >&2
        exit 1
    fi
}

say='several messages share this structure: say which,'
refuses c++17 'vek::FocusValue focus; (void)vek::print(focus);' 'this header needs C++20'
refuses c++20 '(void)vek::print(vek::IdRecord{});' "$say print<VEK_MSG_ID_RECORD_4189>(record)"
refuses c++20 'vek::problem_t problem; (void)vek::print(vek::IdRecord{}, problem);' "$say print<"
refuses c++20 '(void)vek::parse<vek::IdRecord>("");' "$say parse<VEK_MSG_ID_RECORD_4189>(text)"
refuses c++20 'auto record = vek::defaults<vek::IdRecord>();' "$say defaults<VEK_MSG_ID_RECORD_4189>()"
for dropped in 'parse<vek::FocusValue>("")' 'print(vek::Media())' 'check(vek::Media())' 'reply(7, vek::Media())' \
    'messageId("")' 'defaults<vek::Media>()' 'printLossy(vek::Media())'; do
    refuses c++20 "vek::$dropped;" "${dropped%%[(<]*}"
done

printf '%s\n' '#include "vek/api/vekParams2ASCII.h"' \
    'int32_t print(const vekIdRecord *record, char **text) { return vekValToStr(4160, record, text); }' \
    'const enum vekMediaType plate = VEK_MEDIA_PLATE;' |
    "$c" -std=c99 -Wall -Wextra -Wcast-qual -Werror -fsyntax-only -I "$source" -x c -
