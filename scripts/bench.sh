#!/usr/bin/env bash
# Builds and runs the comparison with other text codecs, and how cost grows with size. Prints tables as Markdown.
#   bench.sh [--quick] [CMAKE OPTIONS...]   --quick: fewer rounds, no instructions, no growth
# yyjson has no package in Debian bookworm: -DVEK_YYJSON=FOLDER with yyjson.h and yyjson.c adds it.
set -euo pipefail
cd "$(dirname "$0")/.."

quick=()
if [ "${1:-}" = --quick ]; then
    quick=(--quick)
    shift
fi

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
