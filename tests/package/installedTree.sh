#!/usr/bin/env bash
# What was installed has no empty folder, and no page with a link that leads nowhere; and of links there are not too few.
#   installedTree.sh FOLDER [FEWEST]
set -euo pipefail
cd "$1"
empty=$(find . -type d -empty)
[ -z "$empty" ] || { echo "FAILED: empty in $1:" $empty >&2; exit 1; }
pages=0 links=0
while IFS= read -r page; do
    pages=$((pages + 1))
    while IFS= read -r target; do
        links=$((links + 1))
        [ -e "$(dirname "$page")/$target" ] || { echo "FAILED: $1/$page links to $target" >&2; exit 1; }
    done < <(awk '/^```/ {isCode = !isCode} !isCode' "$page" | grep -oE '\]\([^)# ]+' | sed 's/^](//' | grep -v '^https:' || true)
done < <(find . -name '*.md')
echo "$pages pages with $links links"
[ "$links" -ge "${2:-0}" ]
