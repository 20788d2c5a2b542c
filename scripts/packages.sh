#!/usr/bin/env bash
# Installs what building and testing need and this machine lacks (Debian packages), or says how. Run by the other scripts.
#   packages.sh build      compilers and build tools
#   packages.sh test       these, and what the tests of an optimised build need
#   packages.sh all        these, and what scripts/test.sh all needs: more compilers, sanitizers, checks of the sources
#   packages.sh bench      what the comparison with other codecs needs
#   packages.sh coverage   as test, and what counts the lines the tests reach
#   packages.sh cluster    the servers that the demonstration of a cluster runs, and their clients; Debian's package starts
#                          one of its own at once, where services are started
#   packages.sh bindings   what the packages for other languages are made and tested with
#   packages.sh page       what the inspector and its tests in a browser need
#   packages.sh windows    what cross-compiling for Windows needs, and what makes a Wine to run the tests in
set -euo pipefail
# shellcheck source=scripts/talk.sh
. "$(dirname "$0")/talk.sh"

packages=(g++ cmake ninja-build nlohmann-json3-dev libcli11-dev zlib1g-dev libzstd-dev libsqlite3-dev
          libcurl4-openssl-dev)
testing=(libgtest-dev valgrind zstd sqlite3 tzdata man-db python3-jsonschema locales socat xxd)
case ${1:-build} in
build) ;;
test) packages+=("${testing[@]}") ;;
all)
    packages+=("${testing[@]}" clang clang-format clang-tidy libclang-rt-dev libc++-dev libc++abi-dev libbenchmark-dev
               rapidjson-dev pkg-config dpkg-dev file lintian g++-mingw-w64-i686-posix g++-mingw-w64-x86-64-posix
               libz-mingw-w64-dev llvm lld neovim zsh nodejs)
    command -v npm >/dev/null || packages+=(npm)
    ;;
bench)
    packages+=(libbenchmark-dev rapidjson-dev libsimdjson-dev libprotobuf-dev protobuf-compiler nlohmann-json3-dev
               pkg-config valgrind python3 jq miller sqlite3)
    ;;
bindings)
    packages+=("${testing[@]}" python3-build python3-wheel python3-setuptools python3-venv mypy python3-pandas
               python3-matplotlib mono-mcs mono-runtime libmono-system-core4.0-cil libmono-system-numerics4.0-cil
               fp-compiler)
    ;;
cluster) packages+=(clickhouse-server clickhouse-client zookeeper default-jre-headless curl) ;;
coverage) packages+=("${testing[@]}" python3) ;;
page)
    packages+=(emscripten libfast-float-dev nodejs chromium firefox-esr fonts-inter fonts-jetbrains-mono)
    command -v npm >/dev/null || packages+=(npm) # Debian's nodejs has none; others bring their own
    ;;
windows)
    packages+=(g++-mingw-w64-i686-posix g++-mingw-w64-x86-64-posix libz-mingw-w64-dev clang llvm lld googletest
               debootstrap)
    ;;
*)
    echo "packages: '$1' is not build, test, all, bench, bindings, coverage, cluster, page or windows" >&2
    exit 2
    ;;
esac

missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$' || missing+=("$package")
done
# fetchEngines WHAT: the database engines of today, for the tests of archives, are npm's (615 MB).
fetchEngines() {
    local project
    project=$(dirname "$0")/..
    local from=$project/tests/engines to=$project/build/engines
    [ "$1" = all ] && [ ! "$to/node_modules/.package-lock.json" -nt "$from/package.json" ] || return 0
    mkdir -p "$to"
    cp "$from/package.json" "$to"
    talk "Fetching database engines" npm install --prefix "$to" --no-audit --no-fund --ignore-scripts
}
[ ${#missing[@]} -gt 0 ] || { fetchEngines "${1:-}" && exit; }

# giveUp WHY: what the user can do instead.
giveUp() {
    cat >&2 <<END
packages: $1. Missing are ${#missing[@]} packages; install them as root:
    apt-get update && apt-get install -y --no-install-recommends ${missing[*]}
then run this script again.
END
    exit 1
}

asRoot=()
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || giveUp "there is no sudo, and you are not root"
    # A password can be asked for only where somebody sits.
    sudo -n true 2>/dev/null || { [ -t 0 ] && sudo -v; } || giveUp "sudo does not let you install packages"
    asRoot=(sudo)
fi
command -v apt-get >/dev/null || giveUp "there is no apt-get on this machine"

# Another program may be at it, such as a machine's own updates: they are waited for, ten minutes at most. apt-get itself
# waits for the lock of the packages, not for that of the lists.
updateLists() {
    local deadline=$((SECONDS + 600))
    until "${asRoot[@]}" env LC_ALL=C apt-get update -q -o Acquire::Retries=1 -o APT::Update::Error-Mode=any; do
        tail -n 5 "$talkLog" | grep -q 'Could not get lock' && [ "$SECONDS" -lt "$deadline" ] || return 1
        sleep 5
    done
}
talk "Asking for the lists of packages" updateLists ||
    giveUp "the lists of packages can't be had (is the network there?)"
talk "Installing ${#missing[@]} packages: ${missing[*]}" "${asRoot[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -q --no-install-recommends -o DPkg::Lock::Timeout=600 "${missing[@]}" ||
    giveUp "apt-get can't install the packages"
fetchEngines "${1:-}"
