#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test: optimised, under the sanitizers with both compilers, and the
# Windows library under Wine where scripts/windows-setup.sh has prepared it.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/packages.sh test

# runPreset NAME [CMAKE OPTIONS...]
runPreset() {
    local preset=$1
    shift
    echo "== $preset"
    cmake --preset "$preset" "$@" >/dev/null
    cmake --build "build/$preset" | tail -n 1
    ctest --preset "$preset" -j "$(nproc)"
}

runPreset release -DVEK_TESTS=ON -DVEK_BENCH=ON
runPreset dev -DVEK_BENCH=OFF
runPreset clang -DVEK_BENCH=OFF
