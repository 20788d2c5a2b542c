#!/usr/bin/env bash
# The pages made from the declarations are in docs as they would be made now.
#   upToDate.sh VEKREFERENCE PROJECT_FOLDER WORK_FOLDER
set -euo pipefail
reference=$1 project=$2 work=$3
rm -rf "$work"
mkdir -p "$work"
(cd "$project" && "$reference" . "$work")
for page in "$work"/*.md; do
    diff -u "$project/docs/$(basename "$page")" "$page"
done
