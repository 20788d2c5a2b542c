#!/usr/bin/env bash
# Runs every fuzzer for a long time, as many at once as there are processors, and says how many inputs each tried. What
# one finds is named in its output and can be given to it again; what is new to it stays in build/fuzz/fuzz.
#   fuzz.sh [SECONDS [NAME]]   each for so long (an hour), or one alone
set -euo pipefail
cd "$(dirname "$0")/.."
# shellcheck source=scripts/talk.sh
. scripts/talk.sh
seconds=${1:-3600}

scripts/packages.sh all
talk "fuzz: preparing" cmake --preset fuzz -DVEK_FUZZ_SECONDS="$seconds" -DVEK_FUZZ_SEED=0
talk "fuzz: building" cmake --build --preset fuzz
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
