#!/usr/bin/env bash
# Runs every fuzzer for a long time, as many at once as there are processors, and says how many inputs each tried. What
# one finds is named in its output and can be given to it again; what is new to it stays in build/fuzz/fuzz.
#   fuzz.sh [SECONDS [NAME]]   each for so long (an hour), or one alone
#   fuzz.sh keep [NAME]        packs into fuzz/corpus what of all that was found reaches another place of the code
set -euo pipefail
cd "$(dirname "$0")/.."
# shellcheck source=scripts/talk.sh
. scripts/talk.sh
seconds=${1:-3600}
[ "$seconds" != keep ] || seconds=10

scripts/packages.sh all
talk "fuzz: preparing" cmake --preset fuzz -DVEK_FUZZ_SECONDS="$seconds" -DVEK_FUZZ_SEED=0
talk "fuzz: building" cmake --build --preset fuzz

# keep NAME: few inputs that together reach all places. The same inputs make the same archive.
keep() {
    local name=$1 to=build/fuzz/fuzz/$1Chosen
    local from=("build/fuzz/fuzz/$name"{Corpus,Kept} examples/messages)
    rm -rf "$to"
    mkdir "$to"
    [ ! -d "fuzz/corpus/$name" ] || from+=("fuzz/corpus/$name")
    ASAN_OPTIONS=alloc_dealloc_mismatch=0:malloc_context_size=1:quarantine_size_mb=1 \
        "build/fuzz/fuzz/$name" -set_cover_merge=1 -use_counters=0 -max_len=2048 "$to" "${from[@]}"
    tar --sort=name --mtime=@0 --owner=0 --group=0 --numeric-owner --mode=644 -C "$to" -cf - . | xz -9e >"fuzz/corpus/$name.tar.xz"
}
if [ "${1:-}" = keep ]; then
    sed -n 's/^vekFuzz(\([A-Za-z]*\) .*/\1/p' fuzz/CMakeLists.txt | grep "${2:-.}" | while read -r name; do
        talk "fuzz: keeping for $name" keep "$name"
    done
    du -ch fuzz/corpus/*.tar.xz
    exit
fi
status=0
talk "fuzz: $seconds s each" ctest --preset fuzz -V -j "$(nproc)" -R "${2:-Fuzz}" || status=$?
grep -aE '^[0-9]+: (stat::number_of_executed_units|.*Test unit written)|Test +#' "$talkLog" | awk '
    /number_of_executed_units/ { count[$1] = $NF; all += $NF; next }
    /Test unit written/ { found[$1] = $NF; next }
    { # "1/8 Test #1: conversionFuzz ....   Passed   32.21 sec"
        number = substr($3, 2)
        printf "%-16s %12d inputs%s\n", $4, count[number], found[number] ? ", one that fails: build/fuzz/fuzz/" substr(found[number], 3) : ""
    }
    END { printf "%-16s %12d inputs\n", "all", all }'
exit "$status"
