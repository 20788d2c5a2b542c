#!/usr/bin/env bash
# A DLL or a program may be loaded anywhere, its data is not run, and functions look after their stacks: what they say
# when one was written over is in the file.
#   peFile.sh OBJDUMP FILE
set -euo pipefail
listing=$("$1" -p "$2")
flags=(DYNAMIC_BASE NX_COMPAT)
grep -q 'file format pei-x86-64' <<<"$listing" && flags+=(HIGH_ENTROPY_VA)
for flag in "${flags[@]}"; do
    grep -qw "$flag" <<<"$listing" || { echo "FAILED: $2 is not $flag" >&2; exit 1; }
done
grep -qE '^Entry 5 [0-9a-f]+ 0*[1-9a-f][0-9a-f]* Base Relocation' <<<"$listing"
grep -qa 'stack smashing detected' "$2" || { echo "FAILED: $2 has no stack protection" >&2; exit 1; }
