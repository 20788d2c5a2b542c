#!/usr/bin/env bash
# Converts for long what a host converts in months: every kind of message, whole and damaged, on four threads, as fast as
# the machine can. Ends when memory grows, a sequence number is missing or given twice, or a text becomes another one.
#   soak.sh [HOURS]     2 by default, also 0.1; Ctrl-C ends it sooner
#   soak.sh once        ten million conversions
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/talk.sh
hours=${1:-2}
if [ "$hours" != once ] && ! awk -v hours="$hours" 'BEGIN { exit !(hours ~ /^[0-9]*[.]?[0-9]+$/ && hours > 0) }'; then
    echo "soak: '$hours' is not once or a number of hours" >&2
    exit 2
fi
scripts/packages.sh test
talk "release: preparing" cmake --preset release -DVEK_TESTS=ON
talk "release: building" cmake --build --preset release --target longRun
seconds=0
[ "$hours" = once ] || seconds=$(awk -v hours="$hours" 'BEGIN { printf "%d", hours * 3600 }')
build/release/tests/longRun 10000000 "$seconds"
echo "No fault in $SECONDS s."
