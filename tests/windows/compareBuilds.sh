#!/usr/bin/env bash
# Runs the conformance program of this machine's build and of the Windows build, and compares what they wrote.
#   compareBuilds.sh NATIVE_PROGRAM WINDOWS_PROGRAM WINE_RUN WORK_FOLDER
set -euo pipefail
native=$1 windows=$2 wineRun=$3 work=$4
mkdir -p "$work"

[ -x "$native" ] || { echo "FAILED: build the preset release first, $native is not there" >&2; exit 1; }
"$wineRun" "$windows" "$work/windows.txt" | tr -d '\r' >"$work/windows.out" || exit "${PIPESTATUS[0]}"
"$native" "$work/native.txt" >"$work/native.out"

cmp "$work/native.txt" "$work/windows.txt" || {
    diff -a "$work/native.txt" "$work/windows.txt" | cut -c1-300 | head -n 8
    exit 1
}
diff "$work/native.out" "$work/windows.out" # with the lines about ids that were refused
tail -n 1 "$work/windows.out" | sed 's/$/ gave the same bytes and result codes on both targets/'
texts=$(tail -n 1 "$work/windows.out" | cut -d' ' -f1)
[ "$texts" -ge 20000 ] || { echo "FAILED: only $texts texts" >&2; exit 1; }
