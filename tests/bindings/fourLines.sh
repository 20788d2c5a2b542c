#!/usr/bin/env bash
# The four lines of a user in a bare Debian: a folder with the files of a language's packages, of those that they depend
# on, and of the package that was put there before, and nothing else. They print what they print anywhere.
#   fourLines.sh FOLDER PACKAGE... -- COMMAND...
set -euo pipefail
folder=$1 packages=(base-files)
shift
while [ "$1" != -- ]; do
    packages+=("$1")
    shift
done
shift
inside=(unshare --mount --map-root-user)
[ "$(id -u)" -ne 0 ] || inside=(unshare --mount)
"${inside[@]}" true 2>/dev/null || {
    echo "in a bare Debian: not tried, for this machine allows no mount namespaces"
    exit 0
}
mkdir -p "$folder"/usr/{bin,sbin,lib,lib64} "$folder"/{tmp,proc}
for name in bin sbin lib lib64; do
    ln -sfn usr/$name "$folder/$name"
done
# Of the alternatives of a dependency those that are installed here.
needed() {
    apt-cache depends --recurse --no-recommends --no-suggests --no-conflicts --no-breaks --no-replaces --no-enhances "$@" |
        grep '^[a-z0-9]' | sort -u
}
# shellcheck disable=SC2016
installed() {
    xargs dpkg-query --show --showformat '${db:Status-Abbrev} ${binary:Package}\n' 2>/dev/null || true
}
needed "${packages[@]}" | installed | awk '$1 == "ii" {print $2}' | xargs dpkg --listfiles |
    sed -E 's#^/(bin|sbin|lib|lib64)/#/usr/\1/#' | grep '^/usr/' | grep -vE '^/usr/share/(doc|man|locale)/' | sort -u |
    while IFS= read -r file; do
        if [ -L "$file" ] || [ -f "$file" ]; then printf '%s\n' "${file#/}"; fi
    done >"$folder/tmp/files"
tar -C / --no-recursion -cf - --files-from "$folder/tmp/files" | tar -C "$folder" -xf - --skip-old-files
# shellcheck disable=SC2016
said=$("${inside[@]}" sh -c 'mount --rbind /proc "$1/proc"; exec env -i PATH=/usr/sbin:/usr/bin LC_ALL=C.UTF-8 HOME=/tmp chroot "$@"' sh "$folder" "$@")
echo "in a bare Debian with ${packages[*]}: $said"
[ "$said" = "$(cat tests/bindings/expected/four_lines.txt)" ]
