#!/usr/bin/env bash
# Installs what building and testing need and this machine lacks (Debian packages). Run by the other scripts.
#   packages.sh build      compilers and build tools
#   packages.sh test       these, and what the tests, benchmarks and the checks of the sources need
#   packages.sh coverage   all that, and what counts the lines the tests reach
#   packages.sh windows    what cross-compiling for Windows needs, and what makes a Wine to run the tests in
set -euo pipefail

packages=(g++ cmake ninja-build nlohmann-json3-dev libcli11-dev zlib1g-dev libzstd-dev)
testing=(gcc clang clang-format clang-tidy libclang-rt-dev libgtest-dev libbenchmark-dev rapidjson-dev pkg-config binutils
         dpkg-dev file locales zstd man-db g++-mingw-w64-i686-posix libz-mingw-w64-dev)
case ${1:-build} in
build) ;;
test) packages+=("${testing[@]}") ;;
coverage) packages+=("${testing[@]}" gcovr) ;;
windows) packages+=(g++-mingw-w64-i686-posix libz-mingw-w64-dev googletest debootstrap) ;;
*)
    echo "packages: '$1' is not build, test, coverage or windows" >&2
    exit 2
    ;;
esac

missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$' || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

asRoot=()
[ "$(id -u)" -eq 0 ] || asRoot=(sudo)
echo "Installing: ${missing[*]}"
"${asRoot[@]}" apt-get update -qq
"${asRoot[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
