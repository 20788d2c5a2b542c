#!/usr/bin/env bash
# Draws docs/vekmsg.svg, what vekmsg says of a damaged message, from its real output.
#   pictures.sh [PROGRAM]     default: build/release/tools/vekmsg/vekmsg
set -euo pipefail
cd "$(dirname "$0")/.."
program=$(realpath "${1:-build/release/tools/vekmsg/vekmsg}")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
picture=$PWD/docs/vekmsg.svg

# The output of commands with its colour sequences, as one sees it: the commands behind a prompt.
session() {
    local command
    for command in "$@"; do
        printf '\033[1m$ %s\033[0m\n' "$command"
        (cd "$folder" && PATH=$folder:$PATH bash -c "$command" 2>&1) || true
    done
}

# Lines with colour sequences to SVG, broken between words.
draw() {
    awk -v columns=104 '
        BEGIN { lineHeight = 18; charWidth = 7.83; escape = sprintf("%c", 27) }
        function openRun() { if (style != "0" && style != "") row = row "<tspan class=\"c" style "\">"; }
        function closeRun() { if (style != "0" && style != "") row = row "</tspan>"; }
        # How many characters stand behind the blank at i up to the next one.
        function wordBehind(i,   c, length_) {
            while ((c = substr($0, ++i, 1)) != "" && c != " ")
                if (c == escape) i += index(substr($0, i), "m") - 1
                else length_++
            return length_
        }
        function endRow() { closeRun(); rows[++count] = row; row = ""; column = 0; openRun(); }
        {
            for (i = 1; i <= length($0); i++) {
                c = substr($0, i, 1)
                if (c == escape) {
                    end = index(substr($0, i), "m") + i - 1
                    closeRun()
                    style = substr($0, i + 2, end - i - 2)
                    sub(";", "-", style)
                    openRun()
                    i = end
                    continue
                }
                if (c == " " && column + 1 + wordBehind(i) > columns) {
                    endRow()
                    continue
                }
                row = row (c == "&" ? "&amp;" : c == "<" ? "&lt;" : c)
                column++
            }
            endRow()
        }
        END {
            while (rows[count] == "") count--
            width = columns * charWidth + 32
            height = count * lineHeight + 28
            printf "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 %d %d\" width=\"%d\">\n", width, height, width
            print "<style>text{font:13px ui-monospace,Menlo,Consolas,\"DejaVu Sans Mono\",monospace;fill:#d4d7dd;" \
                  "white-space:pre}.c1{font-weight:bold}.c2{fill:#8b93a1}.c1-31{fill:#ff6b6b;font-weight:bold}" \
                  ".c32{fill:#7fd18b}.c33{fill:#e5c07b}.c34{fill:#61afef}.c35{fill:#d38cf0}.c36{fill:#56c2cf}</style>"
            printf "<rect width=\"%d\" height=\"%d\" rx=\"8\" fill=\"#22262e\"/>\n", width, height
            for (i = 1; i <= count; i++)
                if (rows[i] != "")
                    printf "<text x=\"16\" y=\"%d\" xml:space=\"preserve\">%s</text>\n", 26 + (i - 1) * lineHeight, rows[i]
            print "</svg>"
        }'
}

# shellcheck disable=SC2016  # expanded by the inner shell
printf '#!/bin/sh\ncommand=$1\nshift\nexec %s "$command" --color=always "$@"\n' "$program" >"$folder/vekmsg"
chmod +x "$folder/vekmsg"
printf '@@4112    80 7 45 {MEDIA_NAME=Northlight violet 0.3;FOCUS_VALEU=3.5mm;}!!' >"$folder/focus.txt"
session 'vekmsg check focus.txt' 'vekmsg show focus.txt' | draw >"$picture"
echo "$picture"
