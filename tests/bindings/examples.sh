#!/usr/bin/env bash
# The examples of a language print what those of the others print: examples.sh FOLDER EXTENSION RUNNER...
set -euo pipefail
folder=$1 extension=$2 expected=$(cd "$(dirname "$0")" && pwd)/expected
shift 2
for name in four_lines status_monitor job_builder; do
    diff -u "$expected/$name.txt" <("$@" "$folder/$name.$extension" examples/device.log)
done
