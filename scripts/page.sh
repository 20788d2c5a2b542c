#!/usr/bin/env bash
# Makes the inspector, one file that works from disk: build/page/vekmsg.html. Installs what is missing.
set -euo pipefail
cd "$(dirname "$0")/.."
# shellcheck source=scripts/talk.sh
. scripts/talk.sh

scripts/packages.sh page
talk "page: preparing" cmake --preset page
talk "page: building the core" cmake --build --preset page
[ tools/page/node_modules/.package-lock.json -nt tools/page/package-lock.json ] ||
    talk "page: fetching its tools" npm ci --prefix tools/page --no-audit --no-fund --ignore-scripts
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' build/page/CMakeCache.txt)
node tools/page/build.mjs build/page/tools/bindings/vekBindings.wasm examples/device.log "$version" build/page/vekmsg.html
