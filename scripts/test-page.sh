#!/usr/bin/env bash
# Makes the inspector, tests it in a real browser, and makes the pictures of docs/inspector.md.
#   test-page.sh [FOLDER]   pictures go to FOLDER, docs/inspector to renew them; build/page/pictures when none is named
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/page.sh
# The page's answers are compared with those of the command line.
cmake --preset release >/dev/null
cmake --build build/release --target vekmsg | tail -n 1
node --test --test-concurrency=1 tests/page/*.test.mjs
node tests/page/pictures.mjs "${1:-build/page/pictures}"
