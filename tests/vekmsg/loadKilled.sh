#!/usr/bin/env bash
# Kills the loading of a growing log at 50 random moments: in the end the database is that of one undisturbed run.
#   loadKilled.sh VEKMSG SAMPLE-LOG
set -euo pipefail
vekmsg=$1 sample=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

# 16,000 messages, the last of them unfinished; no two lines are alike.
mkdir whole killed
awk '{ line[NR] = $0 }
     END { for (round = 0; round < 2000; ++round)
               for (i = 1; i <= NR; ++i) {
                   sub(/^[0-9]+-[0-9]+/, sprintf("%d-%02d", 2000 + round / 12, round % 12 + 1), line[i])
                   print line[i]
               } }' "$sample" >whole/device.log
printf '@@4112    80 7 1 {MEDIA_NAME=cut' >>whole/device.log
size=$(stat -c %s whole/device.log)

RANDOM=${SEED:=$$}
kills=0
for round in $(seq 1000); do
    # In pieces that end anywhere, also within messages.
    head -c $((size * (round % 25 + 1) / 25 - RANDOM % 1000 - 1)) whole/device.log >killed/device.log.new
    mv killed/device.log.new killed/device.log
    (cd killed && exec "$vekmsg" load --quiet --into archive.sqlite device.log) &
    loader=$!
    sleep "0.0$((RANDOM % 10))$((RANDOM % 10))"
    kill -KILL "$loader" 2>/dev/null || true
    status=0
    wait "$loader" 2>/dev/null || status=$?
    [ "$status" -ne 137 ] || kills=$((kills + 1))
    [ "$kills" -lt 50 ] || [ $((round % 25)) -ne 24 ] || break
    [ $((round % 25)) -ne 24 ] || rm killed/archive.sqlite* # the log begins again
done
[ "$kills" -ge 50 ] || { echo "only $kills loads were killed (seed $SEED)" && exit 1; }

cp whole/device.log killed/device.log
for folder in whole killed; do
    (cd $folder && "$vekmsg" load --quiet --into archive.sqlite device.log &&
        sqlite3 archive.sqlite "UPDATE sources SET loaded_at = ''; DELETE FROM sqlite_stat1" .dump >dump)
done
[ "$(grep -c 'INTO messages' whole/dump)" -eq 16001 ] || { echo "the undisturbed run lacks messages" && exit 1; }
diff whole/dump killed/dump >difference || { head -20 difference && echo "seed $SEED" && exit 1; }
