#!/usr/bin/env bash
# Runs every fuzzer for a long time, as many at once as there are processors, and says how many inputs each tried. What
# one finds is named in its output and can be given to it again; what is new to it stays in build/fuzz/fuzz.
#   fuzz.sh [SECONDS [NAME]]        each for so long (an hour), or one alone
#   fuzz.sh farm [SECONDS [NAME]]   the same without sanitizers, which makes several times the inputs of it: finds broken
#                                   promises; what it reached is then tried with them
#   fuzz.sh keep [NAME]             packs into fuzz/corpus what of all that was found reaches another place of the code
set -euo pipefail
cd "$(dirname "$0")/.."
# shellcheck source=scripts/talk.sh
. scripts/talk.sh
mode=run
[[ ${1:-} != @(farm|keep) ]] || { mode=$1 && shift; }
if [ "$mode" = keep ]; then seconds=10 name=${1:-Fuzz}; else seconds=${1:-3600} name=${2:-Fuzz}; fi
scripts/packages.sh all
mapfile -t fuzzers < <(sed -n 's/^vekFuzz(\([A-Za-z]*\) .*/\1/p' fuzz/CMakeLists.txt | grep -E -- "$name")

# prepare FOLDER SECONDS [CMAKE OPTIONS...]
prepare() {
    talk "$1: preparing" cmake --preset fuzz -B "$1" -DVEK_FUZZ_SECONDS="$2" -DVEK_FUZZ_SEED=0 "${@:3}"
    talk "$1: building" cmake --build "$1" --target "${fuzzers[@]}"
}

# fuzz FOLDER
fuzz() {
    local status=0
    talk "$1: fuzzing" ctest --test-dir "$1" --output-on-failure -V -j "$(nproc)" -R "$name" || status=$?
    grep -aE '^[0-9]+: (stat::number_of_executed_units|.*Test unit written)|Test +#' "$talkLog" | awk -v folder="$1" '
        /number_of_executed_units/ { count[$1] = $NF; all += $NF; next }
        /Test unit written/ { found[$1] = $NF; next }
        { # "1/8 Test #1: conversionFuzz ....   Passed   32.21 sec"
            number = substr($3, 2)
            one = found[number] ? ", one that fails: " folder "/fuzz/" substr(found[number], 3) : ""
            printf "%-16s %12d inputs%s\n", $4, count[number], one
        }
        END { printf "%-16s %12d inputs\n", "all", all }'
    return "$status"
}

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

if [ "$mode" = farm ]; then
    prepare build/fuzzPlain "$seconds" -DVEK_FUZZ_SANITIZERS=
    fuzz build/fuzzPlain
    seconds=10
fi
prepare build/fuzz "$seconds"
if [ "$mode" = keep ]; then
    for one in "${fuzzers[@]}"; do
        talk "fuzz: keeping for $one" keep "$one"
    done
    du -ch fuzz/corpus/*.tar.xz
    exit
fi
if [ "$mode" = farm ]; then
    for one in "${fuzzers[@]}"; do
        cp -ru "build/fuzzPlain/fuzz/${one}Corpus" build/fuzz/fuzz/
    done
fi
fuzz build/fuzz
