#!/usr/bin/env bash
# A DLL exports exactly the undecorated calls that are named, imports from the system's libraries only, is hardened, and
# tells its version.
#   dllInterface.sh OBJDUMP DLL WINDRES VERSION CALL...
set -euo pipefail
listing=$("$1" -p "$2")
calls=$(printf '%s\n' "${@:5}" | sort | tr '\n' ' ')

exports=$(sed -n '/^\[Ordinal\/Name Pointer\]/,/^$/s/^\t\[ *[0-9]*\] //p' <<<"$listing" | sort | tr '\n' ' ')
imports=$(sed -n 's/^\tDLL Name: //p' <<<"$listing" | sort | tr '\n' ' ')
echo "exports: $exports"
echo "imports: $imports"
echo "bytes: $(stat -c %s "$2")"
[ "$exports" = "$calls" ]
[ "$imports" = "ADVAPI32.dll KERNEL32.dll msvcrt.dll " ] # of the first the random number that guards stacks

"$(dirname "$0")/peFile.sh" "$1" "$2"

resource=$("$3" -O rc -i "$2")
grep -F "FILEVERSION ${4//./, }, 0" <<<"$resource"
grep -F "VALUE \"FileVersion\", \"$4\"" <<<"$resource"
