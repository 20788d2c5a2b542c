#!/usr/bin/env bash
# A shared library or a program is compiled and linked as the system hardens its own: read from its file.
#   elfFile.sh FILE MOST_BYTES   of the stripped file
set -euo pipefail
library=$1 most=$2
headers=$(LC_ALL=C readelf --wide --file-header --program-headers --dynamic --sections "$library")
symbols=$(LC_ALL=C readelf --wide --dyn-syms "$library")

# has WHAT PATTERN TEXT
has() {
    grep -qE -- "$2" <<<"$3" || { echo "FAILED: $library: $1" >&2; exit 1; }
}
has 'it is loaded at a fixed address' 'Type: +DYN' "$headers"
has 'its tables stay writable (no relro)' 'GNU_RELRO' "$headers"
has 'its symbols are bound late, in a writable table' 'FLAGS_1.*NOW' "$headers"
has 'its stack is executable' 'GNU_STACK .* RW +0x' "$headers"
has 'no function looks after its stack' ' __stack_chk_fail(@| |$)' "$symbols"
has 'no call is checked against the size of its array (_FORTIFY_SOURCE)' ' __[a-z]+_chk(@| |$)' "$symbols"
if grep -E 'TEXTREL|LOAD .* RWE ' <<<"$headers"; then
    echo "FAILED: $library: code that is writable" >&2
    exit 1
fi
stripped=$(mktemp)
trap 'rm -f "$stripped"' EXIT
strip -o "$stripped" "$library"
bytes=$(stat -c %s "$stripped")
echo "$bytes bytes stripped, $most at most"
[ "$bytes" -le "$most" ]
