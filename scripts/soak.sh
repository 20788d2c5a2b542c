#!/usr/bin/env bash
# Converts for long what a host converts in months: every kind of message, whole and damaged, on four threads, as fast as
# the machine can. Ends when memory grows, a sequence number is missing or given twice, or a text becomes another one.
#   soak.sh [HOURS]           2 by default, also 0.1; Ctrl-C ends it sooner
#   soak.sh once              ten million conversions
#   soak.sh follow [HOURS]    instead a log that grows and is rotated, followed into archives, with kills and a full disk
#   soak.sh cluster [HOURS]   the same into a ClickHouse server, which is killed in place of a full disk
#   soak.sh page [HOURS]      instead the inspector, open in Chromium on a log that grows
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/talk.sh
mode=convert target=longRun
[[ ${1:-} != @(follow|cluster|page) ]] || { mode=$1 target=vekmsg && shift; }
hours=${1:-2}
if [ "$hours$target" != oncelongRun ] && ! awk -v hours="$hours" 'BEGIN { exit !(hours ~ /^[0-9]*[.]?[0-9]+$/ && hours > 0) }'; then
    echo "soak: '$hours' is not once or a number of hours" >&2
    exit 2
fi
scripts/packages.sh test
[ "$mode" != cluster ] || scripts/packages.sh cluster
talk "release: preparing" cmake --preset release -DVEK_TESTS=ON
talk "release: building" cmake --build --preset release --target "$target"
seconds=0
[ "$hours" = once ] || seconds=$(awk -v hours="$hours" 'BEGIN { printf "%d", hours * 3600 }')
case $mode in
convert) build/release/tests/longRun 10000000 "$seconds" ;;
follow) tests/vekmsg/followed.py build/release/tools/vekmsg/vekmsg examples/device.log "$seconds" ;;
cluster) tests/vekmsg/followed.py build/release/tools/vekmsg/vekmsg examples/device.log "$seconds" 400 "$$" server ;;
page) scripts/page.sh && node tests/page/growing.mjs "$seconds" ;;
esac
echo "No fault in $SECONDS s."
