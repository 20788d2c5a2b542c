#!/usr/bin/env python3
"""How fast logs come into a ClickHouse server: seconds of the processor that vekmsg load and the server take together, beside
what clickhouse-client and the server take for the same rows, table by table in TSV. In memory where there is room: what a
disk takes to make files says more about those that were there than about who loads.
   cluster-speed.py VEKMSG [MESSAGES]
"""
import os
import pathlib
import shutil
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "tests/vekmsg"))
from servers import Server, folder_of_servers, need

vekmsg, messages = os.path.abspath(sys.argv[1]), int(sys.argv[2]) if len(sys.argv) > 2 else 300000
client = shutil.which("clickhouse-client")
need(client)
folder = folder_of_servers()
server = Server(f"{folder}/server").start()


def seconds(process):
    fields = pathlib.Path(f"/proc/{process.pid}/stat").read_text().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def measured(words, *commands):
    of_server, of_clients = seconds(server.process), sum(os.times()[2:4])
    for command, file in commands:
        with open(file, "rb") as source:
            subprocess.run(command, stdin=source, check=True)
    of_server, of_clients = seconds(server.process) - of_server, sum(os.times()[2:4]) - of_clients
    print(f"{words:18} {of_clients + of_server:6.2f} s, of these the server {of_server:.2f}", flush=True)
    return of_clients + of_server


try:
    subprocess.run([vekmsg, "example", f"--messages={messages}", f"{folder}/logs"], check=True, stderr=subprocess.DEVNULL)
    logs = sorted(str(path) for path in pathlib.Path(folder, "logs").iterdir())
    to = f"http://127.0.0.1:{server.port}/"
    for database in ("mine", "theirs"):
        server.ask(f"CREATE DATABASE {database}", "default")
        subprocess.run([vekmsg, "load", "-q", "--into", to + database, os.devnull], check=True)  # which makes the tables
    own = measured("vekmsg load", ([vekmsg, "load", "-q", "--into", to + "mine", *logs], os.devnull))
    commands, size = [], 0
    for table in server.ask("SHOW TABLES", "mine").split():
        if table in ("sources", "marks") or server.ask(f"SELECT count() FROM {table}", "mine") == "0\n":
            continue
        server.ask(f"DROP TABLE {table}", "theirs")
        server.ask(f"CREATE TABLE {table} AS mine.{table}", "theirs")
        rows = f"{folder}/{table}.tsv"
        with open(rows, "wb") as file:
            subprocess.run([client, f"--port={server.tcp}", f"--query=SELECT * FROM mine.{table}"], stdout=file, check=True)
        size += os.path.getsize(rows)
        commands.append(([client, f"--port={server.tcp}", "--database=theirs", f"--query=INSERT INTO {table} FORMAT TSV"], rows))
    other = measured("clickhouse-client", *commands)
    print(f"{messages} messages, {sum(map(os.path.getsize, logs)) / 1e6:.0f} MB of logs, {size / 1e6:.0f} MB of rows in TSV: "
          f"{100 * other / own:.0f} % of clickhouse-client's speed")
finally:
    server.kill()
    shutil.rmtree(folder, ignore_errors=True)
