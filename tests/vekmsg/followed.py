#!/usr/bin/env python3
"""Follows a log that grows and is rotated into two archives: one loader is let alone, the other one is killed, and its disk
is full now and then. In the end both archives have each message once and give the log back byte for byte, and the memory
of the loader that was let alone is what it was in the first half: by then the cache of a long run is full.
   followed.py VEKMSG SAMPLE-LOG [SECONDS [MESSAGES-A-SECOND [SEED [server]]]]    8 seconds, 400 a second
Where no small disk can be mounted, it is never full, and that is said. With `server` the archives are on a ClickHouse
server, which is killed instead.
"""
import atexit
import datetime
import os
import pathlib
import random
import shutil
import signal
import subprocess
import sys
import tempfile
import time

from servers import Server, folder_of_servers

vekmsg, sample = os.path.abspath(sys.argv[1]), pathlib.Path(sys.argv[2])
seconds, rate, seed = (int(sys.argv[i]) if len(sys.argv) > i else usual for i, usual in ((3, 8), (4, 400), (5, os.getpid())))
if "VEK_OWN_MOUNTS" not in os.environ: # what is mounted goes with the process
    mounting = ["unshare", "-m" if os.geteuid() == 0 else "-rm"]
    if subprocess.run([*mounting, "true"], stderr=subprocess.DEVNULL).returncode == 0:
        os.execvpe(mounting[0], [*mounting, sys.executable, *sys.argv], {**os.environ, "VEK_OWN_MOUNTS": "yes"})
random.seed(seed)
folder = pathlib.Path(tempfile.mkdtemp(prefix="followed.")).resolve()
small = folder / "small"
small.mkdir()
log = folder / "device.log"
hasServer = "server" in sys.argv
mount = ["mount", "-t", "tmpfs", "-o", "size=2g", "archive", small]
canFill = not hasServer and subprocess.run(mount, stderr=subprocess.DEVNULL).returncode == 0
alone, disturbed = str(folder / "alone.sqlite"), str(small / "disturbed.sqlite")
if hasServer:
    room = folder_of_servers()
    atexit.register(shutil.rmtree, room)
    server = Server(f"{room}/server").start()
    atexit.register(server.kill)
    alone, disturbed = (f"http://127.0.0.1:{server.port}/{name}" for name in ("alone", "disturbed"))
    for name in ("alone", "disturbed"):
        server.ask(f"CREATE DATABASE {name}", "default")
lines = [line.split(" ", 1)[1] for line in sample.read_text().splitlines(True)]
written, began, clock = 0, time.monotonic(), datetime.datetime(2026, 1, 1)


def wrong(what):
    raise SystemExit(f"WRONG: {what} (seed {seed}, {folder} is kept)")


def logs():
    return sorted(folder.glob("device.log.*")) + [log]


def load(archive, *more):
    loader = subprocess.Popen([vekmsg, "load", "--quiet", "--into", archive, *more], stderr=subprocess.PIPE, text=True)
    atexit.register(loader.kill)
    return loader


def hasOpened(process):
    """Of two rotations at once nobody who follows sees the first one's log."""
    return any(os.path.realpath(link) == str(log) for link in pathlib.Path(f"/proc/{process.pid}/fd").iterdir())


def messages(archive):
    """-1: some are there twice."""
    if hasServer:
        return int(server.ask("SELECT if(count() = uniqExact(source_id, byte_offset), toInt64(count()), -1) FROM messages", os.path.basename(archive)))
    asked = subprocess.run(["sqlite3", "-cmd", ".timeout 10000", archive, "SELECT count(*) FROM messages"], capture_output=True, text=True)
    return int(asked.stdout or 0)


def memory(process):
    return next(int(line.split()[1]) for line in open(f"/proc/{process.pid}/status") if line.startswith("VmRSS"))


def resize(size):
    return subprocess.run(["mount", "-o", f"remount,size={size}", small], stderr=subprocess.DEVNULL).returncode == 0


def fill():
    """Leaves a little room. That fails when the loader has just taken more than there is to be."""
    while True:
        room = os.statvfs(small)
        if resize((room.f_blocks - room.f_bfree) * room.f_frsize + 32768):
            break


