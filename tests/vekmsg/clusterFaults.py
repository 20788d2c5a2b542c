#!/usr/bin/env python3
"""Loads logs into a ClickHouse server through a proxy that delays, drops, doubles and cuts, with loaders and the server
killed, two loaders at once, rotated, renamed, packed and damaged logs: after each of these every table has the rows of an
undisturbed run, each once, without a merge.
   clusterFaults.py VEKMSG [SEED]      without a server it ends with 77
"""
import gzip
import os
import pathlib
import random
import shutil
import socket
import subprocess
import sys
import tempfile
import threading
import time
import urllib.parse
import urllib.request

from servers import Server, folder_of_servers

vekmsg = os.path.abspath(sys.argv[1])
seed = int(sys.argv[2]) if len(sys.argv) > 2 else os.getpid()
random.seed(seed)
class Proxy:
    """Passes requests on; of a request that inserts, `fault` says what becomes of it."""

    def __init__(self, port):
        self.to, self.fault, self.hits = port, None, 0
        self.listener = socket.create_server(("127.0.0.1", 0))
        self.port = self.listener.getsockname()[1]
        threading.Thread(target=self.accept, daemon=True).start()

    def accept(self):
        while True:
            client, _ = self.listener.accept()
            threading.Thread(target=self.serve, args=(client,), daemon=True).start()

    @staticmethod
    def request(client):
        data = b""
        while b"\r\n\r\n" not in data:
            some = client.recv(65536)
            if not some:
                return None
            data += some
        head, body = data.split(b"\r\n\r\n", 1)
        if b"100-continue" in head.lower():
            client.sendall(b"HTTP/1.1 100 Continue\r\n\r\n")
        size = next(int(line.split(b":")[1]) for line in head.split(b"\r\n") if line.lower().startswith(b"content-length"))
        while len(body) < size:
            some = client.recv(1 << 20)
            if not some:
                return None
            body += some
        lines = [line for line in head.split(b"\r\n") if not line.lower().startswith((b"expect", b"connection"))]
        return b"\r\n".join([*lines, b"Connection: close"]) + b"\r\n\r\n" + body

    def send(self, request, is_cut=False):
        try:
            with socket.create_connection(("127.0.0.1", self.to)) as server:
                server.sendall(request)
                answer = b""
                while not is_cut and (some := server.recv(65536)):
                    answer += some
                return answer
        except OSError:
            return b""

    def later(self, seconds, request):
        timer = threading.Timer(seconds, self.send, [request])
        timer.start()
        timers.append(timer)

    def serve(self, client):
        try:
            with client:
                request = self.request(client)
                if request is None:
                    return
                fault = self.fault if (b"decompress=" in request or b"session_id=" in request) and random.random() < 0.3 else None
                self.hits += fault is not None
                if self.fault == "earlier insert" and b"&query_id=" in request:  # of what is not here: one that never ends
                    said = b"Code: 286, e.displayText() = DB::Exception: Quorum for previous write has not been satisfied yet. " \
                           b"Status: version: 1\npart_name: 202602_0_0_0\n, e.what() = DB::Exception\n"
                    return client.sendall(b"HTTP/1.1 500 Internal Server Error\r\nContent-Length: %d\r\n\r\n%b" % (len(said), said))
                if fault == "late":  # the connection is lost, and the request comes after all
                    return self.later(random.random() * 2, request)
                if fault == "doubled":
                    self.later(random.random(), request)
                if fault == "doubled at once":
                    self.later(0, request)
                if fault == "cut":
                    return self.send(request[: random.randrange(len(request))], is_cut=True)
                answer = self.send(request)
                if fault != "answer lost":
                    client.sendall(answer)
        except OSError:
            pass


timers = []
failures = 0
folder = folder_of_servers()
server = Server(f"{folder}/server").start()
databases = 0


