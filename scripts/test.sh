#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test: under the sanitizers with both compilers, the fuzzers for a few
# seconds, the optimised build, and the Windows DLL under Wine where scripts/windows-setup.sh has prepared it.
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
    ctest --preset "$preset" -j "$(nproc)" | grep -vE '^ *(Start +[0-9]+:|[0-9]+/[0-9]+ Test .* Passed )'
}

runPreset dev -DVEK_BENCH=OFF
runPreset clang -DVEK_BENCH=OFF
runPreset fuzz
runPreset release -DVEK_TESTS=ON -DVEK_BENCH=ON
echo "== page"
scripts/test-page.sh | grep -vE '^ +|^(ok|# Subtest)'
status=0
scripts/wine-run.sh cmd.exe /c exit || status=$?
if [ "$status" -eq 0 ]; then
    runPreset mingw32
elif [ "$status" -ne 77 ] || [ -n "${CI:-}" ]; then
    echo "**** The Windows tests did not run: Wine is not there or does not work. ****" >&2
    exit 1
else
    echo "**** The Windows tests did NOT run. scripts/windows-setup.sh prepares this machine for them. ****"
fi
