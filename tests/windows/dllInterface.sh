#!/usr/bin/env bash
# The DLL exports exactly the four undecorated calls, imports from the system's libraries only, and tells its version.
#   dllInterface.sh OBJDUMP DLL WINDRES VERSION
set -euo pipefail
listing=$("$1" -p "$2")

exports=$(sed -n '/^\[Ordinal\/Name Pointer\]/,/^$/s/^\t\[ *[0-9]*\] //p' <<<"$listing" | sort | tr '\n' ' ')
imports=$(sed -n 's/^\tDLL Name: //p' <<<"$listing" | sort | tr '\n' ' ')
echo "exports: $exports"
echo "imports: $imports"
echo "bytes: $(stat -c %s "$2")"
[ "$exports" = "vekParamsDelete vekParamsDeleteStruct vekStrToVal vekValToStr " ]
[ "$imports" = "KERNEL32.dll msvcrt.dll " ]

resource=$("$3" -O rc -i "$2")
grep -F "FILEVERSION ${4//./, }, 0" <<<"$resource"
grep -F "VALUE \"FileVersion\", \"$4\"" <<<"$resource"
