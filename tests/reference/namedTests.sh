#!/usr/bin/env bash
# The tests that a page names behind its promises are there: ctest knows them in this build, or they are added to
# another kind of build; fuzzers are in theirs; scripts are run.
#   namedTests.sh PROJECT_FOLDER BUILD_FOLDER PAGE FEWEST     with a part of the tests not built it ends with 77
set -euo pipefail
cd "$1"
page=$3 fewest=$4 count=0
known=$(ctest --test-dir "$2" -N | sed -nE 's/^ *Test +#[0-9]+: ([^ ]+).*/\1/p')
if missing=$(grep '_NOT_BUILT$' <<<"$known"); then
    echo "SKIPPED: not built are" $missing
    exit 77
fi
while read -r name; do
    count=$((count + 1))
    case $name in
    tests/page/*.test.mjs) [ -e "$name" ] && grep -qF 'tests/page/*.test.mjs' scripts/test-page.sh ;;
    scripts/*) [ -x "$name" ] ;;
    *Fuzz) grep -q "^vekFuzz($name " fuzz/CMakeLists.txt ;;
    *) grep -qE "^([A-Za-z]+/)?$name(/.*)?\$" <<<"$known" ||
        { [[ $name == [a-z]* ]] && grep -qE "NAME ($name|${name%%.*}\.\\$\{[a-z]+\})( |$)" tests/CMakeLists.txt; } ;;
    esac || {
        echo "FAILED: $page names $name, which is not there" >&2
        exit 1
    }
done < <({ sed -n 's/^| .* | \(`.*`\) |$/\1/p' "$page" && grep -E '`(hardening|package)\.' "$page"; } |
    grep -oE '`[^`]+`' | tr -d '`' | grep -vE '^(vekmsg(\.exe)?|NAME\..*|NOTICES)$' | sort -u)
echo "$count tests"
[ "$count" -ge "$fewest" ]
