#!/usr/bin/env bash
# Installs what is missing, builds, and runs the tests. Says what it does, how far it is and how long it took; what is built
# already serves again.
#   test.sh          one optimised build and its tests, with the tool and the page's core
#   test.sh all      that, unless these very sources have passed it, and then the rest: form and clang-tidy of the sources,
#                    the sanitizers, the fuzzers for 10 seconds each, the packages, those for other
#                    languages, the page in a browser, and the Windows DLLs under Wine where scripts/windows-setup.sh
#                    prepared it
#   test.sh quick    one unoptimised build and its tests without the long comparisons, for the time between two changes
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/talk.sh
passed=build/release/passed # which sources

# runPreset NAME [CMAKE OPTIONS...]
runPreset() {
    local preset=$1
    shift
    talk "$preset: preparing" cmake --preset "$preset" "$@"
    talk "$preset: building" cmake --build --preset "$preset"
    runTests "$preset"
}

runTests() {
    talk "$1: testing" ctest --preset "$1" -j "$(nproc)"
    talkShows '^[0-9]+% tests passed|Skipped|Not Run|^Total Test time'
}

# A sum of all files that are no outcome of a build.
sources() {
    find . \( -path ./build -o -path ./.git -o -name node_modules \) -prune -o -type f -print0 | LC_ALL=C sort -z |
        xargs -0 sha256sum | sha256sum
}

runRelease() {
    local now
    now=$(sources)
    rm -f "$passed"
    runPreset release -DVEK_TESTS=ON
    echo "$now" >"$passed"
}

runRest() {
    local status=0
    talk "sources: checking" scripts/lint.sh
    # From nothing, sources are compiled together; each alone in the builds that are packed, where a library takes of
    # another what it needs. One compiler with the sanitizers is enough for all tests: what the other made has passed them.
    runPreset clang -DVEK_UNITY=ON
    runPreset thread -DVEK_UNITY=ON
    runPreset memory -DVEK_UNITY=ON
    local seed # of these sources, so that whoever has them can repeat the run
    seed=$((16#$(sources | cut -c1-7)))
    echo "fuzz: the seed is $seed"
    runPreset fuzz -DVEK_UNITY=ON -DVEK_FUZZ_SECONDS=10 -DVEK_FUZZ_SEED="$seed"
    talk "benchmarks: preparing" cmake --preset release -DVEK_TESTS=ON -DVEK_BENCH=ON
    talk "benchmarks: building" cmake --build --preset release
    runTests packages
    scripts/test-page.sh
    { scripts/wine-run.sh --32 cmd.exe /c exit && scripts/wine-run.sh --64 cmd.exe /c exit; } || status=$?
    if [ "$status" -eq 0 ]; then
        runPreset mingw32
        runPreset mingw64 -DVEK_UNITY=ON
    elif [ "$status" -ne 77 ] || [ -n "${CI:-}" ]; then
        echo "**** The Windows tests did not run: Wine is not there or does not work. ****" >&2
        exit 1
    else
        echo "**** The Windows tests did NOT run. scripts/windows-setup.sh prepares this machine for them. ****"
    fi
    scripts/bindings.sh # with the DLLs, where they are
}

case ${1:-} in
'')
    scripts/packages.sh test
    runRelease
    ;;
all)
    scripts/packages.sh all
    [ -z "${CI:-}" ] || scripts/packages.sh cluster # elsewhere the test of the cluster is skipped without them
    if [ -e "$passed" ] && [ "$(cat "$passed")" = "$(sources)" ]; then
        echo "release: these very sources have passed"
    else
        runRelease
    fi
    runRest
    ;;
quick)
    scripts/packages.sh all
    runPreset quick
    ;;
*)
    echo "test: '$1' is not all or quick" >&2
    exit 2
    ;;
esac
echo "Passed in $SECONDS s."
