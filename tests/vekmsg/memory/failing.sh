#!/usr/bin/env bash
# The tool without memory: of every main path allocations fail, and all behind them. It ends with 2 and a sentence, or as
# if nothing had been.
#   failing.sh VEKMSG FAIL_AT_LIBRARY EXAMPLES
set -uo pipefail
vekmsg=$1 library=$2 examples=$3
[ -e "$library" ] || { echo "$library is not built" >&2; exit 1; }
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# endsWell STATUS ARGUMENTS...: with STATUS when there is memory.
endsWell() {
    local wanted=$1 n=1 status failures=0
    shift
    while :; do
        rm -f "$folder/enough"
        FAIL_AT=$n LD_PRELOAD=$library "$vekmsg" "$@" >"$folder/out" 2>"$folder/said" 9>"$folder/enough" </dev/null
        status=$?
        if [ -s "$folder/enough" ]; then
            [ "$status" -eq "$wanted" ] && [ "$failures" -gt 10 ] && return
            echo "FAILED: $* ends with $status after $failures failures, not with $wanted" >&2
            exit 1
        fi
        if ! { [ "$status" -eq 2 ] && [ -s "$folder/said" ]; } && [ "$status" -ne "$wanted" ]; then
            echo "FAILED: $* without allocation $n ends with $status: $(cat "$folder/said")" >&2
            exit 1
        fi
        failures=$((failures + 1))
        n=$((n + 1 + n / 12))
    done
}
endsWell 0 show "$examples/messages/4112-focus-value.txt"
endsWell 0 check "$examples/messages/4112-focus-value.txt"
endsWell 0 new DEVICE_INFO
endsWell 0 json "$examples/messages/4100-cassette.txt"
endsWell 0 summary "$examples/device.log"
endsWell 0 stats @seq "$examples/device.log" --by kind
endsWell 0 set "$examples/messages/4112-focus-value.txt" FOCUS_VALUE=2
