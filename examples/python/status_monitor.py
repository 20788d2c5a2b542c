"""Tells what a device says of itself: status_monitor.py [LOG], or a log on standard input as it comes."""

import sys

import vek

log = open(sys.argv[1], "rb") if len(sys.argv) > 1 else sys.stdin.buffer
for found in vek.messages(log):
    for problem in found.problems:
        print(f"line {found.line}: {problem.severity}: {problem}")
    if found.id == vek.DeviceStatus.MESSAGE_ID:
        status = found.message
        if isinstance(status, vek.DeviceStatus):
            time = found.time.isoformat(timespec="seconds") if found.time else "-"
            print(f"{time} status {status.status}, severity {status.severity}: {', '.join(status.msgs)}")
