# shellcheck shell=bash
# Sourced by the scripts of which a step may take long.
#   talk STEP COMMAND...   says the step, and how long it took the last time; runs the command with its output in
#                          build/logs; says every ten seconds how far it is; at its end, how long it took. Of a command
#                          that fails it shows the end of the output, and gives its status.
#   talkLog                the file with the output of the last step
#   talkShows EXPRESSION   lines of that output which matter
talkFolder=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)/build/logs

talkShows() {
    grep -E -- "$1" "$talkLog" | sed 's/^/    /' || true
}

# In the background, as long as the script lives.
talkWhileItRuns() {
    local seconds=0 last
    while sleep 1 && kill -0 $$ 2>/dev/null; do
        seconds=$((seconds + 1))
        [ $((seconds % 10)) -eq 0 ] || continue
        last=$(tail -c 300 "$talkLog" 2>/dev/null | tr '\r' '\n' | grep -v '^ *$' | tail -n 1 | cut -c 1-100) || true
        printf '    %4d s  %s\n' "$seconds" "$last"
    done
}

talk() {
    local step=$1 name status=0 started=$SECONDS ticker
    shift
    mkdir -p "$talkFolder"
    name=${step//[^A-Za-z0-9]/-}
    name=$talkFolder/${name:0:60}
    talkLog=$name.txt
    : >"$talkLog"
    if [ -s "$name.seconds" ]; then
        echo "$step (last time: $(cat "$name.seconds") s)"
    else
        echo "$step"
    fi
    talkWhileItRuns &
    ticker=$!
    "$@" >"$talkLog" 2>&1 || status=$?
    kill "$ticker" 2>/dev/null || true
    wait "$ticker" 2>/dev/null || true
    if [ "$status" -ne 0 ]; then
        tail -n 60 "$talkLog" >&2
        echo "$step: FAILED after $((SECONDS - started)) s; all of its output is in $talkLog" >&2
        return "$status"
    fi
    echo $((SECONDS - started)) >"$name.seconds"
    printf '    %4d s\n' $((SECONDS - started))
}
