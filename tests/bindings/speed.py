"""Messages a second, read and written, against Python's own JSON on the same content: speed.py CONFORMANCE. It fails when a
sample takes more than 5 times as long to read."""

import json
import sys
import time
from typing import Callable

import vek
from vek import _core

with open(sys.argv[1], encoding="utf-8") as lines:
    sources = [_core.bytes_said(case["source"]) for case in map(json.loads, lines) if case["group"] == "sample"]
texts = [json.dumps(_core.read(source), ensure_ascii=False, separators=(",", ":")) for source in sources]
messages = [vek.parse(source) for source in sources]




def seconds(work: Callable[[], object], times: int = 100) -> float:
    """Of the processor, when nothing else got in the way."""

    def once() -> float:
        started = time.process_time()
        for _ in range(times):
            work()
        return (time.process_time() - started) / times

    return min(once() for _ in range(5))


def speed(work: Callable[[], object]) -> float:
    return len(sources) / seconds(work)


def times_slower(i: int) -> float:
    """The smallest of some, for a machine may change its pace between the two."""
    return min(seconds(lambda: vek.parse(sources[i])) / seconds(lambda: json.loads(texts[i])) for _ in range(3))


read, loads = speed(lambda: [vek.parse(one) for one in sources]), speed(lambda: [json.loads(one) for one in texts])
write = speed(lambda: [bytes(one) for one in messages])
values = [json.loads(one) for one in texts]
dumps = speed(lambda: [json.dumps(one) for one in values])
slowest, worst = max((times_slower(i), i) for i in range(len(sources)))
print(f"the {len(sources)} samples: vek.parse {read:.0f} messages a second, json.loads {loads:.0f} ({loads / read:.1f} times,"
      f" {slowest:.1f} for {messages[worst].MESSAGE_ID});")
print(f"    bytes(message) {write:.0f} messages a second, json.dumps {dumps:.0f} ({dumps / write:.1f} times)")
sys.exit(slowest > 5 and f"message {messages[worst].MESSAGE_ID} takes {slowest:.1f} times what its JSON takes")
