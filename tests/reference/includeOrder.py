#!/usr/bin/env python3
"""Includes point down only: a file includes what stands in its own room, or in one of a line above its own here.

Headers of a folder `private` are their room's own. In the libraries that hosts link they are what is not installed, which
the rooms named with them may see.
"""
import os
import re
import sys

ORDER = """
vek/vek_std/std_sys
vek/vek_std/std_objCltn
vek/text
vek/records
vek/api
vek/inspect/words vek/inspect
vek/inspect/schema
vek/inspect/message
vek/inspect/log
vek/inspect/check
vek/inspect/forms vek/inspect/filter
vek/inspect/change
vek/inspect/archive vek/inspect/exports
tools/vekmsg/terminal
tools/vekmsg/reading tools/vekmsg/fleet
tools/vekmsg/load tools/vekmsg/figures tools/vekmsg/lsp
tools/vekmsg/load/sqlite tools/vekmsg/load/clickhouse
tools/vekmsg/commands
tools/vekmsg tools/page/core tools/reference tools/bindings/core
"""

SEEN = {
    "vek/vek_std/std_sys": ["vek/text", "vek/records", "vek/api", "vek/inspect/exports", "tools/bindings/core"],
    "vek/text": ["vek/records"],
    "vek/records": ["vek/api", "vek/inspect/schema", "tools/reference"],
    "vek/api": ["vek/inspect/schema", "vek/inspect/message", "tools/bindings/core"],
}

LEVELS = {room: level for level, line in enumerate(ORDER.split("\n")) for room in line.split()}


def room_of(path):
    """The room that a file stands in; None outside of all."""
    folder = os.path.dirname(path)
    while folder and folder not in LEVELS:
        folder = os.path.dirname(folder)
    return folder or None


def problems_of(path, included):
    own, other = room_of(path), room_of(included)
    if own is None:
        yield "stands in no room of tests/reference/includeOrder.py; enter its folder there"
    elif other is None or own == other:
        return
    elif LEVELS[other] >= LEVELS[own]:
        yield f"includes {included}, which stands no lower"
    elif "/private/" in included and own not in SEEN.get(other, []):
        yield f"includes {included}, which is {other}'s own"


def main(root):
    found = count = 0
    for top in ("vek", "tools"):
        for folder, _, names in os.walk(os.path.join(root, top)):
            for name in sorted(names):
                if not name.endswith((".hpp", ".cpp", ".h", ".c")):
                    continue
                path = os.path.relpath(os.path.join(folder, name), root).replace(os.sep, "/")
                with open(os.path.join(folder, name), encoding="utf-8") as file:
                    text = file.read()
                for included in re.findall(r'^\s*#\s*include\s*"([^"]+)"', text, re.M) or [path]:
                    count += 1
                    for problem in problems_of(path, included):
                        print(f"{path} {problem}")
                        found += 1
    if count < 500:
        print(f"only {count} includes were found under {root}")
        found += 1
    return 1 if found else 0


sys.exit(main(sys.argv[1]))
