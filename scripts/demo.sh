#!/usr/bin/env bash
# Installs what is missing, builds the library, and converts every sample message to its structure and back.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/packages.sh build
cmake --preset release -DVEK_TESTS=OFF -DVEK_BENCH=OFF >/dev/null
cmake --build build/release --target demo | tail -n 1

echo
echo "Each sample message: text to structure, structure back to text, through libvekParams2ASCII.so"
echo
build/release/demo examples/messages/*.txt
