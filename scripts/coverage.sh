#!/usr/bin/env bash
# Installs what is missing, builds with counters in the code, runs the tests, and prints how many lines and branches of
# the library and the tools they reach, by folder. Branches that only exceptions take do not count.
#   coverage.sh            the table
#   coverage.sh FOLDER...  the table, and the lines of each file of these folders that are not reached, and those whose
#                          branches are not
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/talk.sh
build=build/coverage

scripts/packages.sh coverage
[ ! -d "$build" ] || find "$build" -name '*.gcda' -delete # counts of earlier runs
talk "coverage: preparing" cmake --preset coverage -DVEK_BENCH=OFF -DVEK_UNITY=ON
talk "coverage: building" cmake --build "$build"
talk "coverage: testing" ctest --preset coverage -j "$(nproc)"

# Elsewhere a test of its own; without a server it ends with 77.
talk "coverage: loading into a cluster" scripts/cluster-demo.sh "$build/tools/vekmsg/vekmsg" ||
    echo "The clients of the cluster count as not reached."
scripts/coverage.py "$build" "$@"
