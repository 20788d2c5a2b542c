#!/usr/bin/env bash
# A shared library exports exactly the calls that are named.
#   exports.sh LIBRARY CALL...
set -euo pipefail
exports=$(nm -D --defined-only "$1" | sed 's/.* //' | sort | tr '\n' ' ')
echo "exports: $exports"
[ "$exports" = "$(printf '%s\n' "${@:2}" | sort | tr '\n' ' ')" ]
