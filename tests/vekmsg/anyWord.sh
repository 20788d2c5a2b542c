#!/usr/bin/env bash
# Whatever stands where a command wants a word, it says what is wrong and ends: no word is passed over in silence, and none
# ends the program otherwise.
#   anyWord.sh PROGRAM EXAMPLES
#
# What was broken: an empty id ("new ''", --id "$unset") ended the program, an empty --since showed every message, and
# --tolerance nan called every two numbers the same.
set -euo pipefail
program=$(realpath "$1") folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cp "$2/device.log" "$folder/device.log"
head -n 3 "$2/device.log" >"$folder/start.log"
cd "$folder"
count=0

# attempt OUGHT NAME WORDS...: runs the words; OUGHT is "fail" where NAME must be said and the exit code be 2.
attempt() {
    local ought=$1 name=$2 status=0
    shift 2
    EDITOR=true timeout 20 "$program" "$@" >output 2>&1 </dev/null || status=$?
    count=$((count + 1))
    if [ "$status" -gt 2 ] || { [ "$status" -ne 0 ] && [ ! -s output ]; }; then
        echo "vekmsg ${*@Q}: exit $status: $(head -c 300 output)"
        exit 1
    fi
    if [ "$ought" = fail ] && { [ "$status" -ne 2 ] || ! grep -qe "$name" output; }; then
        echo "vekmsg ${*@Q} should say what is wrong with $name: exit $status: $(head -c 300 output)"
        exit 1
    fi
}

# What a command needs besides, as the word "FILE" shows where its files go.
needs() {
    case $1 in
    get | stats | unset) echo @seq device.log ;;
    set) echo @seq=1 device.log ;;
    table) echo --keys @seq device.log ;;
    diff) echo device.log device.log ;;
    load) echo --into "$folder/archive.sqlite" device.log ;;
    export) echo --from="$folder/archive.sqlite" ;;
    new | describe) echo FocusValue ;;
    edit) echo device.log --head 1 ;;
    example) echo fleet ;;
    replay) echo start.log ;; # of some milliseconds
    list | schema | stamp | lsp) ;;
    *) echo device.log ;;
    esac
}

# Where any text but an empty one makes sense.
isFree() {
    case $1 in --source | --label | --device | --site | --host | --ignore | --into | --from | --to | --forget) true ;; *) false ;; esac
}

declare -A tried
commands=$("$program" --help | sed -n '/^Subcommands:/,$s/^  \([a-z]\+\) .*/\1/p')
for command in $commands; do
    read -ra needed <<<"$(needs "$command")"
    for at in "${!needed[@]}"; do
        words=("${needed[@]}")
        [[ ${words[at]} != --from=* ]] || continue
        words[at]=
        attempt fail empty "$command" "${words[@]}"
        for word in '?' '[' '{}' '=' "$(printf '%020000d' 7)"; do
            words[at]=$word
            attempt any '' "$command" "${words[@]}"
        done
    done
    for option in $("$program" "$command" --help | grep -oE -- '--[a-z-]+ [A-Z]' | cut -d' ' -f1 | sort -u); do
        attempt fail "$option" "$command" "${needed[@]}" "$option" ''
        attempt fail "$option" "$command" "${needed[@]}" "$option"
        nonsense=('?' 99999999999999999999)
        [ -n "${tried[$option]:-}" ] || nonsense+=('[' '][' '{}' '=' '%s%n' '-' $'\x01' nan -1)
        tried[$option]=yes
        for word in "${nonsense[@]}"; do
            ought=fail
            case $option$word in
            --id9* | --tolerance9* | --speed9*) ought=any ;;
            --echo-1 | --seq-1) ought=any ;;
            --time'?' | --time'[') ;;
            --time*) ought=any ;;
            *) ! isFree "$option" || ought=any ;;
            esac
            attempt $ought "$option" "$command" "${needed[@]}" "$option" "$word"
        done
    done
done
[ "$count" -gt 500 ] || { echo "only $count attempts"; exit 1; }
