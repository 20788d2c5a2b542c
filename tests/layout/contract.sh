#!/usr/bin/env bash
# Holds the layouts of docs/layouts.md to those that hosts of this major version are built against: vek/api/layouts.sum has
# a checksum for each structure. Structures that came since the version that is named there are free until the next one.
#   contract.sh SOURCE_FOLDER          fails when a structure is not as it was, or a new version does not hold all of them
#   contract.sh SOURCE_FOLDER hold     writes the file anew for this version
set -euo pipefail
cd "$1"
contract=vek/api/layouts.sum
version=$(sed -n 's/^#define VEK_VERSION "\(.*\)"/\1/p' vek/api/version.h)
held=$(sed -n 's/^version //p' $contract)

# A file for each structure with its sizes, and its members with their types and places.
work=$(mktemp -d)
trap 'rm -r "$work"' EXIT
awk -v work="$work" '
    /^#/ { file = "" }
    /^### `/ { file = work "/" substr($2, 2, length($2) - 2) }
    file != "" && /^(\| [`*]|Bytes: )/ { print > file }' docs/layouts.md
now=$(cd "$work" && sha256sum -- * | awk '{ print $2, substr($1, 1, 32) }')
count=$(wc -l <<<"$now")
[ "$count" -gt 50 ] || { echo "FAILED: docs/layouts.md has only $count structures" >&2; exit 1; }

changed=$(grep '^[A-Za-z_]* [0-9a-f]*$' $contract | grep -vxF "$now" | cut -d' ' -f1 | tr '\n' ' ') || changed=
if [ -n "$changed" ] && [ "${held%%.*}" = "${version%%.*}" ]; then
    echo "FAILED: hosts of version ${version%%.*} are built against other layouts of: $changed" >&2
    echo "Put them as they were, or begin a new major version (docs/versions.md)." >&2
    exit 1
fi
if [ "${2:-}" = hold ]; then
    { grep '^#' $contract; echo "version $version"; echo "$now"; } >"$work/contract"
    cp "$work/contract" $contract
elif [ "$held" != "$version" ]; then
    echo "FAILED: this is version $version, and $contract is of $held: $0 . hold" >&2
    exit 1
fi
echo "$count structures, those of $held as they were."
