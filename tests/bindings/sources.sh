#!/usr/bin/env bash
# What the generator writes of two messages in each language is what was looked at: sources.sh VEKMSG GENERATOR. With
# UPDATE=1 it is written anew, to be looked at.
set -euo pipefail
vekmsg=$1 generator=$2 golden=$(cd "$(dirname "$0")" && pwd)/golden
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
"$vekmsg" list --json | python3 -c '
import json, sys
all = json.load(sys.stdin)
all["messages"] = [one for one in all["messages"] if one["id"] in (4161, 4195)]
records = [one["record"] for one in all["messages"]]
all["records"] = [one for one in all["records"] if one["name"] in records]
all["enumerations"] = [one for one in all["enumerations"] if one["name"] == "dataPath"]
json.dump(all, sys.stdout)' >"$folder/catalogue.json"
for language in "$generator"/languages/[a-z]*.py; do
    name=$(basename "$language" .py)
    PYTHONDONTWRITEBYTECODE=1 python3 "$generator/generate.py" "$name" "$folder/catalogue.json" 1.2.3 "$folder/$name"
    [ -z "${UPDATE:-}" ] || cp "$folder/$name" "$golden/$name.txt"
    diff -u "$golden/$name.txt" "$folder/$name"
done
