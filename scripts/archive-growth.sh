#!/usr/bin/env bash
# How an archive grows: loads generated logs of 8 devices into new SQLite files and prints the sizes, rates and memory,
# and how long a query takes that looks at every row of a table.
#   archive-growth.sh [MESSAGES...]     100000, 1000000 and 10000000; the last takes some minutes and 10 GB of room
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/talk.sh
[ $# -gt 0 ] || set -- 100000 1000000 10000000

scripts/packages.sh test
[ -e build/release/tests/CTestTestfile.cmake ] || talk "Preparing build/release" cmake --preset release -DVEK_TESTS=ON
talk "Building vekmsg" cmake --build build/release --target vekmsg
vekmsg=$PWD/build/release/tools/vekmsg/vekmsg

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
trap 'exit 1' INT TERM
cd "$work"

# measure COMMAND...: runs it; sets memory, MB at most.
measure() {
    local pid key value
    "$@" >/dev/null 2>errors &
    pid=$!
    memory=0
    while kill -0 "$pid" 2>/dev/null; do
        while read -r key value _; do
            [ "$key" != VmHWM: ] || memory=$((value / 1024))
        done 2>/dev/null <"/proc/$pid/status" || true
        sleep 0.2
    done
    wait "$pid" || { cat errors >&2; exit 1; }
}

# tableRows FILE: the rows of all its tables.
tableRows() {
    sqlite3 "$1" "SELECT group_concat('SELECT count(*) AS n FROM \"' || name || '\"', ' UNION ALL ')
                  FROM sqlite_schema WHERE type = 'table'" |
        { read -r counts; sqlite3 "$1" "SELECT sum(n) FROM ($counts)"; }
}

printf '%10s %8s %10s %8s %9s %9s %12s %12s %9s %8s\n' messages 'log MB' rows 'file MB' bytes/row 'load s' 'messages/s' \
    'rows/s' 'memory MB' 'query s'
for messages in "$@"; do
    rm -rf logs archive.sqlite
    "$vekmsg" example --messages "$messages" logs 2>/dev/null
    TIMEFORMAT='%R %U %S'
    { time measure "$vekmsg" load --quiet --into archive.sqlite logs/*.log; } 2>loaded
    { time sqlite3 archive.sqlite "SELECT source_id, name, count(*) FROM cassette WHERE input_content = 0
                                   GROUP BY source_id, name" >/dev/null; } 2>asked
    logs=$(cat logs/*.log | wc -c) size=$(stat -c %s archive.sqlite) rows=$(tableRows archive.sqlite)
    awk -v messages="$messages" -v logs="$logs" -v size="$size" -v rows="$rows" -v memory="$memory" '
        NR == 1 { load = $2 + $3 }
        NR == 2 { ask = $2 + $3 }
        END { printf "%10d %8.0f %10d %8.0f %9.0f %9.1f %12.0f %12.0f %9.0f %8.2f\n", messages, logs / 1e6, rows,
                     size / 1e6, size / rows, load, messages / load, rows / load, memory, ask }' loaded asked
done
echo "Seconds are those of the processor, one core."
