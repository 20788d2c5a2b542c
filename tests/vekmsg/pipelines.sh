#!/usr/bin/env bash
# Generated messages of every id, in one log, through the tool in each form and back: the very messages come out.
#   pipelines.sh CONFORMANCE_PROGRAM VEKMSG WORK_FOLDER
set -euo pipefail
conformance=$1 vekmsg=$2 work=$3
mkdir -p "$work"
cd "$work"
"$conformance" log.txt 100
# The messages as they stand there, between the numbers of the calls' results.
sed -E '/\(none\)/d; s/^-?[0-9]+ -?[0-9]+ @@/@@/; s/!!( -?[0-9]+)+$/!!/' log.txt >messages.txt
count=$(grep -c -a '^@@' messages.txt)
[ "$count" -ge 4000 ] || { echo "FAILED: only $count messages" >&2; exit 1; }
"$vekmsg" seal --raw log.txt | cmp - messages.txt
for form in show json flat; do
    "$vekmsg" "$form" log.txt | "$vekmsg" seal --raw | cmp - messages.txt
done
# A pipe that gives its first characters one by one.
{
    printf '\xef\xbb'
    sleep 0.1
    printf '\xbf#'
    sleep 0.1
    "$vekmsg" flat log.txt | tail -c +2
} | "$vekmsg" seal --raw | cmp - messages.txt
