"""Messages a second, read and written, against Python's own JSON on the same content: speed.py CONFORMANCE"""

import json
import sys
import timeit

import vek
from vek import _core

with open(sys.argv[1], encoding="utf-8") as lines:
    sources = [_core.bytes_said(case["source"]) for case in map(json.loads, lines) if case["group"] == "sample"]
texts = [json.dumps(_core.read(source), ensure_ascii=False, separators=(",", ":")) for source in sources]
messages = [vek.parse(source) for source in sources]


def speed(work: object) -> float:
    return 100 * len(sources) / min(timeit.repeat(work, number=100, repeat=5))  # type: ignore[arg-type]


read, loads = speed(lambda: [vek.parse(one) for one in sources]), speed(lambda: [json.loads(one) for one in texts])
write = speed(lambda: [bytes(one) for one in messages])
dumps = speed(lambda values=[json.loads(one) for one in texts]: [json.dumps(one) for one in values])
print(f"the {len(sources)} samples: vek.parse {read:.0f} messages a second, json.loads {loads:.0f} ({loads / read:.1f} times);")
print(f"    bytes(message) {write:.0f} messages a second, json.dumps {dumps:.0f} ({dumps / write:.1f} times)")
