#!/usr/bin/env bash
# Builds and runs the comparison with other text codecs, and how cost grows with size. Prints tables as Markdown.
#   bench.sh [--quick] [CMAKE OPTIONS...]   --quick: fewer rounds, no instructions, no growth
#   bench.sh --against BUILD                the library of this checkout beside another build of it, a shared library
#   bench.sh --logs                         the tool on a log, beside other tools on lines of equal JSON
# yyjson has no package in Debian bookworm: -DVEK_YYJSON=FOLDER with yyjson.h and yyjson.c adds it.
set -euo pipefail
cd "$(dirname "$0")/.."

# row NAME FILE COMMAND...: a row with the megabytes of the file that the command reads in a second of processor time.
row() {
    local name=$1 file=$2 times
    shift 2
    # Not to /dev/null, for which grep stops at the first match. (vekmsg check ends with 1 when it finds something.)
    times=$( { TIMEFORMAT='%U %S'; time "$@" >"$folder/out" 2>"$folder/err" || true; } 2>&1)
    awk -v name="$name" -v size="$(stat -c %s "$file")" -v times="$times" \
        'BEGIN { split(times, t); printf "| %s | %.0f |\n", name, size / 1e6 / (t[1] + t[2]) }'
}

# A log of nothing but messages, a line each; the others read the JSON of the same messages.
compareLogs() {
    local vekmsg=build/release/tools/vekmsg/vekmsg log=$folder/log json=$folder/json
    "$vekmsg" example --messages 400000 "$folder/example" 2>/dev/null
    grep -aoh '@@.*!!' "$folder"/example/*.log >"$log"
    "$vekmsg" json "$log" >"$json"
    printf '| command | MB of a second of processor time |\n|---|--:|\n'
    row 'vekmsg summary' "$log" "$vekmsg" summary --jobs 1 "$log"
    row 'vekmsg table --keys FOCUS_VALUE,STATUS' "$log" "$vekmsg" table --jobs 1 --keys FOCUS_VALUE,STATUS "$log"
    row 'vekmsg check' "$log" "$vekmsg" check --jobs 1 "$log"
    row 'vekmsg json' "$log" "$vekmsg" json --jobs 1 "$log"
    row 'grep -c STATUS=3' "$log" grep -c STATUS=3 "$log"
    row 'sqlite3 .import, a message a row' "$log" \
        sqlite3 -separator $'\x1f' "$folder/sqlite" 'create table messages (message)' ".import $log messages"
    row 'jq -c . of the JSON' "$json" jq -c . "$json"
    row 'simdjson reading the JSON' "$json" build/release/bench/jsonLines "$json"
    row 'mlr --json cat of the JSON' "$json" mlr --ijsonl --ojsonl cat "$json"
}

quick=()
case ${1:-} in
--quick)
    quick=(--quick)
    shift
    ;;
--against)
    other=$(realpath "${2:?which build? a libvekParams2ASCII.so}")
    scripts/packages.sh bench
    cmake --preset release -DVEK_BENCH=ON >/dev/null
    cmake --build build/release --target builds | tail -n 1
    exec build/release/bench/builds "$other"
    ;;
--logs)
    scripts/packages.sh bench
    cmake --preset release -DVEK_BENCH=ON >/dev/null
    cmake --build build/release --target vekmsg jsonLines | tail -n 1
    folder=$(mktemp -d)
    trap 'rm -rf "$folder"' EXIT
    compareLogs
    exit
    ;;
esac

scripts/packages.sh bench
cmake --preset release -DVEK_BENCH=ON "$@" >/dev/null
cmake --build build/release --target comparison growth | tail -n 1

if [ ${#quick[@]} -gt 0 ]; then
    build/release/bench/comparison --quick
    exit
fi

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# Callgrind writes a file for each conversion, with its name and how often it ran.
valgrind -q --tool=callgrind --callgrind-out-file="$folder/count" build/release/bench/comparison --instructions \
    2>/dev/null
awk -F'[:|]' '/^desc: Trigger: Client Request/ { name = $4; times = $5 }
              /^summary/ { sub(/^ /, "", name); if (name != "") print name "|" $2 / times; name = "" }' \
    "$folder"/count.* >"$folder/instructions"

build/release/bench/comparison "$folder/instructions"
echo
build/release/bench/growth "$folder/growth.csv"
bench/plotGrowth.py "$folder/growth.csv" >docs/growth.svg
