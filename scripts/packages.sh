#!/usr/bin/env bash
# Installs what building and testing need and this machine lacks (Debian packages). Run by demo.sh and test.sh.
#   packages.sh build   compilers and build tools
#   packages.sh test    these, and what the tests and benchmarks need
#   packages.sh page    what the page and its tests need
set -euo pipefail

packages=(g++ cmake ninja-build nlohmann-json3-dev libcli11-dev zlib1g-dev libzstd-dev)
if [ "${1:-build}" = test ]; then
    packages+=(gcc clang libclang-rt-dev libgtest-dev libbenchmark-dev rapidjson-dev pkg-config binutils dpkg-dev file
               locales g++-mingw-w64-i686-posix)
fi
if [ "${1:-build}" = page ]; then
    packages+=(emscripten libfast-float-dev nodejs chromium fonts-inter fonts-jetbrains-mono)
    command -v npm >/dev/null || packages+=(npm) # Debian's nodejs has none; others bring their own
fi

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
