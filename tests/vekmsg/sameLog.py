#!/usr/bin/env python3
"""A log is one, at whatever size it is seen first, and however it is called, packed, or cut when it is seen again: each of
its messages is loaded once, or nothing is and the loader says what to do. Two logs are two.

    sameLog.py VEKMSG [SEED]
"""
import gzip
import os
import random
import re
import sqlite3
import subprocess
import sys
import tempfile

vekmsg = os.path.abspath(sys.argv[1])
seed = int(sys.argv[2]) if len(sys.argv) > 2 else random.randrange(1 << 30)
random.seed(seed)
SIZES = 280
WAYS = ["same", "spelt", "absolute", "packed"] * 5 + ["renamed", "rotated"]


def line(number, step, is_dated):
    time = f"2026-03-{1 + number % 28:02} 08:{step % 60:02}:00 " if is_dated else ""
    body = f"{{MEDIA_NAME=log {number} {step};FOCUS_VALUE=1.000000;}}"
    return f"{time}> @@4112 {len(body) + 20:5} 7 {step % 10} {body}!!\n".encode()


def load(archive, *arguments):
    """What the loader says, by file."""
    done = subprocess.run([vekmsg, "load", "--quiet", "--into", archive, *arguments], capture_output=True, text=True)
    said = {}
    for told in done.stderr.splitlines():
        file = re.match(r"vekmsg: (?:no message in )?(\S+?)[:;]? ", told)
        assert file, told
        said[file[1]] = told
    assert done.returncode in (0, 1, 2), done.stderr
    return said


class Log:
    def __init__(self, number):
        self.number, self.is_dated = number, number % 3 == 0
        lines = [line(number, step, self.is_dated) for step in range(random.choice([3, 9, 60]))]
        self.bytes = b"%03d " % number + b"".join(lines)
        self.messages = len(lines)
        self.first = min(number, len(self.bytes))  # bytes that are there at first: every size
        self.name = f"logs/{number}.log"
        self.way = random.choice(WAYS)
        write(self.name, self.bytes[: self.first])

    def grow(self):
        """Gives the name by which it is loaded again, whole."""
        if self.way in ("renamed", "rotated", "packed"):
            os.remove(self.name)
        name = {
            "spelt": f"logs/../logs//{self.number}.log",
            "absolute": os.path.abspath(self.name),
            "packed": self.name + ".gz",
            "renamed": f"logs/new-{self.number}.log",
            "rotated": self.name + ".1",
        }.get(self.way, self.name)
        write(name, gzip.compress(self.bytes) if self.way == "packed" else self.bytes)
        return name

    def other(self):
        """Another log, which begins with some of the same bytes."""
        common = random.randrange(20 if self.is_dated else len(self.bytes) - 40)
        end = b"".join(line(self.number + 1000, step, False) for step in range(5))
        name = self.name if self.way == "rotated" else f"logs/other-{self.number}.log"
        write(name, self.bytes[:common] + b"\x01\n" + end)
        return name


def write(name, data):
    with open(name, "wb") as file:
        file.write(data)


def counts(archive):
    with sqlite3.connect(archive) as database:
        return dict(database.execute("SELECT substr(media_name, 5, instr(substr(media_name, 5), ' ')) + 0 AS log, count(*) "
                                     "FROM focus_value WHERE NOT damaged GROUP BY log"))


def expect(archive, logs, words):
    there = counts(archive)
    for log in logs:
        assert there.get(log.number) == log.messages, f"{words}: {log.__dict__} has {there.get(log.number)}"


def main():
    archive = "archive.sqlite"
    os.mkdir("logs")
    logs = [Log(number) for number in range(SIZES)]
    load(archive, *(log.name for log in logs))
    again = {log.grow(): log for log in logs}
    said = load(archive, *again)
    refused = [(name, log) for name, log in again.items() if "nothing of it is loaded" in said.get(name, "")]
    for name, log in refused:
        assert log.way in ("renamed", "rotated") and log.first < 256, said[name]
    assert 0 < len(refused) < SIZES / 3
    for name, log in refused:
        assert not load(archive, "--source", log.name, name) or log.is_dated
    expect(archive, logs, "once")

    for log in logs:  # a part of it, from its start on, somewhere else
        write(f"logs/copy-{log.number}", log.bytes[: random.randrange(len(log.bytes) + 1)])
    load(archive, *(f"logs/copy-{log.number}" for log in logs))
    expect(archive, logs, "still once")

    others = [log.other() for log in logs]
    told = load(archive, *others)
    assert not any("nothing" in words for words in told.values()), told
    assert sum(counts(archive).values()) > sum(log.messages for log in logs) + SIZES * 4
    load(archive, *others, *(name for name, log in again.items() if log.way != "rotated"))
    assert {k: v for k, v in counts(archive).items() if k >= 1000} == {log.number + 1000: 5 for log in logs}, "two"
    for name, log in list(again.items())[1::40]:  # renamed while nothing worth telling of it was loaded, it is a new one
        wholes = [
            subprocess.run([vekmsg, "export", "--from", archive, "--source", source], capture_output=True).stdout
            for source in (log.name, name)
        ]
        assert log.bytes in wholes or log.way == "rotated", name


with tempfile.TemporaryDirectory() as folder:
    os.chdir(folder)
    try:
        main()
    except AssertionError:
        print(f"seed {seed}")
        raise