def write(file, count):
    """In pieces that end anywhere; no two lines are alike."""
    global written, clock
    text = ""
    for line in (random.choice(lines) for _ in range(count)):
        clock += datetime.timedelta(milliseconds=7)
        text += f"{clock.isoformat(timespec='milliseconds')} {line}"
        written += line.count("@@4") # the rest is no message
    cut = random.randrange(len(text))
    for piece in (text[:cut], text[cut:]):
        file.write(piece.encode())
        file.flush()


def disturb(loader):
    """The next loader. One that had no room has ended by itself, or waits; the others are killed."""
    if (canFill or hasServer) and random.random() < 0.5:
        if hasServer:
            server.kill()
        else:
            fill()
        count["faults"] += 1
        write(file, 200)
        time.sleep(0.5 + random.random())
        if hasServer:
            server.restart()
    if loader.poll() is None:
        loader.kill()
        count["killed"] += 1
    said = loader.communicate()[1]
    if loader.returncode not in (-signal.SIGKILL, 2) or (loader.returncode == 2 and "cannot write" not in said):
        wrong(f"a loader ended with {loader.returncode}: {said}")
    count["refused"] += loader.returncode == 2
    if canFill and not resize("2g"):
        wrong("the disk stays full")
    if load(disturbed, *logs()).wait() != 0: # what was rotated meanwhile
        wrong("the logs can't be loaded again")
    return load(disturbed, "--follow", log)


count = {"rotated": 0, "killed": 0, "faults": 0, "refused": 0}
log.touch()
calm, other = load(alone, "--follow", log), load(disturbed, "--follow", log)
file, kept = log.open("ab"), []
due = 0
while not hasOpened(calm):
    time.sleep(0.01)
while (passed := time.monotonic() - began) < seconds:
    while due < passed * rate:
        write(file, 20)
        due += 20
    happens = random.random() * seconds / 12 # a dozen of each, however long it is; a long one more
    if happens < 0.05 and file.tell() > 10000 and hasOpened(calm):
        file.close()
        log.rename(f"{log}.{count['rotated']:06}")
        count["rotated"] += 1
        file = log.open("ab")
        write(file, 20)
        due += 20
    elif happens > seconds / 12 - 0.05:
        other = disturb(other)
    kept.append(memory(calm))
    time.sleep(0.05)
file.close()
wanted = time.monotonic() + 60
while messages(alone) < written and time.monotonic() < wanted:
    time.sleep(0.2)
if messages(alone) != written:
    wrong(f"{written} messages were written, following gave {messages(alone)}")
for loader in (calm, other):
    loader.kill()
    loader.communicate()
start, before, after = (max(kept[int(len(kept) * first):int(len(kept) * last) + 1]) for first, last in ((0, .1), (0, .5), (.9, 1)))
for archive in (alone, disturbed):
    if load(archive, *logs()).wait() != 0 or messages(archive) != written:
        wrong(f"{archive} has {messages(archive)} of {written} messages")
    back = folder / f"{os.path.basename(archive)}-back"
    subprocess.run([vekmsg, "export", "--from", archive, "--to", back], check=True)
    there = sorted((path for path in back.rglob("*") if path.is_file()), key=lambda path: path.read_bytes()[:30])
    if [path.read_bytes() for path in there] != [path.read_bytes() for path in logs()]:
        wrong(f"{archive} does not give the logs back")
fault = ("the server killed" if hasServer else f"a full disk, of which {count['refused']} ended a loader" if canFill else
         "a full disk, as none can be mounted")
print(f"{written} messages in {count['rotated'] + 1} logs, {count['killed']} kills, {count['faults']} times {fault}; "
      f"memory {start} kB in the first tenth, {before} in the first half, {after} in the last tenth; {seconds} s, seed {seed}")
if after > before + 4096:
    wrong("memory has grown")
subprocess.run(["umount", small], stderr=subprocess.DEVNULL)
subprocess.run(["rm", "-r", folder], check=True)
