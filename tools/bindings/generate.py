#!/usr/bin/env python3
"""Makes the sources of a package from the declarations: generate.py LANGUAGE CATALOGUE VERSION FILE

LANGUAGE is one of those in languages/; CATALOGUE is the JSON of `vekmsg list --json`.
"""

from __future__ import annotations

import importlib
import json
import pathlib
import sys

from declarations import Declarations


def main(language: str, catalogue: str, version: str, target: str) -> None:
    with open(catalogue, encoding="utf-8") as file:
        declarations = Declarations(json.load(file))
    source = importlib.import_module("languages." + language).source(declarations, version)
    path = pathlib.Path(target)
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(source, encoding="utf-8")


if __name__ == "__main__":
    if len(sys.argv) != 5:
        sys.exit(__doc__)
    main(*sys.argv[1:])
