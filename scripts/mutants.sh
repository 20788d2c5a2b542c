#!/usr/bin/env bash
# Puts small faults into a copy of the library, one at a time, and says which of them no test notices: a key's line left
# out, a row of the catalogue changed, operators and constants in vek/text, vek/api and vek/inspect. A fault that does
# not compile is noticed.
#   mutants.sh [COUNT [SEED [FILES]]]   that many by chance (60), with this seed (1), in files whose names match the
#                                       expression
set -euo pipefail
cd "$(dirname "$0")/.."
# shellcheck source=scripts/talk.sh
. scripts/talk.sh
count=${1:-60} seed=${2:-1} files=${3:-.}
work=$PWD/build/mutants
tree=$work/tree

scripts/packages.sh test
mkdir -p "$tree"
# Times of unchanged files stay, so that the next run builds little.
git ls-files | while read -r file; do
    cmp -s "$file" "$tree/$file" || install -D "$file" "$tree/$file"
done
cd "$tree"

# Places for faults, a line each: FILE LINE SED-COMMAND.
keys() {
    grep -nE '^    [A-Za-z_<>:0-9, ]+\{\*this, "' vek/records/*.cpp | awk -F: '{ print $1, $2, "d" }'
}
rows() {
    grep -nE 'service_t::(refused|nothing)' vek/api/messageTable.hpp | grep -v 'enum' | awk -F: '{
        print "vek/api/messageTable.hpp", $1, "s/service_t::refused/service_t::nothing/;t;s/service_t::nothing/service_t::refused/" }'
}
operators() {
    find vek/text vek/api vek/inspect -name '*.[ch]pp' | sort | while read -r file; do
        awk -v file="$file" '
            function place(from, to) { if (index($0, from)) print file, NR, "s/" escaped(from) "/" to "/" }
            function escaped(text) { gsub(/[.*+|\/]/, "[&]", text); return text }
            /^ *\/\// || /^#/ || /static_assert|template|requires|using |operator|concept/ { next }
            { sub(/ \/\/.*/, "") }
            {
                place(" == ", " != "); place(" != ", " == "); place(" < ", " <= "); place(" <= ", " < ")
                place(" > ", " >= "); place(" >= ", " > "); place(" + 1", ""); place(" - 1", ""); place(" + ", " - ")
                if (index($0, " && ")) print file, NR, "s/ && / || /"
                place(" || ", " \\&\\& "); place("true", "false"); place("false", "true"); place("++", "--")
                place(" = 0;", " = 1;"); place("(!", "("); place(" += ", " -= "); place(" = 1;", " = 2;")
            }' "$file"
    done
}
{ keys; rows; operators; } | awk -v files="$files" '$1 ~ files' >"$work/all"
awk -v seed="$seed" 'BEGIN { srand(seed) } { print rand() "\t" $0 }' "$work/all" | sort -g | cut -f 2- |
    awk -v count="$count" 'NR <= count' >"$work/chosen"

targets=(inspectTests vekmsg recordTests textTests frontTests apiTests modelTests conversionMemoryTests)
talk "mutants: preparing" cmake --preset quick -DVEK_UNITY=OFF -DVEK_DEVELOPER=OFF -DCMAKE_CXX_FLAGS=-O1
talk "mutants: building" cmake --build --preset quick --target "${targets[@]}"

# Whether a test notices; the quick ones first.
isNoticed() {
    local tests=build/quick/tests program
    cmake --build build/quick --target "${targets[@]}" >"$work/build.log" 2>&1 || return 0
    for program in "$tests/textTests --gtest_filter='-Numbers*'" "$tests/recordTests" "$tests/front/frontTests" \
                   "$tests/inspectTests" "$tests/apiTests --gtest_filter='-Time*:Platform*'" "$tests/conversionMemoryTests" \
                   "ctest --test-dir build/quick -R '^vekmsg[.]' -E 'pipelines|loadKilled'" "$tests/modelTests" "$tests/textTests"; do
        timeout 300 bash -c "$program" >"$work/test.log" 2>&1 || return 0
    done
    return 1
}
isNoticed && { echo "mutants: a test fails without any fault, see $work" >&2; exit 1; }

survivors=0 done=0
while read -r file line change; do
    cp "$file" "$work/original"
    sed -i "$line$change" "$file"
    done=$((done + 1))
    if ! cmp -s "$file" "$work/original" && ! isNoticed; then
        survivors=$((survivors + 1))
        printf '%s:%s:\n  - %s\n  + %s\n' "$file" "$line" "$(sed -n "${line}p" "$work/original")" \
               "$([ "$change" = d ] || sed -n "${line}p" "$file")"
    fi
    cp "$work/original" "$file"
    [ $((done % 10)) -ne 0 ] || echo "  $done of $count, $survivors not noticed"
done <"$work/chosen"
echo "$survivors of $done not noticed"
