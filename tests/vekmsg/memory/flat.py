#!/usr/bin/env python3
"""What a log takes of the memory does not depend on its size: each command that reads logs has the same peak with one of
32 MB as with one of 96 MB, give or take 4 MB.
   flat.py VEKMSG
"""
import os
import subprocess
import sys
import tempfile
import time

vekmsg = os.path.abspath(sys.argv[1])


def peak(*command):
    """In MB, as the process tells while it runs: what is told behind its end is also that of whom it was forked from."""
    process = subprocess.Popen([vekmsg, *command], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    most = 0
    while process.poll() is None:
        with open(f"/proc/{process.pid}/status") as status:
            most = max([most, *(int(line.split()[1]) for line in status if line.startswith("VmHWM"))])
        time.sleep(0.002)
    if process.returncode not in (0, 1): # 1: some messages are damaged
        raise SystemExit(f"WRONG: {command[0]} ends with {process.returncode}")
    return most / 1024


with tempfile.TemporaryDirectory() as folder:
    os.chdir(folder)
    subprocess.run([vekmsg, "example", "--messages=32000", "--devices=1", "logs"], check=True, stderr=subprocess.DEVNULL)
    part = open(os.path.join("logs", os.listdir("logs")[0]), "rb").read()
    for name, times in (("small", 4), ("large", 12)):
        with open(name, "wb") as log:
            for round in range(times): # no two beginnings are alike
                log.write(part.replace(b" ", b" %d " % round, 1))
    for command in (["summary"], ["check", "--quiet"], ["check"], ["json"], ["show"], ["table", "--id", "4161"],
                    ["stats", "FOCUS_VALUE"], ["last"], ["set", "FOCUS_VALUE=1"], ["diff", "{}"], ["load", "--into", "{}.sqlite"]):
        small, large = (peak(*(word.format(log) for word in command), log) for log in ("small", "large"))
        print(f"{command[0]:8} {small:6.1f} MB {large:6.1f} MB")
        if large > small + 4:
            raise SystemExit(f"WRONG: vekmsg {' '.join(command)} takes more of a larger log")
