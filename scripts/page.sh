#!/usr/bin/env bash
# Makes the inspector, one file that works from disk: build/page/vekmsg.html. Installs what is missing.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/packages.sh page
cmake --preset page >/dev/null
cmake --build build/page | tail -n 1
[ tools/page/node_modules/.package-lock.json -nt tools/page/package-lock.json ] ||
    npm ci --prefix tools/page --no-audit --no-fund --silent
version=$(sed -n 's/^project(.* VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
node tools/page/build.mjs build/page/tools/page/pageCore.wasm examples/device.log "$version" build/page/vekmsg.html
