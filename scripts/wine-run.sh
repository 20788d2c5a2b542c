#!/usr/bin/env bash
# Runs Windows console programs under the Wine that windows-setup.sh made for their width.
#   wine-run.sh [--32|--64] PROGRAM.exe [ARGUMENT...]   standard streams and the low eight bits of the exit code pass
#                                                       through, line ends stay as the program wrote them
#   wine-run.sh [--32|--64] --end                       ends the user's Wine session now (else 30 s after its last program)
# Which width a program has its file says; for those of Windows itself, such as cmd.exe, it is 32 unless said.
# Exit code 77 when Wine is not there; ctest knows it as "skipped" (SKIP_RETURN_CODE).
#
# The program sees this machine's folders under their own names, with the i386 tree's /usr in the place of /usr; so it
# must not lie under /usr itself. The mount is in a namespace of its own and leaves nothing behind. Any number of calls
# may run at once: they share one session (Wine's server and services), which the first of them starts.
set -euo pipefail
dir=${VEK_WINE_DIR:-/var/cache/vek-wine}

# hasWidth64 FILE: what the header behind the one for DOS says, which begins where the number at byte 60 says.
hasWidth64() {
    local place
    [ -f "$1" ] && place=$(od -An -tu4 -j60 -N4 "$1") && [ "$(od -An -tx2 -j$((place + 4)) -N2 "$1")" = ' 8664' ]
}
suffix=
case ${1:?which program?} in
--32) shift ;;
--64) suffix=64 && shift ;;
*) ! hasWidth64 "$1" || suffix=64 ;;
esac
tree=$dir/tree$suffix
export WINEPREFIX=${VEK_WINE_PREFIX:-$dir/prefix$suffix-$(id -u)}

if [ ! -d "$tree" ] || [ ! -d "$WINEPREFIX" ]; then
    echo "**** NOT RUN: ${1:-} needs Wine, and there is none in $dir: run scripts/windows-setup.sh ****" >&2
    exit 77
fi
case $PWD/:$(realpath -m -- "${1:?which program?}") in
/usr/* | *:/usr/*)
    echo "wine-run: $1 or the working folder lies under /usr, where Wine's own files are while it runs" >&2
    exit 2
    ;;
esac

# No debugger on a crash, no desktop entries, no downloads for .NET and HTML, none of this machine's fonts.
export WINEARCH=win${suffix:-32} WINEDEBUG=-all WINEDLLOVERRIDES='winedbg.exe,winemenubuilder.exe=d;mscoree,mshtml='
export LC_ALL=C.UTF-8 FONTCONFIG_FILE=$tree/fonts.conf
unset DISPLAY WAYLAND_DISPLAY

# In the namespace. The session is started apart from the program's streams: its services outlive the program, and a
# reader of these streams would wait for their end.
# shellcheck disable=SC2016  # expanded by the inner shell
inside='
set -eu
mount --bind "$0/usr" /usr
server=/usr/lib/wine/wineserver
if [ "$1" = --end ]; then
    $server -k || true
    $server -w || true
    name=$(cat "$WINEPREFIX/wineserver" 2>/dev/null) && rm -rf "/tmp/${name:?}" # the folder of its socket
    exit 0
fi
exec 9<"$WINEPREFIX"
flock 9
if $server -p30 </dev/null >/dev/null 2>&1 9<&-; then
    /usr/bin/wine-stable wineboot.exe </dev/null >/dev/null 2>&1 9<&-
fi
exec 9<&-
exec /usr/bin/wine-stable "$@"
'
namespace=(--mount --propagation slave)
[ "$(id -u)" -eq 0 ] || namespace+=(--user --map-root-user)
unshare "${namespace[@]}" true 2>/dev/null || {
    echo "wine-run: this machine allows no mount namespaces, which Wine's tree needs (in a container: give it" \
        "CAP_SYS_ADMIN; for users other than root: user namespaces)" >&2
    exit 1
}
exec unshare "${namespace[@]}" /bin/bash -c "$inside" "$tree" "$@"
