#!/usr/bin/env bash
# The tests that a page names behind its promises are there.
#   namedTests.sh PROJECT_FOLDER PAGE FEWEST
set -euo pipefail
cd "$1"
page=$2 fewest=$3 count=0
while read -r name; do
    count=$((count + 1))
    case $name in
    */*) [ -e "$name" ] ;;
    vekmsg.*) [ -e "tests/vekmsg/${name#*.}.md" ] ;;
    [a-z]*.*) grep -qw "NAME $name" tests/CMakeLists.txt ;;
    *.*) grep -rqE "TEST(_F|_P)?\(${name%.*}, ${name#*.}\)" tests --include='*.cpp' ;;
    *) [ -e "fuzz/$name.cpp" ] || grep -qw "NAME $name" tests/CMakeLists.txt ;;
    esac || {
        echo "FAILED: $page names $name, which is not there" >&2
        exit 1
    }
done < <(sed -n 's/^| .* | \(`.*`\) |$/\1/p' "$page" | grep -oE '`[^`]+`' | tr -d '`' | sort -u)
echo "$count tests"
[ "$count" -ge "$fewest" ]
