#!/usr/bin/env bash
# A cluster on this machine, for a minute or two: starts ZooKeeper and four ClickHouse servers, two shards of two replicas,
# loads the logs of a fleet with two loaders at once, kills a server and a loader in the middle and starts the loader
# again, puts another server in the place of the killed one, counts what is there, asks three questions, and takes
# everything away again.
#   cluster-demo.sh            installs what is missing and builds vekmsg
#   cluster-demo.sh VEKMSG     with this program, and installs nothing; without a server it ends with 77
set -euo pipefail
shopt -s inherit_errexit
project=$(cd "$(dirname "$0")/.." && pwd)
messages=100000

if [ $# -eq 0 ]; then
    cd "$project"
    . scripts/talk.sh
    scripts/packages.sh cluster
    [ -e build/release/tests/CTestTestfile.cmake ] ||
        talk "Preparing build/release" cmake --preset release -DVEK_TESTS=ON
    talk "Building vekmsg" cmake --build build/release --target vekmsg
    set -- build/release/tools/vekmsg/vekmsg
fi
vekmsg=$(realpath "$1")

PATH=$PATH:/usr/sbin
for program in clickhouse-server curl java; do
    command -v "$program" >/dev/null && continue
    echo "cluster-demo: $program is not there; scripts/packages.sh cluster installs it" >&2
    [ -z "${CI:-}" ] || exit 1
    exit 77
done

work=$(mktemp -d)
declare -A running=() # name: process
cleanUp() {
    local pid
    for pid in "${running[@]}"; do
        kill -KILL "$pid" 2>/dev/null || true
        wait "$pid" 2>/dev/null || true
    done
    rm -rf "$work"
}
trap cleanUp EXIT
trap 'exit 1' INT TERM

fail() {
    echo "cluster-demo: $1" >&2
    tail -n 5 "$work"/*.err "$work"/*/errors.log >&2 2>/dev/null || true
    exit 1
}

# ask SERVER STATEMENT
ask() {
    curl -sS --fail-with-body --max-time 60 "http://127.0.0.1:${http[$1]}/?database=fleet" --data-binary "$2"
}

# Ports nobody listens on at the moment.
freePorts() {
    local port taken found=0
    taken=$(awk '$4 == "0A" { split($2, at, ":"); print at[2] }' /proc/net/tcp /proc/net/tcp6 2>/dev/null)
    while [ "$found" -lt "$1" ]; do
        port=$((26000 + RANDOM % 6000)) # the tests have those in front
        [[ $taken != *$(printf %04X "$port")* ]] || continue
        taken+=" $(printf %04X "$port")"
        found=$((found + 1))
        echo "$port"
    done
}

# replica SERVER: its line in the cluster's list.
replica() {
    echo "<replica> <host>127.0.0.1</host> <port>${tcp[$1]}</port> </replica>"
}

# introduce SERVER FIRST...: which four servers the cluster has; the first two are a shard.
introduce() {
    cat >"$work/$1/cluster.xml" <<END
<yandex>
    <servers> <fleet>
        <shard> <internal_replication>true</internal_replication> $(replica "$2") $(replica "$3") </shard>
        <shard> <internal_replication>true</internal_replication> $(replica "$4") $(replica "$5") </shard>
    </fleet> </servers>
    <keeper> <node> <host>127.0.0.1</host> <port>$keeperPort</port> </node> </keeper>
    <names> <shard>${shard[$1]}</shard> <replica>server$1</replica> </names>
</yandex>
END
}

# configure SERVER: its folder, with all that such a server needs to know.
configure() {
    mkdir -p "$work/$1"
    cat >"$work/$1/config.xml" <<END
<yandex>
    <listen_host>127.0.0.1</listen_host> <http_port>${http[$1]}</http_port> <tcp_port>${tcp[$1]}</tcp_port>
    <interserver_http_host>127.0.0.1</interserver_http_host> <interserver_http_port>${between[$1]}</interserver_http_port>
    <path>$work/$1/data/</path> <tmp_path>$work/$1/tmp/</tmp_path> <mark_cache_size>50000000</mark_cache_size>
    <logger> <level>warning</level> <log>$work/$1/log</log> <errorlog>$work/$1/errors.log</errorlog> </logger>
    <users_config>users.xml</users_config> <default_profile>default</default_profile>
    <include_from>$work/$1/cluster.xml</include_from>
    <remote_servers incl="servers"/> <zookeeper incl="keeper"/> <macros incl="names"/>
    <distributed_ddl> <path>/ddl</path> </distributed_ddl>
</yandex>
END
    cat >"$work/$1/users.xml" <<'END'
<yandex>
    <profiles> <default/> </profiles> <quotas> <default/> </quotas>
    <users> <default>
        <password/> <networks> <ip>127.0.0.1</ip> </networks> <profile>default</profile> <quota>default</quota>
    </default> </users>
</yandex>
END
}

# isThere COMMAND...: false when it does not come to work while the process that was started last runs.
isThere() {
    local try
    for ((try = 0; try < 200; ++try)); do
        "$@" 2>/dev/null && return
        kill -0 $! 2>/dev/null || break
        sleep 0.1
    done
    return 1
}

startKeeper() {
    mkdir -p "$work/keeper"
    printf '%s\n' tickTime=500 dataDir="$work/keeper" clientPort="$keeperPort" clientPortAddress=127.0.0.1 \
        admin.enableServer=false maxClientCnxns=0 maxSessionTimeout=2000 >"$work/keeper/zoo.cfg"
    java -Xmx256m -cp '/etc/zookeeper/conf_example:/usr/share/java/*' \
        org.apache.zookeeper.server.quorum.QuorumPeerMain "$work/keeper/zoo.cfg" >>"$work/keeper/out" 2>&1 &
    running[keeper]=$!
    isThere eval 'exec 3<>/dev/tcp/127.0.0.1/$keeperPort && exec 3>&-'
}

# start SERVER: false when it does not come up.
start() {
    (cd "$work/$1" && exec clickhouse-server --config-file=config.xml >>server.out 2>&1) &
    running[server$1]=$!
    isThere curl -s -o "$work/ping" "http://127.0.0.1:${http[$1]}/ping"
}

# stop NAME SIGNAL
stop() {
    kill "-$2" "${running[$1]}"
    wait "${running[$1]}" 2>/dev/null || true
    unset "running[$1]"
}

# load SERVER LOG...: a loader on the road of its own.
load() {
    local server=$1
    shift
    "$vekmsg" load --into "http://127.0.0.1:${http[$server]}/fleet?cluster=fleet&replicated=yes" "$@" \
        2>>"$work/loader$server.err" &
    running[loader$server]=$!
}

loaderEnded() {
    wait "${running[loader$1]}" || fail "loader $1 ended with $?"
    unset "running[loader$1]"
}

# Of every table that has any rows: how many, and how many different ones. (Elements of lists have their number, too.)
counts() {
    local table key statement=
    for table in $(ask 1 "SELECT name FROM system.tables WHERE database = 'fleet' AND engine = 'Distributed' AND name NOT IN ('sources', 'marks')"); do
        key=$(ask 1 "SELECT concat('source_id, byte_offset', arrayStringConcat(groupArray(concat(', ', name)))) FROM
                     system.columns WHERE database = 'fleet' AND table = '$table' AND name LIKE 'element%'")
        statement+="${statement:+ UNION ALL }SELECT '$table' AS name, count() AS rows, uniqExact($key) FROM $table"
    done
    ask 1 "SELECT * FROM ($statement) WHERE rows > 0 ORDER BY name"
}

echo "Two shards of two servers each, and ZooKeeper:"
shard=(- 1 1 2 2 2) # the fifth one comes later
for try in 1 2 3 4 5; do
    mapfile -t ports < <(freePorts 16)
    http=(- "${ports[@]:0:5}") tcp=(- "${ports[@]:5:5}") between=(- "${ports[@]:10:5}") keeperPort=${ports[15]}
    for server in 1 2 3 4 5; do
        configure $server
        introduce $server 1 2 3 4
    done
    startKeeper && start 1 && start 2 && start 3 && start 4 && break
    [ "$try" -lt 5 ] || fail "the servers do not start"
    for name in "${!running[@]}"; do stop "$name" KILL; done # another program was faster
done
curl -sS --fail-with-body "http://127.0.0.1:${http[1]}/" --data-binary "CREATE DATABASE fleet ON CLUSTER fleet" >"$work/ddl"

cd "$work"
"$vekmsg" example --messages "$messages" logs 2>/dev/null
echo "  up. Loading $messages messages of 8 devices, with one loader at a server of each shard..."
load 1 logs/drum-0[1-4].log
load 3 logs/drum-0[5-8].log
for ((try = 0; try < 1200; ++try)); do
    there=$(ask 1 'SELECT count() FROM messages' 2>/dev/null || echo 0)
    [[ $there =~ ^[1-9] ]] && break
    sleep 0.05
done
[[ $there =~ ^[1-9] ]] || fail "no messages came in"
stop server4 KILL
stop loader1 KILL
rm -rf "$work/4/data"
echo "  when some were there, a loader was killed, and a server for good: its shard waits for another one"
load 1 logs/drum-0[1-4].log
for server in 1 2 3 5; do introduce $server 1 2 3 5; done
start 5 || fail "the fifth server does not start"
curl -sS --fail-with-body "http://127.0.0.1:${http[5]}/" --data-binary 'CREATE DATABASE fleet'
sleep 3 # until all have read who belongs to the cluster
load 5 logs/drum-01.log
loaderEnded 5
# What it has copied counts for the write that was under way when the other one was killed.
for table in $(ask 5 "SELECT name FROM system.tables WHERE database = 'fleet' AND engine LIKE 'Replicated%'"); do
    ask 5 "SYSTEM RESTART REPLICA $table"
done
echo "  which has come."
for loader in 1 3; do loaderEnded $loader; done

counts >counted
while read -r table rows different; do
    [ "$rows" = "$different" ] || fail "$table has $rows rows, of which $different are different"
done <counted
rows=$(awk '$1 == "messages" { print $2 }' counted)
[ "$rows" = "$messages" ] || fail "there are $rows messages, not $messages"
"$vekmsg" json --rows logs/*.log | awk -F '"' '{ ++rows[$4] } END { for (name in rows) print name "\t" rows[name] }' |
    LC_ALL=C sort >made
# What stood between the messages is told by the loader alone.
cut -f 1,2 counted | grep -v '^fronts' | LC_ALL=C sort | diff - made || fail "< rows there, > rows there should be"
echo "  All $messages messages are there, none twice."
copy() { ask "$1" "SELECT count(), sum(cityHash64(source_id, byte_offset, id, text)) FROM messages_local"; }
for pair in '1 2' '3 5'; do
    [ "$(copy "${pair% *}")" = "$(copy "${pair#* }")" ] || fail "servers $pair have different messages"
done
echo "  The servers of a shard have the same."
load 1 logs/*.log
loaderEnded 1
load 2 logs/drum-01.log
loaderEnded 2
counts | cmp - counted || fail "loading the same logs again added rows"
echo "  Loading the same logs again added nothing."

# A log that is cut off within a message, then grows; another one that takes its name.
"$vekmsg" example --messages 2000 --devices 2 --seed 2 others 2>/dev/null
mv others/drum-01.log whole.log
head -c 99990 whole.log >device.log
load 1 device.log && loaderEnded 1
head -n 700 whole.log >device.log
load 1 device.log && loaderEnded 1
grep @@ others/drum-02.log | tail -n 50 >device.log
load 1 device.log && loaderEnded 1
wanted=$(printf '50\n%d\n' "$(head -n 700 whole.log | grep -c '@@')")
there=$(ask 1 "SELECT count() AS rows FROM messages WHERE source = 'device.log' GROUP BY source_id ORDER BY rows")
[ "$there" = "$wanted" ] || fail "of device.log there are $there, not $wanted"
echo "  A log that has grown and one that has taken its name are there, too."

# question WORDS STATEMENT
question() {
    printf '\n%s\n' "$1"
    ask 1 "$2 FORMAT PrettyCompactMonoBlock" | sed $'s/\x1b\\[[0-9;]*m//g'
}
question "Which cassettes ran out most often in March, and on which devices?" "
    SELECT source, name, count() AS times, max(log_time) AS last FROM cassette
    WHERE input_content = 0 AND toYYYYMM(log_time) = 202603
    GROUP BY source, name ORDER BY times DESC, source, name LIMIT 3"
question "What did operators have to do most?" "
    SELECT source, low_status, msgs[1] AS said, count() AS times FROM device_status
    WHERE severity = 2 GROUP BY source, low_status, said ORDER BY times DESC, source, said LIMIT 3"
question "Whose focus has moved furthest, from the first day to the last?" "
    SELECT source, argMin(focus_value, byte_offset) AS first, argMax(focus_value, byte_offset) AS last,
           round(last - first, 1) AS moved
    FROM focus_value WHERE NOT damaged GROUP BY source ORDER BY moved DESC LIMIT 3"
echo
echo "Passed in $SECONDS s."
