#!/usr/bin/env bash
# Installs what is missing, checks the sources, builds, and runs the tests. Says what it does, how far it is and how long
# it took; what is built already serves again.
#   test.sh          everything: under the sanitizers with both compilers, the fuzzers for 20 seconds each, the optimised
#                    build with its packages, and the Windows DLL under Wine where scripts/windows-setup.sh prepared it
#   test.sh quick    one unoptimised build and its tests without the long comparisons, for the time between two changes
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/talk.sh
case ${1:-} in '' | quick) ;; *) echo "test: '$1' is not quick" >&2; exit 2 ;; esac

scripts/packages.sh test
[ -z "${CI:-}" ] || scripts/packages.sh cluster # elsewhere the test of the cluster is skipped without them

# runPreset NAME [CMAKE OPTIONS...]
runPreset() {
    local preset=$1
    shift
    talk "$preset: preparing" cmake --preset "$preset" "$@"
    talk "$preset: building" cmake --build --preset "$preset"
    talk "$preset: testing" ctest --preset "$preset" -j "$(nproc)"
    talkShows '^[0-9]+% tests passed|Skipped|Not Run|^Total Test time'
}

if [ "${1:-}" = quick ]; then
    runPreset quick
    echo "Passed in $SECONDS s."
    exit 0
fi

# From nothing, sources are compiled together; each alone in the builds that are packed, where a library takes of
# another what it needs.
echo "Seven builds, one after the other. scripts/test.sh quick takes one."
talk "sources: checking" scripts/lint.sh
runPreset dev -DVEK_UNITY=ON
runPreset clang -DVEK_UNITY=ON
runPreset thread -DVEK_UNITY=ON
runPreset memory -DVEK_UNITY=ON
runPreset fuzz -DVEK_UNITY=ON -DVEK_FUZZ_SECONDS=20 -DVEK_FUZZ_SEED=1
runPreset release -DVEK_TESTS=ON -DVEK_BENCH=ON
scripts/test-page.sh
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
echo "Passed in $SECONDS s."
