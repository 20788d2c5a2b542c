#!/usr/bin/env bash
# A cluster on this machine, for a minute: starts two ClickHouse servers that share the tables of an archive, loads the
# logs of a fleet with two loaders at once, kills a server and a loader in the middle and starts them again, counts what
# is there, asks three questions, and takes everything away again.
#   cluster-demo.sh            installs what is missing and builds vekmsg
#   cluster-demo.sh VEKMSG     with this program, and installs nothing; without a server it ends with 77
set -euo pipefail
shopt -s inherit_errexit
project=$(cd "$(dirname "$0")/.." && pwd)
messages=200000

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
for program in clickhouse-server curl; do
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

# ask SHARD STATEMENT
ask() {
    curl -sS --fail-with-body --max-time 60 "http://127.0.0.1:${http[$1]}/?database=fleet" --data-binary "$2"
}

# Ports nobody listens on at the moment.
freePorts() {
    local port taken found=0
    taken=$(awk '$4 == "0A" { split($2, at, ":"); print at[2] }' /proc/net/tcp /proc/net/tcp6 2>/dev/null)
    while [ "$found" -lt "$1" ]; do
        port=$((20000 + RANDOM % 12000))
        [[ $taken != *$(printf %04X "$port")* ]] || continue
        taken+=" $(printf %04X "$port")"
        found=$((found + 1))
        echo "$port"
    done
}

# configure SHARD: its folder, with all that such a server needs to know.
configure() {
    mkdir -p "$work/$1"
    cat >"$work/$1/config.xml" <<END
<yandex>
    <listen_host>127.0.0.1</listen_host> <http_port>${http[$1]}</http_port> <tcp_port>${tcp[$1]}</tcp_port>
    <path>$work/$1/data/</path> <tmp_path>$work/$1/tmp/</tmp_path> <mark_cache_size>50000000</mark_cache_size>
    <logger> <level>warning</level> <log>$work/$1/log</log> <errorlog>$work/$1/errors.log</errorlog> </logger>
    <users_config>users.xml</users_config> <default_profile>default</default_profile>
    <remote_servers> <fleet>
        <shard> <replica> <host>127.0.0.1</host> <port>${tcp[1]}</port> </replica> </shard>
        <shard> <replica> <host>127.0.0.1</host> <port>${tcp[2]}</port> </replica> </shard>
    </fleet> </remote_servers>
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

# start SHARD: false when it does not come up.
start() {
    (cd "$work/$1" && exec clickhouse-server --config-file=config.xml >>server.out 2>&1) &
    running[shard$1]=$!
    local try
    for ((try = 0; try < 100; ++try)); do
        curl -s "http://127.0.0.1:${http[$1]}/ping" >/dev/null && return
        kill -0 "${running[shard$1]}" 2>/dev/null || break
        sleep 0.1
    done
    return 1
}

# stop NAME SIGNAL
stop() {
    kill "-$2" "${running[$1]}"
    wait "${running[$1]}" 2>/dev/null || true
    unset "running[$1]"
}

# load SHARD LOG...: a loader on the road of its own.
load() {
    local shard=$1
    shift
    "$vekmsg" load --into "http://127.0.0.1:${http[$shard]}/fleet?cluster=fleet" "$@" 2>>"$work/loader$shard.err" &
    running[loader$shard]=$!
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

echo "Two servers, each with half of the database:"
for try in 1 2 3 4 5; do
    mapfile -t ports < <(freePorts 4)
    http=(- "${ports[@]:0:2}") tcp=(- "${ports[@]:2:2}")
    configure 1
    configure 2
    start 1 && start 2 && break
    [ "$try" -lt 5 ] || fail "the servers do not start"
    for shard in "${!running[@]}"; do stop "$shard" KILL; done # another program was faster
done
for shard in 1 2; do
    curl -sS --fail-with-body "http://127.0.0.1:${http[$shard]}/" --data-binary 'CREATE DATABASE fleet'
done

cd "$work"
"$vekmsg" example --messages "$messages" logs 2>/dev/null
echo "  up. Loading $messages messages of 8 devices, with one loader at each server..."
load 1 logs/drum-0[1-4].log
load 2 logs/drum-0[5-8].log
for ((try = 0; try < 600; ++try)); do
    there=$(ask 1 'SELECT count() FROM messages' 2>/dev/null || echo 0)
    [[ $there =~ ^[1-9] ]] && break
    sleep 0.05
done
[[ $there =~ ^[1-9] ]] || fail "no messages came in"
for loader in 1 2; do kill -STOP "${running[loader$loader]}"; done # so that it is the middle indeed
stop shard2 KILL
stop loader1 KILL
kill -CONT "${running[loader2]}"
echo "  when some were there, the second server and the first loader were killed"
load 1 logs/drum-0[1-4].log
sleep 1
start 2 || fail "the second server does not start again"
echo "  and started again."
loaderEnded 1
loaderEnded 2
grep -q 'trying again' loader?.err || fail "no loader noticed that a server was away"

counts >counted
while read -r table rows different; do
    [ "$rows" = "$different" ] || fail "$table has $rows rows, of which $different are different"
done <counted
rows=$(awk '$1 == "messages" { print $2 }' counted)
[ "$rows" = "$messages" ] || fail "there are $rows messages, not $messages"
"$vekmsg" json --rows logs/*.log | awk -F '"' '{ ++rows[$4] } END { for (name in rows) print name "\t" rows[name] }' |
    LC_ALL=C sort >made
cut -f 1,2 counted | LC_ALL=C sort | diff - made || fail "< rows there, > rows there should be"
echo "  All $messages messages are there, none twice."
load 1 logs/*.log
load 2 logs/drum-01.log
loaderEnded 1
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
