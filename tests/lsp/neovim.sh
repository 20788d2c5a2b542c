#!/usr/bin/env bash
# The language server with a real client: Debian's neovim, without a screen. What it shows of two documents, and does with
# them, is what is written down here.
#   neovim.sh VEKMSG SOURCES
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
command -v nvim >/dev/null || {
    echo "neovim is not installed: scripts/packages.sh all does that. Skipped."
    exit 77
}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cp "$2/examples/device.log" "$folder/a log of 5 °.log"
cp "$2/examples/messages/4112-focus-value.txt" "$folder/focus.msg"
printf 'Gr\xfc\xdfe @@4112    80 7 41 {MEDIA_NAME=\xe4;}!!\n' >"$folder/latin1.log"
sed -n '/^```lua$/,/^```$/{/^```/!p}' "$2/docs/editors.md" >"$folder/init.lua"
cd "$folder"
PATH=$(dirname "$1"):$PATH HOME=$folder XDG_STATE_HOME=$folder timeout 60 nvim --headless -u init.lua -i NONE -S "$here/neovim.lua" >said 2>&1 ||
    { cat said; exit 1; }
tr -d '\r' <said | diff "$here/neovim.txt" - || { echo "FAILED: neovim shows something else than neovim.txt says" >&2; exit 1; }
