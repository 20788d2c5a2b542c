#!/usr/bin/env bash
# Installs what is missing, builds the library, and converts every sample message to its structure and back. What
# test.sh has built serves here too.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/talk.sh

scripts/packages.sh build
# A build folder that is there stays as it is configured.
[ -e build/release/build.ninja ] || talk "Preparing build/release" cmake --preset release
talk "Building the library and the demo" cmake --build build/release --target demo

echo
echo "Each sample message: text to structure, structure back to text, through libvekParams2ASCII.so"
echo
build/release/demo examples/messages/*.txt
