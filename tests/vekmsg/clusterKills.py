#!/usr/bin/env python3
"""Loads logs into two shards of two replicas while loaders and servers are killed at random and one replica is killed for
good, with another one put in its place: after that every table has the rows of an undisturbed run, each once, on every
replica, without a merge, and the logs come back byte for byte. ZooKeeper runs all the time.
   clusterKills.py VEKMSG [KILLS [SEED]]      50 kills; without servers it ends with 77
"""
import calendar
import os
import pathlib
import random
import shutil
import subprocess
import sys
import time

from servers import Server, ZooKeeper, folder_of_servers

vekmsg = os.path.abspath(sys.argv[1])
kills = int(sys.argv[2]) if len(sys.argv) > 2 else 50
seed = int(sys.argv[3]) if len(sys.argv) > 3 else os.getpid()
random.seed(seed)
folder = folder_of_servers()
running = []


def address(server, database):
    all_of_them = ",".join(f"127.0.0.1:{one.port}" for one in servers)
    return f"http://127.0.0.1:{server.port}/{database}?cluster=fleet&replicated=yes&servers={all_of_them}"


def load(server, *logs):
    return subprocess.Popen([vekmsg, "load", "--into", address(server, "killed"), *logs],
                            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)


def finish(process, again=()):
    """`again`: what to load once more when the server was killed before it was asked for the first time."""
    said = process.communicate(timeout=300)[0]
    if again and "does a ClickHouse server run there?" in said:
        return finish(load(*again))
    if process.returncode != 0:
        raise SystemExit(f"a loader ended with {process.returncode} (seed {seed}):\n{said}")


def make_tables(server):
    """Before kills: a replica that is killed while it makes a table has entered itself, and can't make it again."""
    finish(load(server, os.devnull))


def content(server, database, suffix=""):
    """Of each table: how many rows, how many keys among them, and the sum of the rows' hashes."""
    parts = []
    for line in server.ask("SELECT table, arrayStringConcat(groupArray(name), ', ') FROM system.columns WHERE database = "
                           f"'{database}' AND table NOT LIKE '%_local' AND table NOT IN ('sources', 'marks') GROUP BY table",
                           database).splitlines():
        table, names = line.split("\t")
        key = ", ".join(["source_id", "byte_offset", *(name for name in names.split(", ") if name.startswith("element"))])
        hashed = ", ".join(f"ifNull(toString({name}), '-')" if name != "msgs" else name for name in names.split(", ")
                           if name != "source_id")
        parts.append(f"SELECT '{table}', count() AS rows, uniqExact({key}), sum(cityHash64({hashed})) FROM {table}{suffix} "
                     "WHERE source_id % 2 = 1")
    lines = sorted(server.ask(" UNION ALL ".join(parts), database, select_sequential_consistency=1).splitlines())
    return [line for line in lines if line.split("\t")[1] != "0"]


def same(what, wanted, there):
    twice = [line for line in there if line.split("\t")[1] != line.split("\t")[2]]
    if there != wanted or twice:
        raise SystemExit("\n  ".join([f"WRONG: {what} (seed {seed})", "wanted", *wanted, "there", *there]))
    print(f"right: {what}", flush=True)


def take_away(*options):
    """At first with a server away, which is told; nothing is changed by that, and the same again does it."""
    away = random.choice(servers)
    via = random.choice([server for server in servers if server is not away])
    away.kill()
    said = subprocess.run([vekmsg, "load", "-q", "--into", address(via, "killed"), *options], capture_output=True, text=True)
    away.restart()
    if said.returncode != 2 or f":{away.port}/killed: nobody answers there" not in said.stderr:
        raise SystemExit(f"WRONG: {options} without a server (seed {seed}): {said}")
    subprocess.run([vekmsg, "load", "-q", "--into", address(via, "killed"), *options], check=True)


def left(condition):
    """The rows of all tables on each server."""
    tables = servers[0].ask("SHOW TABLES LIKE '%_local'", "killed").split()
    return [sum(map(int, server.ask(" UNION ALL ".join(f"SELECT count() FROM {table} WHERE {condition}" for table in tables),
                                    "killed").split())) for server in servers]


def added(name, shard):
    servers.append(Server(f"{folder}/{name}", shard))
    return servers[-1]


