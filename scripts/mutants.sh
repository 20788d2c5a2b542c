#!/usr/bin/env bash
# Puts small faults into a copy of the library, one at a time, and says which of them no test notices: a key's line left
# out, a row of the catalogue changed, operators and constants in vek, the tool and the page's core. A fault that does not
# compile is not counted; one that takes much more time or memory is noticed.
#   mutants.sh [COUNT [SEED [FILES [MINUTES]]]]   that many by chance (60), with this seed (1), spread evenly over the files
#                                                 whose names match the expression (vek/records: keys; messageTable:
#                                                 rows), as long as there is time (a day)
#   mutants.sh again [SEED [FILES [MINUTES]]]     those that nothing noticed, with the tests that take minutes
# Each is judged once: what build/mutants/done lists is not tried again, so that a run can be ended and go on later.
set -euo pipefail
cd "$(dirname "$0")/.."
# shellcheck source=scripts/talk.sh
. scripts/talk.sh
count=${1:-60} seed=${2:-1} files=${3:-.} minutes=${4:-1440}
work=$PWD/build/mutants
tree=$work/tree # what is changed
built=$work/built # what was made of the tree without a fault

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

# What a run that was ended in the middle of a fault made of it is made anew.
if [ -e "$work/changing" ]; then
    touch "$(cat "$work/changing")"
    [ ! -e "$work/times" ] || touch "$work/times"
