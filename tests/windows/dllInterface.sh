#!/usr/bin/env bash
# The DLL exports exactly the four undecorated calls and imports from the system's libraries only.
#   dllInterface.sh OBJDUMP DLL
set -euo pipefail
listing=$("$1" -p "$2")

exports=$(sed -n '/^\[Ordinal\/Name Pointer\]/,/^$/s/^\t\[ *[0-9]*\] //p' <<<"$listing" | sort | tr '\n' ' ')
imports=$(sed -n 's/^\tDLL Name: //p' <<<"$listing" | sort | tr '\n' ' ')
echo "exports: $exports"
echo "imports: $imports"
echo "bytes: $(stat -c %s "$2")"
[ "$exports" = "vekParamsDelete vekParamsDeleteStruct vekStrToVal vekValToStr " ]
[ "$imports" = "KERNEL32.dll msvcrt.dll " ]
