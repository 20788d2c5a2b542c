#!/usr/bin/env bash
# Makes a Debian machine able to build the Windows DLLs and to run Windows console programs of both widths
# (scripts/wine-run.sh).
# Needs root or sudo, and the machine's own package sources. Quick when everything is there already; an interrupted run
# is repaired by the next. Leaves nothing in the temporary folder.
#
# What it makes, in VEK_WINE_DIR (default /var/cache/vek-wine), for each width:
#   tree, tree64              a small Debian, i386 or amd64, with Wine in it; only its /usr is used
#   prefix-UID, prefix64-UID  Wine's folder (registry, drive C:) of the user who ran this script
set -euo pipefail
scripts=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=scripts/talk.sh
. "$scripts/talk.sh"
dir=${VEK_WINE_DIR:-/var/cache/vek-wine}

asRoot=()
[ "$(id -u)" -eq 0 ] || asRoot=(sudo)

# The mirrors of this release's main archive, as apt itself understands its sources (of either form).
mirrors() {
    # shellcheck disable=SC2016  # the $(...) are apt's
    apt-get indextargets --format '$(CODENAME) $(COMPONENT) $(SITE)' 'Identifier: Packages' |
        awk -v codename="$1" '$1 == codename && $2 == "main" && !seen[$3]++ { print $3 }'
}

# makeTree TREE ARCHITECTURE WIDTH: a complete tree, or failure. The main archive alone is consistent in itself, whatever
# versions the machine has.
makeTree() {
    local tree=$1 architecture=$2 width=$3 codename mirror found
    codename=$(. /etc/os-release && echo "$VERSION_CODENAME")
    found=$(mirrors "$codename")
    if [ -z "$found" ]; then
        "${asRoot[@]}" apt-get update -qq
        found=$(mirrors "$codename")
    fi
    [ -n "$found" ] || { echo "windows-setup: apt knows no main archive of $codename" >&2; return 1; }
    local http_proxy=${http_proxy:-}
    eval "$(apt-config shell http_proxy Acquire::http::Proxy)"

    # What debootstrap mounts in the tree ends with its namespace, also when it is interrupted.
    for mirror in $found; do
        "${asRoot[@]}" rm -rf --one-file-system "$tree"
        talk "Making the Wine tree in $tree" "${asRoot[@]}" env http_proxy="$http_proxy" unshare --mount debootstrap \
            --variant=minbase --arch="$architecture" --components=main --include="wine,wine$width" "$codename" "$tree" "$mirror" && break
        echo "windows-setup: debootstrap from $mirror failed" >&2
        mirror=
    done
    [ -n "$mirror" ] || return 1

    # Debug sections are two thirds of Wine, and every prefix would hold a second copy of them.
    "${asRoot[@]}" find "$tree"/usr/lib/*/wine/*-windows -type f -print0 |
        "${asRoot[@]}" xargs -0 -n 50 -P "$(nproc)" x86_64-w64-mingw32-strip --strip-debug
    echo '<fontconfig/>' | "${asRoot[@]}" tee "$tree/fonts.conf" >/dev/null
    "${asRoot[@]}" rm -rf "$tree"/usr/share/{doc,locale,man,iso-codes} "$tree"/var/{cache/apt/archives,lib/apt/lists}
}

# makePrefix PREFIX WIDTH: a complete prefix, what Wine makes of it at its first start, with its session ended so that all
# is on disk.
makePrefix() {
    "${asRoot[@]}" rm -rf --one-file-system "$1"
    "${asRoot[@]}" install -d -o "$(id -u)" -g "$(id -g)" "$1"
    VEK_WINE_PREFIX=$1 talk "Making Wine's prefix in $1" "$scripts/wine-run.sh" "--$2" cmd.exe /c exit 9<&- &&
        VEK_WINE_PREFIX=$1 "$scripts/wine-run.sh" "--$2" --end 9<&- && return 0
    echo "windows-setup: Wine does not start" >&2
    return 1
}

"$scripts/packages.sh" windows
"${asRoot[@]}" unshare --mount true 2>/dev/null || {
    echo "windows-setup: this machine allows no mount namespaces, which making and running Wine's tree needs." >&2
    echo "In a container, run it with CAP_SYS_ADMIN (docker run --cap-add SYS_ADMIN --security-opt apparmor=unconfined)." >&2
    exit 1
}
"${asRoot[@]}" install -d -m 755 "$dir"

# One maker at a time; each thing is made beside its place and renamed when complete.
exec 9<"$dir"
flock 9
# prepare WIDTH SUFFIX ARCHITECTURE
prepare() {
    local tree=$dir/tree$2 prefix name socket mine=yes status
    prefix=$dir/prefix$2-$(id -u)
    if [ ! -d "$tree" ]; then
        makeTree "$tree.new" "$3" "$1"
        "${asRoot[@]}" mv "$tree.new" "$tree"
    fi
    if [ ! -d "$prefix" ]; then
        makePrefix "$prefix.new" "$1"
        "${asRoot[@]}" mv "$prefix.new" "$prefix"
    fi
    # A session that runs already belongs to somebody else, who needs it.
    name=$(cat "$prefix/wineserver" 2>/dev/null) || name=none
    for socket in "/tmp/$name"/server-*/socket; do
        [ ! -S "$socket" ] || mine=
    done
    "$scripts/wine-run.sh" "--$1" cmd.exe /c "exit 42" 9<&- && status=0 || status=$?
    [ -z "$mine" ] || "$scripts/wine-run.sh" "--$1" --end 9<&-
    [ "$status" -eq 42 ] || { echo "windows-setup: a program under Wine ended with $status, not 42" >&2; exit 1; }
}
prepare 32 '' i386
prepare 64 64 amd64