try:
    subprocess.run([vekmsg, "example", "--messages=24000", "--devices=6", f"{folder}/logs"], check=True, stderr=subprocess.DEVNULL)
    logs = sorted(str(path) for path in pathlib.Path(folder, "logs").iterdir())
    running.append(zookeeper := ZooKeeper(f"{folder}/zookeeper"))
    servers = []
    for name, shard in (("one", 1), ("other", 1), ("third", 2), ("fourth", 2)):
        added(name, shard)
    for server in servers:
        running.append(server.start(servers, zookeeper))
    servers[0].ask("CREATE DATABASE killed", "default")
    said = load(servers[0], os.devnull).communicate(timeout=60)[0]
    servers[0].ask(said[said.index("CREATE DATABASE") :], "default")  # on all of them, as it says; what was made is no harm
    make_tables(servers[0])
    pieces = [[] for _ in logs]
    growing = [f"{folder}/growing{number}.log" for number in range(len(logs))]
    for number, log in enumerate(logs):
        lines = pathlib.Path(log).read_bytes().splitlines(True)
        cuts = [0, *sorted(random.sample(range(50, len(lines)), kills)), len(lines)]
        pieces[number] = [b"".join(lines[begin:end]) for begin, end in zip(cuts, cuts[1:])]
    killed = {"loaders": 0, "servers": 0}
    lost = random.randrange(kills // 4, kills // 2)
    for number in range(kills):
        for path, parts in zip(growing, pieces):
            with open(path, "ab") as file:
                file.write(parts[number])
        one, via = None, random.choice(servers)
        if number == lost:
            gone = servers.pop(random.randrange(4))
            gone.kill()
            shutil.rmtree(f"{gone.folder}/data")
            fresh = added("fresh", gone.shard)
            for server in servers:
                server.know(servers, zookeeper)
            running.append(fresh.start(servers, zookeeper))
            fresh.ask("CREATE DATABASE killed", "default")
            via = fresh
            while not all(f"\t{fresh.tcp}\t" in server.ask("SELECT * FROM system.clusters", "default") for server in servers):
                time.sleep(0.1)
            make_tables(fresh)
        one = load(via, *growing)
        time.sleep(random.random() * 1.5)
        victim = random.choice([one, one, *servers])
        victim.kill()
        killed["loaders" if victim is one else "servers"] += 1
        if victim is not one:
            time.sleep(random.random())
            victim.restart()
        else:
            one.communicate()
            one = load(random.choice(servers), *growing)
        finish(one, again=(via, *growing))
    for path, parts in zip(growing, pieces):
        with open(path, "ab") as file:
            file.write(parts[-1])
    finish(load(servers[0], *growing))
    servers[0].ask("CREATE DATABASE undisturbed", "default")
    subprocess.run([vekmsg, "load", "-q", "--into", f"http://127.0.0.1:{servers[0].port}/undisturbed", *growing], check=True)
    wanted = content(servers[0], "undisturbed")
    same(f"{killed['loaders']} loaders and {killed['servers']} servers killed, and a replica that never came back (seed {seed})",
         wanted, content(servers[0], "killed"))
    subprocess.run([vekmsg, "export", "--from", address(servers[-1], "killed"), "--to", f"{folder}/back"], check=True)
    back = sorted(path.read_bytes() for path in pathlib.Path(f"{folder}/back").rglob("*.log"))
    if back != sorted(pathlib.Path(path).read_bytes() for path in growing):
        raise SystemExit(f"WRONG: the logs do not come back byte for byte (seed {seed})")
    print("right: the logs come back byte for byte", flush=True)
    # A log that is taken out comes again, though ZooKeeper knows its blocks; months that are taken away don't.
    numbers = servers[0].ask(f"SELECT DISTINCT source_id FROM sources WHERE source = '{growing[0]}'", "killed").split()
    take_away("--forget", growing[0])
    if any(rows := left(f"source_id IN ({', '.join(numbers)})")):
        raise SystemExit(f"WRONG: {rows} rows are left on the servers (seed {seed})")
    finish(load(random.choice(servers), *growing))
    same("a log that was taken out and loaded again", wanted, content(servers[0], "killed"))
    os.environ["TZ"] = "UTC"
    minutes = int(time.time() - calendar.timegm((2026, 3, 10, 0, 0, 0))) // 60
    take_away("--keep", f"{minutes}m")
    finish(load(random.choice(servers), *growing))
    subprocess.run([vekmsg, "load", "-q", "--into", f"http://127.0.0.1:{servers[0].port}/undisturbed", "--keep", f"{minutes}m"], check=True)
    same("what is young enough", content(servers[0], "undisturbed"), content(servers[0], "killed"))
    for shard in (1, 2):
        one, other = [server for server in servers if server.shard == shard]
        same(f"both replicas of shard {shard}", content(one, "killed", "_local"), content(other, "killed", "_local"))
finally:
    for process in running:
        process.kill()
    if not os.environ.get("KEEP"):
        shutil.rmtree(folder, ignore_errors=True)