def load(database, *logs, proxy=None, options=(), cwd=None, stdin=None):
    port = proxy.port if proxy else server.port
    return subprocess.Popen([vekmsg, "load", "--into", f"http://127.0.0.1:{port}/{database}", *options, *logs],
                            cwd=cwd or folder, stdin=stdin, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace")


def finish(process, wanted=0):
    said = process.communicate(timeout=200)[0]
    if process.returncode != wanted:
        raise SystemExit(f"a loader ended with {process.returncode}, not {wanted} (seed {seed}):\n{said}")
    return said


def make():
    global databases
    databases += 1
    server.ask(f"CREATE DATABASE d{databases}", "default")
    return f"d{databases}"


def content(database):
    """Of each table: how many rows, how many keys among them, and the sum of the rows' hashes."""
    tables = server.ask("SELECT table, arrayStringConcat(groupArray(name), ', ') FROM system.columns WHERE database = "
                        f"'{database}' AND table NOT IN ('sources', 'marks') AND name NOT IN ('source', 'source_id') GROUP BY table "
                        "ORDER BY table", database)
    parts = []
    for line in tables.splitlines():
        table, names = line.split("\t")
        key = ", ".join(["source_id", "byte_offset", *(name for name in names.split(", ") if name.startswith("element"))])
        hashed = ", ".join(f"toString({name})" for name in names.split(", "))
        parts.append(f"SELECT '{table}', count() AS rows, uniqExact({key}) AS keys, sum(cityHash64({hashed})) FROM {table}")
    return [line for line in sorted(server.ask(" UNION ALL ".join(parts), database).splitlines())
            if line.split("\t")[1] != "0"]


def exported(database):
    """The logs that the archive gives back."""
    out = tempfile.mkdtemp(dir=folder)
    subprocess.run([vekmsg, "export", "--from", f"http://127.0.0.1:{server.port}/{database}", "--to", out], check=True)
    return sorted(path.read_bytes() for path in pathlib.Path(out).rglob("*") if path.is_file())


def expect(what, database, wanted, back=()):
    """`back`: the logs that come back byte for byte."""
    global failures
    for timer in timers:
        timer.join()
    timers.clear()
    if proxy.fault:
        time.sleep(0.3)
    there = content(database)
    twice = [line for line in there if line.split("\t")[1] != line.split("\t")[2]]
    is_right = there == wanted and not twice
    is_right &= not back or exported(database) == sorted(pathlib.Path(log).read_bytes() for log in back)
    print(f"{'right' if is_right else 'WRONG'}: {what}", flush=True)
    if not is_right:
        failures += 1
        print("  wanted", *wanted, "there", *there, sep="\n    ")


def undisturbed(*logs):
    database = make()
    finish(load(database, *logs))
    return content(database)


try:
    subprocess.run([vekmsg, "example", "--messages=6000", "--devices=3", f"{folder}/logs"], check=True)
    logs = sorted(str(path) for path in pathlib.Path(folder, "logs").iterdir())
    wanted, first = undisturbed(*logs), undisturbed(logs[0])
    proxy, held, stuck = (Proxy(server.port) for _ in range(3))
    held.fault = stuck.fault = "earlier insert"
    databases_held = [make(), make()]
    waiting = [load(database, *logs, proxy=one) for database, one in zip(databases_held, (held, stuck))]

    for fault in ("late", "answer lost", "doubled", "doubled at once", "cut"):
        database, proxy.fault = make(), fault
        while proxy.hits < 3:
            finish(load(database, *logs, proxy=proxy))
        expect(f"a proxy: {fault}, {proxy.hits} times", database, wanted, logs)
        finish(load(database, *logs, proxy=proxy))
        expect("  and loaded again", database, wanted)
        proxy.fault, proxy.hits = None, 0

    held.fault = None  # the earlier one has its copies now
    finish(waiting[0])
    expect("an earlier insert without its copies for a while", databases_held[0], wanted, logs)

    database = make()
    for _ in range(8):
        one = load(database, *logs)
        time.sleep(random.random() * 0.8)
        one.kill()
        one.communicate()
    finish(load(database, *logs))
    expect("killed loaders", database, wanted, logs)

    database = make()
    one = load(database, *logs)
    while not server.ask("SHOW TABLES", database):  # whoever has never seen the server soon gives up
        time.sleep(0.01)
    for _ in range(2):
        time.sleep(random.random() * 0.5)
        server.kill()
        time.sleep(0.5)
        server.restart()
    finish(one)
    expect("a killed server", database, wanted, logs)

    database = make()
    both = [load(database, *logs), load(database, *logs), load(database, *reversed(logs))]
    for one in both:
        one.communicate(timeout=200)  # the earlier one may say that it leaves the log to the later one
    finish(load(database, *logs))
    expect("three loaders of the same logs", database, wanted, logs)

    said = finish(waiting[1], 2)
    if said.count("trying again for 60 s") != 1 or said.count("SYSTEM RESTART REPLICA") != 2 or "renamed" in said:
        print("WRONG: an earlier insert that never has its copies:", said)
        failures += 1

    text, short = pathlib.Path(logs[0]).read_text(), f"{folder}/short.log"
    for size in (200, 900, 900, 3000):
        database = make()
        finish(load(database, os.devnull))  # makes the tables: so they come closer to each other
        pathlib.Path(short).write_text(text[:size])
        both = [load(database, short), load(database, os.path.relpath(short, folder))]
        time.sleep(random.random() * 0.15)
        with open(short, "a", encoding="utf-8") as file:
            file.write(text[size:3900])
        both += [load(database, short), load(database, "./short.log")]
        for one in both:
            one.communicate(timeout=200)
        finish(load(database, short))
        expect(f"four loaders of one log that grows from {size} bytes", database, undisturbed(short), [short])
    finish(load(database, logs[1]))
    text = pathlib.Path(logs[1]).read_text()
    pathlib.Path(folder, "extract.log").write_text(text[len(text) // 2 :])
    if "has messages of" not in finish(load(database, "extract.log"), 2):
        print("WRONG: an extract was taken for another log")
        failures += 1
    expect("an extract of a log that is there", database, undisturbed(short, logs[1]))

    database = make()
    packed = f"{folder}/{os.path.basename(logs[0])}.gz"
    with gzip.open(packed, "wb") as file:
        file.write(pathlib.Path(logs[0]).read_bytes())
    shutil.copy(logs[0], f"{folder}/renamed.1")
    for name in (logs[0], os.path.relpath(logs[0], folder), "./logs/../" + os.path.relpath(logs[0], folder), packed,
                 "renamed.1", b"name\xff.log"):
        if isinstance(name, bytes):
            shutil.copy(logs[0], os.path.join(folder.encode(), name))
        finish(load(database, name))
    expect("one log under many names", database, first, logs[:1])
    shutil.copy(logs[0], f"{folder}/-")  # a file that has this name is not what the word means
    with open(logs[1], "rb") as given:
        finish(load(database, packed, "-", stdin=given))
    expect("  and another one given", database, undisturbed(*logs[:2]), logs[:2])

    database = make()
    damaged = bytearray(pathlib.Path(packed).read_bytes())
    damaged[-6] ^= 1
    pathlib.Path(folder, "bad.gz").write_bytes(damaged)
    finish(load(database, "bad.gz"), 2)
    expect("a damaged packed log", database, [])
    finish(load(database, packed))
    expect("  and the sound one", database, first)

    database = make()
    hosts, rest = [f"{folder}/host{host}" for host in (0, 1)], pathlib.Path(logs[0]).read_text().splitlines(True)
    for host, path in enumerate(hosts):
        os.mkdir(path)
        pathlib.Path(path, "device.log").write_text(rest[0] + "".join(rest[1 + host :: 2]))
    equal = undisturbed(f"{hosts[0]}/device.log", f"{hosts[1]}/device.log")
    for path in hosts:
        finish(load(database, "device.log", cwd=path))
    server.ask("OPTIMIZE TABLE messages FINAL", database)
    expect("two machines, or a rotation, with equal names and first lines", database, equal, [f"{host}/device.log" for host in hosts])

    finish(load(database, logs[1]))
    for table in ("messages", "device_status"):
        server.ask(f"ALTER TABLE {table} DELETE WHERE byte_offset < 100000", database)
    time.sleep(1)
    kept = content(database)
    finish(load(database, logs[1], f"{hosts[0]}/device.log"))
    expect("what is deleted stays deleted", database, kept)

    database = make()
    reals = [random.uniform(-1e6, 1e6) for _ in range(3000)]
    pathlib.Path(folder, "reals.log").write_text("".join(
        f"@@4112 {len(body) + 6:5d} 7 1 {body}!!\n" for body in
        (f"{{MEDIA_NAME=x;FOCUS_VALUE={real:.6f};}}" for real in [*reals, 1e999, -0.0])).replace("=inf", "=1e999"))
    finish(load(database, "reals.log"))
    there = [float(line) for line in
             server.ask("SELECT focus_value FROM focus_value ORDER BY byte_offset", database).split()]
    exact = [float(f"{real:.6f}") for real in reals] + [float("inf"), -0.0]
    same = sum(repr(one) == repr(other) for one, other in zip(there, exact))
    print(f"{'right' if same == len(exact) == len(there) else 'WRONG'}: {same} of {len(exact)} reals", flush=True)
    failures += same != len(exact)

    server.ask("ALTER TABLE focus_value DROP COLUMN media_name", database)
    server.ask("ALTER TABLE messages ADD COLUMN own String", database)
    server.ask("DROP TABLE layout", database)
    server.ask("ALTER TABLE device_status MODIFY COLUMN status Int64", database)
    server.ask("ALTER TABLE device_status MODIFY COLUMN low_status Nullable(String)", database)
    finish(load(database, logs[0]))
    has = server.ask("SELECT (SELECT count() FROM focus_value WHERE media_name != '') > 0, (SELECT sum(status) > 0 AND "
                     "min(low_status) = '0' FROM device_status)", database).split()
    is_right = has == ["1", "1"]
    print(f"{'right' if is_right else 'WRONG'}: missing columns and tables are added, altered ones filled", flush=True)
    failures += not is_right

    for create, words in (
            ("TABLE focus_value (source_id UInt32, byte_offset UInt64) ENGINE = MergeTree() ORDER BY source_id", "make it UInt64"),
            ("TABLE focus_value (source_id UInt64, byte_offset UInt64) ENGINE = Log", "that was about the table focus_value"),
            ("TABLE cassette (source_id UInt64, byte_offset UInt64, name FixedString(2)) ENGINE = MergeTree() ORDER BY source_id",
             "that was about the table cassette"),
            ("VIEW focus_value AS SELECT 1 AS source", "rename it")):
        database = make()
        server.ask(f"CREATE {create}", database)
        begun = time.monotonic()
        if words not in (said := finish(load(database, logs[0]), 2)) or time.monotonic() > begun + 30:
            print(f"WRONG: after {create}:", said)
            failures += 1

    # Who may not come in is told so at once, and nobody sees the passwords.
    database = make()
    for user, ending in (("loader:right", 0), ("loader:qwertz", 2), ("nobody:qwertz", 2), ("loader", 2)):
        address = f"http://{user}@127.0.0.1:{server.port}/{database}"
        for command in (["load", "--into", address, os.devnull], ["load", "--follow", "--into", address, logs[0]], ["export", f"--from={address}"]):
            one = subprocess.Popen([vekmsg, *command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
            try:
                said = one.communicate(timeout=5)[0]
            except subprocess.TimeoutExpired:  # it follows
                shown = pathlib.Path(f"/proc/{one.pid}/cmdline").read_text()
                one.terminate()
                said, one.returncode = one.communicate()[0] + shown, 0 if "loader:xxxxx@" in shown else -1
            if (command[0] == "load" or ending) and one.returncode != ending or (ending and "~/.netrc" not in said) or "qwertz" in said:
                print(f"WRONG: as {user}, {command[:2]}:", one.returncode, said)
                failures += 1

    # The first server of a cluster, while the other one has no tables yet, is no reason to wait for a minute. A wrong address
    # makes no table, and tables are not mixed with those of another kind.
    pair = [Server(f"{folder}/server of {shard}", shard) for shard in (1, 2)]
    try:
        for one in pair:
            one.start(pair).ask("CREATE DATABASE fleet", "default")
        begun = time.monotonic()
        for one, parameters, why in ((0, "?cluster=fleat", "did you mean fleet?"), (0, "?cluster=fleet", "gets its tables when"),
                                     (1, "?cluster=fleet", "holds 0 messages"), (1, "?cluster=fleet&replicated=yes", "not replicated"),
                                     (0, "", "write ?cluster=NAME")):
            said = finish(load(f"fleet{parameters}", os.devnull, proxy=pair[one]), 0 if "holds" in why else 2)
            if why not in said or time.monotonic() > begun + 30 or "fleat" in parameters and pair[one].ask("SHOW TABLES", "fleet"):
                print(f"WRONG: at server {one} of a cluster, {parameters}:", said)
                failures += 1
    finally:
        for one in pair:
            one.kill()

    restored = make()
    finish(load(restored, os.devnull))  # makes the tables

    def ask_bytes(database, statement, data=b""):
        url = f"http://127.0.0.1:{server.port}/?database={database}&query={urllib.parse.quote(statement)}"
        with urllib.request.urlopen(url, data, timeout=60) as answer:
            return answer.read()

    database = make()
    finish(load(database, *logs))
    for table in server.ask("SHOW TABLES", database).split():
        ask_bytes(restored, f"INSERT INTO {table} FORMAT Native", ask_bytes(database, f"SELECT * FROM {table} FORMAT Native"))
    finish(load(restored, *logs))
    expect("a backup that is restored", restored, wanted, logs)

    database, former, pieces = make(), make(), [f"{folder}/piece{number}.log" for number in (0, 1)]
    for log, piece in zip(logs, pieces):
        pathlib.Path(piece).write_text(pathlib.Path(log).read_text()[:90000])
    finish(load(database, *pieces))
    for line in server.ask("SELECT table, arrayStringConcat(groupArray(concat('`', name, '`')), ', ') FROM system.columns "
                           f"WHERE database = '{database}' AND table NOT IN ('sources', 'marks', 'fronts') AND name != 'source_id' "
                           "GROUP BY table", database).splitlines():  # as version 1 had them
        table, names = line.split("\t")
        key = ", ".join(["source", "byte_offset", *(name for name in names.split(", ") if name.startswith("`element"))])
        names = names.replace("`start`", "start AS start_byte").replace("`end`", "end AS end_byte")
        server.ask(f"CREATE TABLE {table} ENGINE = ReplacingMergeTree() ORDER BY ({key}) AS SELECT {names} FROM "
                   f"{database}.{table}", former)
    shutil.copy(logs[0], pieces[0])
    finish(load(former, *pieces))
    expect("an archive of version 1 on a server", former,
           [line for line in undisturbed(*pieces) if not line.startswith("fronts\t")])

    # Logs that are followed, one of them rotated, while the server is away; then by another loader, when the first one is killed.
    subprocess.run([vekmsg, "example", "--messages=600", "--devices=1", "--seed=2", f"{folder}/more"], check=True)
    database, followed = make(), [f"{folder}/followed{number}.log" for number in range(len(logs))]
    texts = [pathlib.Path(log).read_bytes() for log in [*logs, next(pathlib.Path(folder, "more").iterdir())]]
    half = [len(text) // 2 for text in texts]

    def append(name, text):
        with open(name, "ab") as file:
            file.write(text)

    def expect_followed(what, *whole):
        wanted = undisturbed(*whole)
        for _ in range(300):
            if content(database) == wanted:
                break
            time.sleep(0.1)
        expect(what, database, wanted)

    for name, text, size in zip(followed, texts, half):
        append(name, text[:size])
    one = load(database, *followed, options=["--follow"])
    time.sleep(2)
    server.kill()
    for name, text, size in zip(followed, texts, half):
        append(name, text[size:])
    time.sleep(1)
    os.rename(followed[0], f"{folder}/rotated.log")
    append(followed[0], texts[-1][: half[-1]])
    time.sleep(5)
    server.restart()
    expect_followed("a server that was away while logs were followed", f"{folder}/rotated.log", *followed)
    one.kill()
    said = one.communicate()[0]
    if "trying again until it is there" not in said:
        print("WRONG: it did not say so:", said)
        failures += 1
    one = load(database, *followed, options=["--follow"])
    append(followed[0], texts[-1][half[-1] :])
    expect_followed("  and by another loader", f"{folder}/rotated.log", *followed)
    one.terminate()
    one.communicate()
    expect("  and back", database, undisturbed(f"{folder}/rotated.log", *followed), [f"{folder}/rotated.log", *followed])
finally:
    server.kill()
    shutil.rmtree(folder, ignore_errors=True)
if failures:
    print(f"{failures} failures, seed {seed}")
sys.exit(1 if failures else 0)
