"""Servers for the tests of an archive on ClickHouse, alone or as a cluster with ZooKeeper: on ports that are free when they
start, in folders of their own, ended by whoever started them.
"""
import os
import pathlib
import random
import shutil
import socket
import subprocess
import sys
import tempfile
import time
import urllib.error
import urllib.parse
import urllib.request

server_program = shutil.which("clickhouse-server", path=os.environ["PATH"] + ":/usr/sbin")
zookeeper_classes = "/etc/zookeeper/conf_example:/usr/share/java/*"


def need(*there):
    """Ends the test when something is not installed."""
    if not all(there):
        print("not all is there; scripts/packages.sh cluster installs it")
        sys.exit(1 if os.environ.get("CI") else 77)


def folder_of_servers():
    """In memory where there is room: they make a file or two for each column of each part, which a disk takes long to
    write and to remove."""
    memory = "/dev/shm"
    has_room = os.access(memory, os.W_OK) and shutil.disk_usage(memory).free > 6 << 30
    return tempfile.mkdtemp(dir=memory if has_room else None)


reserved = []


def free_port():
    """Of those that no connection gets by itself. As long as this process lives no other test gets it, and none gets it
    twice: a server that finds another one there ends at once, also when it was there before it was killed."""
    while True:
        port = random.SystemRandom().randrange(20000, 26000)  # the demonstration has those behind
        mine = socket.socket(socket.AF_UNIX)
        try:
            mine.bind(f"\0vekmsg-test-port-{port}")
        except OSError:
            continue
        with socket.socket() as one:
            if one.connect_ex(("127.0.0.1", port)) != 0:
                reserved.append(mine)
                return port


class Process:
    def launch(self, *command):
        with open(f"{self.folder}/out", "ab") as out:
            self.process = subprocess.Popen(command, cwd=self.folder, stdout=out, stderr=out)

    def kill(self):
        self.process.kill()
        self.process.wait()


class ZooKeeper(Process):
    def __init__(self, folder):
        self.folder, self.port = folder, free_port()
        need(shutil.which("java"), os.path.exists("/usr/share/java/zookeeper.jar"))
        pathlib.Path(folder).mkdir()
        pathlib.Path(folder, "zoo.cfg").write_text(
            f"tickTime=500\ndataDir={folder}/data\nclientPort={self.port}\nclientPortAddress=127.0.0.1\n"
            "admin.enableServer=false\nmaxClientCnxns=0\nmaxSessionTimeout=2000\n")
        self.launch("java", "-Xmx512m", "-cp", zookeeper_classes, "org.apache.zookeeper.server.quorum.QuorumPeerMain",
                    "zoo.cfg")
        for _ in range(300):
            try:
                return socket.create_connection(("127.0.0.1", self.port)).close()
            except OSError:
                time.sleep(0.1)
        raise SystemExit("ZooKeeper does not start")


class Server(Process):
    CONFIG = """<yandex>
    <listen_host>127.0.0.1</listen_host> <http_port>{0.port}</http_port> <tcp_port>{0.tcp}</tcp_port>
    <interserver_http_port>{0.between}</interserver_http_port> <interserver_http_host>127.0.0.1</interserver_http_host>
    <path>{0.folder}/data/</path> <tmp_path>{0.folder}/tmp/</tmp_path> <mark_cache_size>50000000</mark_cache_size>
    <logger> <level>warning</level> <log>{0.folder}/log</log> <errorlog>{0.folder}/errors.log</errorlog> </logger>
    <users_config>users.xml</users_config> <default_profile>default</default_profile>
    <include_from>{0.folder}/cluster.xml</include_from>
    <remote_servers incl="servers"/> <zookeeper incl="zookeeper"/> <macros incl="macros"/>
    <distributed_ddl> <path>/ddl</path> </distributed_ddl>
</yandex>"""
    USERS = """<yandex> <profiles> <default/> </profiles> <quotas> <default/> </quotas> <users> <default>
    <password/> <networks> <ip>127.0.0.1</ip> </networks> <profile>default</profile> <quota>default</quota>
</default> <loader> <password>right</password> <networks> <ip>127.0.0.1</ip> </networks> <profile>default</profile>
    <quota>default</quota> </loader> </users> </yandex>"""

    def __init__(self, folder, shard=1):
        need(server_program)
        self.folder, self.shard = folder, shard
        self.port, self.tcp, self.between = free_port(), free_port(), free_port()
        pathlib.Path(folder).mkdir()
        pathlib.Path(folder, "users.xml").write_text(self.USERS)

    def start(self, servers=(), zookeeper=None):
        """Alone, or as one of the servers of the cluster `fleet`."""
        config = self.CONFIG if zookeeper else self.CONFIG.replace("    <distributed_ddl> <path>/ddl</path> </distributed_ddl>\n", "")
        pathlib.Path(self.folder, "config.xml").write_text(config.format(self))
        self.know(servers, zookeeper)
        return self.restart()

    def know(self, servers, zookeeper):
        shards = ""
        for shard in sorted({server.shard for server in servers}):
            replicas = "".join(f"<replica> <host>127.0.0.1</host> <port>{server.tcp}</port> </replica>"
                               for server in servers if server.shard == shard)
            shards += f"<shard> <internal_replication>true</internal_replication> {replicas} </shard>"
        keeper = f"<node> <host>127.0.0.1</host> <port>{zookeeper.port}</port> </node>" if zookeeper else ""
        pathlib.Path(self.folder, "cluster.xml").write_text(
            f"<yandex> <servers> <fleet> {shards} </fleet> </servers> <zookeeper> {keeper} </zookeeper> <macros> "
            f"<shard>{self.shard}</shard> <replica>{os.path.basename(self.folder)}</replica> </macros> </yandex>")

    def restart(self):
        self.launch(server_program, "--config-file=config.xml")
        begun = time.monotonic()
        while self.process.poll() is None and time.monotonic() < begun + 180:  # it looks at each copy of each table
            try:
                self.ask("SELECT 1", "default")
                return self
            except OSError:
                time.sleep(0.1)
        why = "".join(pathlib.Path(self.folder, name).read_text()[-1500:] for name in ("out", "errors.log"))
        raise SystemExit(f"the server does not start in {time.monotonic() - begun:.0f} s (it ended with {self.process.poll()}):\n{why}")

    def ask(self, statement, database, **settings):
        url = f"http://127.0.0.1:{self.port}/?" + urllib.parse.urlencode({"database": database, **settings})
        try:
            with urllib.request.urlopen(url, statement.encode(), timeout=200) as answer:
                return answer.read().decode()
        except urllib.error.HTTPError as error:
            raise SystemExit(error.read().decode()) from error
