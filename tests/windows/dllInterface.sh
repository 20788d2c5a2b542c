#!/usr/bin/env bash
# A DLL exports exactly the undecorated calls that are named, and imports from the system's libraries only.
#   dllInterface.sh OBJDUMP DLL CALL...
set -euo pipefail
listing=$("$1" -p "$2")
calls=$(printf '%s\n' "${@:3}" | sort | tr '\n' ' ')

exports=$(sed -n '/^\[Ordinal\/Name Pointer\]/,/^$/s/^\t\[ *[0-9]*\] //p' <<<"$listing" | sort | tr '\n' ' ')
imports=$(sed -n 's/^\tDLL Name: //p' <<<"$listing" | sort | tr '\n' ' ')
echo "exports: $exports"
echo "imports: $imports"
echo "bytes: $(stat -c %s "$2")"
[ "$exports" = "$calls" ]
[ "$imports" = "KERNEL32.dll msvcrt.dll " ]
