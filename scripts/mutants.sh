#!/usr/bin/env bash
# Puts small faults into a copy of the library, one at a time, and says which of them no test notices: a key's line left
# out, a row of the catalogue changed, operators and constants in vek/text, vek/api, vek/inspect, the tool and the page's
# core. A fault that does not compile is noticed; so is one that takes much more time or memory.
#   mutants.sh [COUNT [SEED [FILES]]]   that many by chance (60), with this seed (1), in files whose names match the
#                                       expression (vek/records: keys; messageTable: rows)
set -euo pipefail
cd "$(dirname "$0")/.."
# shellcheck source=scripts/talk.sh
. scripts/talk.sh
count=${1:-60} seed=${2:-1} files=${3:-.}
work=$PWD/build/mutants
tree=$work/tree

scripts/packages.sh all
mkdir -p "$tree"
# Times of unchanged files stay, so that the next run builds little.
git ls-files | while read -r file; do
    cmp -s "$file" "$tree/$file" || install -D "$file" "$tree/$file"
done
(cd "$tree" && find vek tools tests examples -type f) | while read -r file; do
    [ -e "$file" ] || rm "$tree/$file"
done
cd "$tree"

# Places for faults, a line each: FILE LINE SED-COMMAND.
keys() {
    grep -nE '^    [A-Za-z_<>:0-9, ]+\{\*this, "' vek/records/*.[ch]pp | awk -F: '{ print $1, $2, "d" }'
}
rows() {
    awk -v with=service_t::refused -v without=service_t::nothing '
        function place(change) { print FILENAME, FNR, change }
        /^ *message_t<VEK/ { place(index($0, with) ? "s/, " with "//" : "s/>/, " with ">/") }
        /^ *\{4/ {
            place("s/4/5/")
            place("{s/" with ",/" without ",/;t;s/" without ",/" with ",/}")
            place("{s/" with "}/" without "}/;t;s/" without "}/" with "}/}")
        }' vek/api/messageTable.hpp
}
operators() {
    find vek/text vek/api vek/inspect tools/vekmsg tools/page/core -name '*.[ch]pp' | sort | while read -r file; do
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

# What may notice, the quick first: a program that is built, and how it is run.
tests=build/quick/tests
noticing=(
    "textTests $tests/textTests --gtest_filter=-Numbers*"
    "recordTests $tests/recordTests"
    "inspectTests $tests/inspectTests"
    "vekInspectInC $tests/vekInspectInC examples/messages/4112-focus-value.txt"
    "frontTests $tests/front/frontTests"
    "apiTests $tests/apiTests --gtest_filter=-Time*:Platform*"
    "conversionMemoryTests $tests/conversionMemoryTests"
    "lspTests $tests/lspTests"
    "vekmsg ctest --test-dir build/quick -j 2 -R ^(vekmsg|docs)[.] -E pipelines|loadKilled|lines"
    "vekmsg python3 tests/vekmsg/clusterFaults.py build/quick/tools/vekmsg/vekmsg 1"
    "modelTests $tests/modelTests"
    "textTests $tests/textTests --gtest_filter=Numbers*"
)
declare -A programs=([vekmsg]=build/quick/tools/vekmsg/vekmsg [frontTests]=$tests/front/frontTests) longest=()
targets=()
for test in "${noticing[@]}"; do targets+=("${test%% *}"); done
talk "mutants: preparing" cmake --preset quick -DVEK_UNITY=OFF -DVEK_DEVELOPER=OFF -DCMAKE_CXX_FLAGS=-O1
talk "mutants: building" cmake --build --preset quick --target "${targets[@]}"

# Whether a test notices. A program that came out as it was before is not asked.
isNoticed() {
    local test command target program
    touch "$work/before"
    for test in "${noticing[@]}"; do
        target=${test%% *}
        read -ra command <<<"${test#* }"
        program=${programs[$target]:-$tests/$target}
        cmake --build build/quick --target "$target" >"$work/build.log" 2>&1 || return 0
        [ "$program" -nt "$work/before" ] || continue
        { (ulimit -v 4000000 && timeout "${longest[$test]}" "${command[@]}") >"$work/test.log" 2>&1; } 2>/dev/null ||
            return 0 # the shell would tell of each crash
    done
    return 1
}
for test in "${noticing[@]}"; do # once without a fault, to know how long each takes
    started=$SECONDS
    read -ra command <<<"${test#* }"
    "${command[@]}" >"$work/test.log" 2>&1 || { echo "mutants: $test fails without any fault" >&2; exit 1; }
    longest[$test]=$((20 + 5 * (SECONDS - started)))
done

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
