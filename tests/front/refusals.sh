#!/usr/bin/env bash
# Misuse of the front, compiled: each case must fail with exactly one error, which says what to do. And what must
# compile: a host in C that passes constant structures.
#   refusals.sh SOURCE_FOLDER CXX_COMPILER C_COMPILER
set -euo pipefail
source=$1 cxx=$2 c=$3
header=vek/api/vekParams2ASCII.hpp

# refuses STANDARD MESSAGE STATEMENT...: as many errors as statements, each with the message.
refuses() {
    local standard=$1 message=$2 errors fitting
    shift 2
    said=$({ echo "#include \"$header\""; echo 'int main() {'; printf '%s\n' "$@"; echo '}'; } |
        LC_ALL=C "$cxx" -std="$standard" -Wall -Wextra -Werror -fsyntax-only -I "$source" -x c++ - 2>&1) || true
    errors=$(grep -cE '(fatal )?error:' <<<"$said" || true)
    fitting=$(grep -E '(fatal )?error:' <<<"$said" | grep -cE -- "$message" || true)
    if [ "$errors" -ne $# ] || [ "$fitting" -ne $# ]; then
        printf 'FAILED: %s errors, %s of them as they should be, for %s statements:\n%s\n' "$errors" "$fitting" $# "$said" >&2
        exit 1
    fi
}

# says TEXT...: what the compiler said of the case before has these lines of the headers.
says() {
    local text
    for text; do
        grep -qE -- "$text" <<<"$said" || { printf 'FAILED: not said: %s\n%s\n' "$text" "$said" >&2; exit 1; }
    done
}

refuses c++17 'this header needs C\+\+20' 'vek::FocusValue focus; (void)vek::print(focus); (void)vek::check(focus);'
while IFS= read -r header; do
    refuses c++17 'this header needs C\+\+20' ''
done < <(cd "$source" && find vek -name '*.hpp' ! -path '*/private/*' ! -path 'vek/inspect/*')
header=vek/api/vekParams2ASCII.hpp
refuses c++20 "deleted function .*(print|reply|parse|defaults)" \
    '(void)vek::print(vek::IdRecord{});' \
    'vek::problem_t problem; (void)vek::reply(7, vek::IdRecord{}, problem);' \
    '(void)vek::parse<vek::IdRecord>("");' \
    'vek::defaults<vek::IdRecord>();' \
    '(void)vek::print(vek::defaults<vek::Media>());'
says 'say which message: parse<VEK_MSG_ID_RECORD_4189>' 'print<VEK_MSG_ID_RECORD_4189>, or \*pointer'
refuses c++20 'deleted' 'vek::JobPort port; port.jobName = "Spring";' 'vek::JobSepList list; list.sepList.add("Cyan");'
says '16-bit characters: u"'
refuses c++20 'deleted' '(void)vek::parse<vek::Media>(nullptr);'

# Constants and members of another enumeration; sizes by bare numbers.
refuses c++20 'deleted' 'vek::Media media; media.type = VEK_TRANSPORT_SHEET;' \
    'media.exposureType = media.type;' '(void)(media.type == VEK_TRANSPORT_SHEET);' \
    'vek::MediaParams params; params.mediaType = VEK_EXPOSURE_POSITIVE;' \
    'vek::GdapiDataPath path; path.gdapiDataPath = VEK_MEDIA_FILM;' 'vek::valueRange_t range; range.kind = VEK_MEDIA_FILM;'
refuses c++20 'deleted|no viable overloaded' 'vek::ImageTopLeft image; image.topLeft = {80, 120};' \
    'vek::Size size; size = {80.0, 120.0};' 'vek::ExposeParams params; params.sizePixel = {80};'

refuses c++20 'deleted function .*dispatch' 'vek::dispatch("", [](const vek::MessageBase *) {});'

# Views that outlive their text, where the compiler looks for them.
if command -v clang++ >/dev/null; then
    cxx=clang++ refuses c++20 'Wdangling' 'const std::string_view view = vek::string_t("x"); (void)view;' \
        'const char *text = vek::string_t("x").c_str(); (void)text;' \
        'const std::string_view name = vek::FocusValue().mediaName; (void)name;' \
        'const std::u16string_view job = vek::JobPort().jobName; (void)job;' \
        'const std::string_view message = vek::print(vek::Media()); (void)message;'
fi
refuses c++20 'nodiscard' \
    'vek::parse<vek::FocusValue>("");' 'vek::print(vek::Media());' 'vek::check(vek::Media());' 'vek::messageId("");' \
    'vek::reply(7, vek::Media());' 'vek::defaults<vek::Media>();' 'vek::printLossy(vek::Media());'

printf '%s\n' '#include "vek/api/vekParams2ASCII.h"' \
    'int32_t print(const vekIdRecord *record, char **text) { return vekValToStr(4160, record, text); }' \
    'const enum vekMediaType plate = VEK_MEDIA_PLATE;' |
    "$c" -std=c99 -Wall -Wextra -Wcast-qual -Werror -fsyntax-only -I "$source" -x c -
