#!/usr/bin/env bash
# Installs what is missing, builds with counters in the code, runs the tests, and prints how many lines and branches of
# the library and the tools they reach, by folder. Branches that only exceptions take do not count.
#   coverage.sh            the table
#   coverage.sh FOLDER...  the table, and the lines of each file of these folders that are not reached
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/talk.sh
build=build/coverage

scripts/packages.sh coverage
rm -rf "$build" # notes of sources that are gone, and counts of earlier runs, would be read too
talk "coverage: preparing" cmake --preset coverage -DVEK_BENCH=OFF
talk "coverage: building" cmake --build "$build"
talk "coverage: testing" ctest --preset coverage -j "$(nproc)"

count() {
    gcovr --root . --object-directory "$build" -j "$(nproc)" --exclude-throw-branches --exclude-unreachable-branches "$@"
}
talk "coverage: counting" count --filter vek/ --filter tools/ --json "$build/coverage.json"
count --add-tracefile "$build/coverage.json" --csv | awk -F, '
    # A row of the table: a name, and lines and branches, all and reached.
    function row(name, lines, linesReached, branches, branchesReached) {
        return sprintf("%-28s %6d of %6d  %5.1f %%   %6d of %6d  %5.1f %%", name, linesReached, lines,
            lines ? 100 * linesReached / lines : 100, branchesReached, branches,
            branches ? 100 * branchesReached / branches : 100)
    }
    NR == 1 { next }
    {
        folder = $1
        sub("/[^/]*$", "", folder)
        folders[folder]
        for (column = 2; column <= 6; ++column) {
            sum[folder, column] += $column
            total[column] += $column
        }
    }
    END {
        printf "%-28s %25s   %25s\n", "folder", "lines reached", "branches reached"
        fflush()
        for (folder in folders)
            print row(folder, sum[folder, 2], sum[folder, 3], sum[folder, 5], sum[folder, 6]) | "sort"
        close("sort")
        print row("all", total[2], total[3], total[5], total[6])
    }'

for folder in "$@"; do
    count --add-tracefile "$build/coverage.json" --filter "${folder%/}/"
done
