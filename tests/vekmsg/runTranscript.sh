#!/usr/bin/env bash
# Runs the commands of transcripts and compares what they put out with what stands there.
#   runTranscript.sh [--update] [--with ANOTHER_PROGRAM] [--locale NAME] EXAMPLES FILE [EMULATOR] PROGRAM
#
# A transcript is any text with blocks of this form; "$" begins a command, ">" goes on with it, and below stands its
# output (standard output and standard error), with the exit code when it is not 0:
#   ```console
#   $ vekmsg get FOCUS_VALUE focus.txt
#   1024.500000
#   $ vekmsg get FOCUS_VALEU focus.txt
#   ...
#   [exit 1]
#   ```
# A block that begins with ```console skip is not run. All blocks share a new folder, in which the sample
# messages lie as samples/*.txt, a sample log as device.log; $archives has what older versions made, $port is one that
# nobody else should have. --update writes what came out into the file instead of comparing it.
set -euo pipefail
isUpdate=false
if [ "$1" = --update ]; then
    isUpdate=true
    shift
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/bin"
if [ "$1" = --with ]; then
    ln -s "$(realpath "$2")" "$work/bin"
    shift 2
fi
place=()
if [ "$1" = --locale ]; then
    mkdir "$work/locales"
    localedef -i "$2" -f UTF-8 "$work/locales/$2.UTF-8"
    place=(env "LOCPATH=$work/locales" "LC_ALL=$2.UTF-8")
    case $2 in de_DE | tr_TR) [ "$("${place[@]}" printf %.1f 0)" = 0,0 ] || { echo "the locale $2 has no comma"; exit 1; } ;; esac
    shift 2
fi
examples=$(realpath "$1") file=$2
program=("${@:3}")
{
    echo '#!/bin/bash'
    [ ${#place[@]} -eq 0 ] || echo "[ \"\$LC_ALL\" = C ] || exec ${place[*]@Q} ${program[*]@Q} \"\$@\""
    echo "exec ${program[*]@Q} \"\$@\""
} >"$work/bin/vekmsg"
chmod +x "$work/bin/vekmsg"
export archives=$(dirname "$(realpath "$0")")/archives port=$((20000 + $$ % 12000)) PATH=$work/bin:$PATH LC_ALL=C.UTF-8 TZ=UTC
unset NO_COLOR VISUAL EDITOR

# runCommand COMMAND: its output, with a line end, and its exit code.
runCommand() {
    local status=0
    (cd "$folder" && bash -c "$1") >"$work/output" 2>&1 </dev/null || status=$?
    [ "$status" -ne 77 ] || exit 77
    cat "$work/output"
    [ ! -s "$work/output" ] || [ -z "$(tail -c 1 "$work/output")" ] || echo
    [ "$status" -eq 0 ] || echo "[exit $status]"
}

# The file with what the commands really put out.
runTranscript() {
    local line command='' isInside=false
    while IFS= read -r line || [ -n "$line" ]; do
        if [ -n "$command" ] && [[ $line != '> '* ]]; then
            runCommand "$command"
            command=
        fi
        if [[ $line == '```console' ]]; then
            isInside=true
        elif [[ $line == '```' ]]; then
            isInside=false
        elif $isInside && [[ $line == '$ '* ]]; then
            command=${line:2}
        elif $isInside && [ -n "$command" ] && [[ $line == '> '* ]]; then
            command+=$'\n'${line:2}
        elif $isInside; then
            continue # what was expected
        fi
        printf '%s\n' "$line"
    done <"$file"
}

folder=$work/folder
mkdir "$folder"
cp -r "$examples/messages" "$folder/samples"
cp "$examples/device.log" "$folder"
runTranscript >"$work/actual"
if $isUpdate; then
    cp "$work/actual" "$file"
else
    diff -u --label "$file" --label 'what came out' "$file" "$work/actual"
fi
