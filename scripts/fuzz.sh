#!/usr/bin/env bash
# Runs every fuzzer for a long time, as many at once as there are processors, and says how many inputs each tried. What
# one finds is named in its output and can be given to it again; what is new to it stays in build/fuzz/fuzz.
#   fuzz.sh [SECONDS [NAME]]   each for so long (an hour), or one alone
set -euo pipefail
cd "$(dirname "$0")/.."
# shellcheck source=scripts/talk.sh
. scripts/talk.sh
seconds=${1:-3600}

scripts/packages.sh test
talk "fuzz: preparing" cmake --preset fuzz -DVEK_FUZZ_SECONDS="$seconds" -DVEK_FUZZ_SEED=0
talk "fuzz: building" cmake --build --preset fuzz
status=0
talk "fuzz: $seconds s each" ctest --preset fuzz -V -j "$(nproc)" -R "${2:-Fuzz}" || status=$?
grep -E 'Test +#|number_of_executed_units' "$talkLog" | awk '
    /Test +#/ { sub(/^ *[0-9]+\/[0-9]+ /, ""); print; next }
    { number = $1; sub(/:.*/, "", number); count[number] = $NF; all += $NF }
    END { printf "%d inputs in all\n", all }'
exit "$status"
