#!/usr/bin/env bash
# The completion for zsh, loaded by zsh and asked on a terminal.
#   zshCompletion.sh VEKMSG
set -euo pipefail
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
mkdir "$folder/bin"
ln -s "$(realpath "$1")" "$folder/bin/vekmsg"
export PATH=$folder/bin:$PATH folder
vekmsg page zsh >"$folder/_vekmsg"
cat >"$folder/ask.zsh" <<'END'
zmodload zsh/zpty
zpty shell "cd $folder; TERM=dumb PS1= zsh -f -i"
zpty -w shell 'fpath=($folder $fpath); autoload -Uz compinit; compinit -u -D; bindkey "^I" expand-or-complete; print rea""dy'
zpty -r shell answer '*ready*' || exit 1
# ask LINE WORD: what the line, with Tab behind it, becomes.
ask() {
    zpty -w -n shell "$1"$'\t'
    zpty -r -m shell answer "*$2*" || { print -r "FAILED: '$1' does not become '$2': $answer"; exit 1 }
    zpty -w shell $'\x15'
}
ask 'vekmsg summ' 'vekmsg summary '
ask 'vekmsg --ver' 'vekmsg --version'
ask 'vekmsg check --igno' 'vekmsg check --ignore'
ask 'vekmsg check --ignore no-n' 'no-number'
ask 'vekmsg new FocusV' 'vekmsg new FocusValue'
ask 'vekmsg schema --sql cl' 'clickhouse'
print complete
END
timeout 60 zsh -f "$folder/ask.zsh"