fi

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
    find vek tools/vekmsg tools/page/core -name '*.[ch]pp' | sort | while read -r file; do
        awk -v file="$file" '
            function place(from, to) { if (index($0, from)) print file, NR, "s/" escaped(from) "/" to "/" }
            function escaped(text) { gsub(/[.*+|\/]/, "[&]", text); return text }
            /^ *\/\// || /^#/ || /static_assert|template|requires|using |operator|concept|virtual/ { next }
            { sub(/ \/\/.*/, "") }
            {
                place(" == ", " != "); place(" != ", " == "); place(" < ", " <= "); place(" <= ", " < ")
                place(" > ", " >= "); place(" >= ", " > "); place(" + 1", ""); place(" - 1", "")
                # Of texts these do not compile.
                if (!/["\047]|append|text|words|out|line/) { place(" + ", " - "); place(" += ", " -= ") }
                if (index($0, " && ")) print file, NR, "s/ && / || /"
                place(" || ", " \\&\\& "); place("true", "false"); place("false", "true"); place("++", "--")
                place(" = 0;", " = 1;"); place("(!", "("); place(" = 1;", " = 2;")
            }' "$file"
    done
}
{ keys; rows; operators; } | awk -v files="$files" '$1 ~ files' >"$work/all"
touch "$work/done" "$work/judged"
# One of each file, by chance, then another of each; "again" takes what is said not to be noticed.
awk -v seed="$seed" 'BEGIN { srand(seed) } { print rand() "\t" $0 }' "$work/all" | sort -g | cut -f 2- |
    awk '{ print ++of[$1] "\t" $0 }' | sort -s -n -k 1,1 | cut -f 2- >"$work/shuffled"

# What a fault is called in the list: by the line's text, since lines move.
called() {
    printf '%s\t%s\t%s\n' "$file" "$change" "$(sed -n "${line}{s/^ *//;p}" "$1")"
}
listed() { # == or !=
    name=$name awk -F '\t' "substr(\$0, length(\$1) + 2) $1 ENVIRON[\"name\"]" "$work/done"
}

# What may notice, the quick first: which files can matter to it, a program that is built, and how it is run.
tests=build/quick/tests
slow='Tree.*:Forms.*:Check.FindsNothingOnly*:Check.IsNeverSilent*:Check.TakesLinearTime:Archive.RowsOfAny*:Promises.*:Mending.Restores*:Change.SetsEveryValue*:StrictReadingTest.Refuses*'
transcripts="ctest --test-dir build/quick -R" # the nearest alone, before all
noticing=(
    "vek/vek_std foundationTests $tests/foundationTests"
    "vek/vek_std foundationMemoryTests $tests/foundationMemoryTests"
    "vek/(vek_std|text)|support textTests $tests/textTests --gtest_filter=-Numbers*"
    "vek/(vek_std|text|records|api) recordTests $tests/recordTests"
    "vek/(vek_std|text|records|api) frontTests $tests/front/frontTests"
    "vek/(vek_std|text|records|api) apiTests $tests/apiTests --gtest_filter=-Time*:Platform*"
    "vek/(vek_std|text|records|api) conversionMemoryTests $tests/conversionMemoryTests"
    "vek/inspect|page inspectTests $tests/inspectTests --gtest_filter=-$slow:Envelopes.*"
    "vek/inspect|vekmsg/lsp lspTests $tests/lspTests"
    "vekmsg/commands vekmsg $transcripts NEAREST --stop-on-failure"
    "vekmsg/(figures|commands/stats) vekmsg $transcripts ^vekmsg[.]stats"
    "archive|vekmsg/load vekmsg $transcripts [.]archive"
    "change/|commands/(fix|set|edit|diff) vekmsg $transcripts ^vekmsg[.]change"
    "log/|vekmsg/reading|vekmsg/terminal vekmsg $transcripts ^vekmsg[.](logs|view)"
    "vek/inspect|vekmsg vekmsg $transcripts ^(vekmsg|docs|lsp)[.] -j 2 --stop-on-failure -E pipelines|loadKilled|lines|memory|jsonSchema|generations|cluster|anyWord"
    "vekmsg vekmsg $tests/inspectTests --gtest_filter=Envelopes.*"
    "vek/inspect vekInspectInC $tests/vekInspectInC examples/messages/4112-focus-value.txt"
)
[ "$count" != again ] || noticing+=( # which take minutes
    "vek/inspect inspectTests $tests/inspectTests --gtest_filter=$slow:-Forms.GiveBackTheVeryText"
    "vek/inspect/(forms|message) inspectTests $tests/inspectTests --gtest_filter=Forms.GiveBackTheVeryText"
    "vek/inspect/words|vekmsg vekmsg ctest --test-dir build/quick -R ^vekmsg[.]anyWord"
    "vekmsg/(load|reading) vekmsg ctest --test-dir build/quick -R ^vekmsg[.]loadKilled"
    "inspect/archive|vekmsg/load vekmsg python3 tests/vekmsg/clusterFaults.py build/quick/tools/vekmsg/vekmsg 1"
    "vek/(vek_std|text) textTests $tests/textTests --gtest_filter=Numbers*"
    "vek/(vek_std|text|records|api) threadTests $tests/threadTests"
    "vek/(vek_std|text|records|api) modelTests $tests/modelTests"
    "vek/(vek_std|text|records|api) referenceTests $tests/referenceTests"
    "vek/(vek_std|text|records|api) inspectMemoryTests $tests/inspectMemoryTests"
    "vek/(vek_std|text|records|api) inspectTests $tests/inspectTests"
)
declare -A longest=() programs=( # that aren't in the folder of the tests, and what a program loads
    [vekmsg]=build/quick/tools/vekmsg/vekmsg
    [frontTests]="$tests/front/frontTests build/quick/libvekParams2ASCII.so"
    [vekInspectInC]="$tests/vekInspectInC build/quick/libvekInspect.so"
)
for test in "${noticing[@]}"; do # those which some file that is asked for can matter to
    read -r matters target _ <<<"$test"
    cut -d' ' -f1 "$work/all" | grep -E "$matters" >/dev/null || continue
    asked+=("$test")
    targets+=("$target")
done
# Nothing but what was changed is compiled; lld links in a third of the time.
talk "mutants: preparing" cmake --preset quick -DVEK_UNITY=OFF -DVEK_DEVELOPER=OFF -DCMAKE_PROJECT_INCLUDE=cmake/mutants.cmake \
    -DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld -DCMAKE_SHARED_LINKER_FLAGS=-fuse-ld=lld
talk "mutants: building" cmake --build --preset quick --target inspectTests "${targets[@]}"
times=$work/times # of each once without a fault, as long as no source changes
[ -z "$(find cmake docs examples tests tools vek -type f -newer "$times" -print -quit 2>&1)" ] || rm -f "$times"
for test in "${asked[@]}"; do
    read -ra command <<<"${test/NEAREST/^vekmsg[.]view\$}"
    if ! spent=$(grep -F -- " $test" "$times" 2>/dev/null | cut -d' ' -f1) || [ -z "$spent" ]; then
        started=$SECONDS
        "${command[@]:2}" >"$work/test.log" 2>&1 || { echo "mutants: ${command[*]:2} fails without any fault" >&2; exit 1; }
        spent=$((SECONDS - started))
        echo "$spent $test" >>"$times"
    fi
    longest[$test]=$((20 + 3 * spent)) # of the processor; of the clock ten times as many
    echo "    $spent s ${command[*]:2}"
done
rm -rf "$built"
cp -a build/quick "$built"

# Whether a program, or what it loads, came out otherwise than it was before.
isOther() {
    local made
    for made in ${programs[$1]:-$tests/$1}; do
        [ "$made" -nt "$work/before" ] && ! cmp -s "$made" "$built/${made#build/quick/}" && return 0
    done
    return 1
}

# Of a command the transcripts that call it.
nearest() {
    grep -lE "vekmsg $(basename "$file" .cpp)( |\$)" tests/vekmsg/*.md docs/*.md | sed 's|.*/||; s|[.]md$||' |
        paste -sd '|' | sed 's/.*/^(vekmsg|docs)[.](&)$/'
}

# Whether a test notices; 2 when there is nothing to test. Each program is built when it is its turn: many faults are noticed
# by those that are built soon.
isNoticed() {
    local test command
    : >"$work/build.log"
    for test in "${asked[@]}"; do
        read -ra command <<<"${test/NEAREST/$(nearest)}" # the files, the target, what is run
        [[ $file =~ ${command[0]} ]] || continue
        cmake --build build/quick --target "${command[1]}" >>"$work/build.log" 2>&1 || return 2
        isOther "${command[1]}" || continue
        isAsked=yes by=${command[*]:2}
        { # the shell would tell of each crash
            (ulimit -v 4000000 -t "${longest[$test]}" &&
                GTEST_FAIL_FAST=1 exec timeout "${longest[$test]}0" "${command[@]:2}") \
                >"$work/test.log" 2>&1 </dev/null
        } 2>/dev/null || return 0
    done
    by=
    return 1
}

# The file as it was, and what was made of it: with the bytes of before and the time of now, which ninja has noted, so that
# nothing is compiled for it.
restore() {
    local made
    cp -p "$work/original" "$file"
    while read -r made; do
        cp -p "$built/${made#build/quick/}" "$work/made" # what runs still can't be written to
        touch -r "$made" "$work/made"
        mv "$work/made" "$made"
    done < <(find build/quick -type f -newer "$work/before" \( -name '*.[ao]' -o -name '*.so*' -o -perm -u+x \))
    sed -n 's|^FAILED: \([^ ]*\).*|\1|p' "$work/build.log" | while read -r made; do
        [ -e "build/quick/$made" ] || cp -p "$built/$made" "build/quick/$made"
    done
    rm -f "$work/changing"
}

again=no
[ "$count" != again ] || { again=yes && count=$(grep -c '^survived' "$work/done"); } || true
survivors=0 judged=0 refused=0
while read -r file line change <&3 && [ "$judged" -lt "$count" ] && [ "$SECONDS" -lt $((minutes * 60)) ]; do
    name=$(called "$file")
    outcome=$(listed '==' | cut -f 1)
    [ "$again:$outcome" = no: ] || [ "$again:$outcome" = yes:survived ] || continue
    cp -p "$file" "$work/original"
    echo "$file" >"$work/changing"
    sed -i "$line$change" "$file"
    ! cmp -s "$file" "$work/original" || continue
    touch "$work/before"
    changed="$(sed -n "${line}p" "$work/original" | sed 's/^/  - /')
$([ "$change" = d ] || sed -n "${line}s/^/  + /p" "$file")"
    isAsked='' by='' status=0
    isNoticed || status=$?
    if [ "$status" -eq 0 ]; then
        judged=$((judged + 1)) outcome=noticed
    elif [ "$status" -eq 2 ]; then
        refused=$((refused + 1)) outcome=refused by='does not compile'
    elif [ -n "$isAsked" ]; then
        judged=$((judged + 1)) survivors=$((survivors + 1)) outcome=survived
        printf '%s:%s:\n%s\n' "$file" "$line" "$changed"
    else # of another system, or the compiler makes the same of it
        refused=$((refused + 1)) outcome=refused by='the same program'
    fi
    printf '%s:%s: %s\n%s\n' "$file" "$line" "${by:-${isAsked:+NOT NOTICED}}" "$changed" >>"$work/judged"
    { listed '!=' && printf '%s\t%s\n' "$outcome" "$name"; } >"$work/done.new"
    mv "$work/done.new" "$work/done"
    [ $((judged % 10)) -ne 0 ] || echo "  $judged of $count, $survivors not noticed; $SECONDS s"
    restore
done 3<"$work/shuffled"
echo "$survivors of $judged not noticed; $refused do not compile, or to the same"
