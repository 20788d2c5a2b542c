#!/usr/bin/env python3
"""Counts the lines and branches of vek and tools that the tests of a coverage build reached: a table by folder, and the
lines of each file of some folders that were not reached. gcov itself reads what was counted.
    coverage.py BUILD [FOLDER...]

A line or branch of a template counts once, and is reached when one of its instances reaches it. Branches that only
exceptions take do not count, nor do lines with nothing but braces, where objects end.
"""
import collections
import concurrent.futures
import json
import os
import pathlib
import subprocess
import sys

root = pathlib.Path(__file__).resolve().parent.parent
build = pathlib.Path(sys.argv[1]).resolve()
reached = collections.defaultdict(lambda: collections.defaultdict(bool))  # of a file: a line, or a line and a branch


def count(notes):
    """What one object says of the sources in question."""
    answer = subprocess.run(["gcov", "--branch-probabilities", "--json-format", "--stdout", str(notes)], cwd=notes.parent,
                            capture_output=True, check=True).stdout
    found = []
    for document in answer.splitlines():
        read = json.loads(document)
        for source in read["files"]:
            path = os.path.relpath(os.path.join(read["current_working_directory"], source["file"]), root)
            if path.startswith(("vek/", "tools/")):
                found.append((path, source["lines"]))
    return found


# gcov takes paths in its notes from the folder that the compiler ran in.
with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
    for found in pool.map(count, sorted(build.rglob("*.gcda"))):
        for path, lines in found:
            for line in lines:
                reached[path][line["line_number"]] |= line["count"] > 0
                branches = [branch for branch in line["branches"] if not branch["throw"]]
                for number, branch in enumerate(branches if len(branches) > 1 else []):
                    reached[path][line["line_number"], number] |= branch["count"] > 0

for path, places in reached.items():
    code = (root / path).read_text(errors="replace").splitlines()
    if max(place[0] if isinstance(place, tuple) else place for place in places) > len(code):
        sys.exit(f"coverage: {path} has changed since it was built")
    for place in list(places):
        if code[(place[0] if isinstance(place, tuple) else place) - 1].strip() in ("{", "}", "};", "{}"):
            del places[place]


def row(name, places):
    """A row of the table."""
    text = f"{name:28}"
    for kind in (int, tuple):
        all_of_kind = [is_reached for place, is_reached in places if isinstance(place, kind)]
        share = 100 * sum(all_of_kind) / len(all_of_kind) if all_of_kind else 100
        text += f" {sum(all_of_kind):6} of {len(all_of_kind):6}  {share:5.1f} %  "
    print(text.rstrip())


def places_in(folder):
    """What lies in a folder and those below."""
    return [item for path, places in reached.items() if path.startswith(folder) for item in places.items()]


print(f"{'folder':28} {'lines reached':>25}   {'branches reached':>25}")
for folder in sorted({os.path.dirname(path) for path in reached}):
    row(folder, [item for path, places in reached.items() if os.path.dirname(path) == folder for item in places.items()])
for folder in ("vek/", "tools/vekmsg/", ""):
    row(f"all of {folder}" if folder else "all", places_in(folder))
for folder in sys.argv[2:]:
    for path in sorted(path for path in reached if path.startswith(folder)):
        lines = sorted(place for place, is_reached in reached[path].items() if isinstance(place, int) and not is_reached)
        branches = sorted({place[0] for place, is_reached in reached[path].items() if isinstance(place, tuple) and not is_reached})
        if lines or branches:
            print(f"{path}: lines {', '.join(map(str, lines)) or '-'}; branches of {', '.join(map(str, branches)) or '-'}")
