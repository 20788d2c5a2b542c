#!/usr/bin/env bash
# Installs into an empty prefix and builds and runs the two outside hosts against it, by CMake and by pkg-config; then
# the same against what the Debian packages hold.
#   linuxPackages.sh SOURCE_FOLDER BUILD_FOLDER
set -euo pipefail
source=$1
build=$2
work=$build/packageTest
rm -rf "$work"
mkdir -p "$work"

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

runHosts() {
    "$1/hostInC" >"$work/c.txt" || fail "$1/hostInC"
    "$1/hostInCpp" >"$work/cpp.txt" || fail "$1/hostInCpp"
    grep -q '@@' "$work/c.txt" && grep -q '@@' "$work/cpp.txt" || fail "the hosts of $1 print no message"
}

buildByPkgConfig() {
    local prefix=$1 out=$2
    local config
    config=$(find "$prefix" -name vekParams2ASCII.pc -printf '%h')
    mkdir -p "$out"
    local flags libraries
    flags=$(PKG_CONFIG_PATH=$config pkg-config --cflags vekParams2ASCII)
    libraries=$(PKG_CONFIG_PATH=$config pkg-config --libs vekParams2ASCII)
    # shellcheck disable=SC2086  # several words each
    cc -std=c99 -Wall -Wextra -Wpedantic -Werror $flags "$source/examples/host.c" -o "$out/hostInC" $libraries
    # shellcheck disable=SC2086
    c++ -std=c++20 -Wall -Wextra -Werror $flags "$source/examples/host.cpp" -o "$out/hostInCpp" $libraries
    LD_LIBRARY_PATH=$(dirname "$config") runHosts "$out"
}

cmake --install "$build" --prefix "$work/prefix" >"$work/install.txt"
cmake -S "$source/examples/outside" -B "$work/byCMake" -G Ninja -DCMAKE_PREFIX_PATH="$work/prefix" >"$work/cmake.txt"
cmake --build "$work/byCMake" >>"$work/cmake.txt"
runHosts "$work/byCMake"
buildByPkgConfig "$work/prefix" "$work/byPkgConfig"

# The soname is what a host asks for at run time.
dynamic=$(readelf -d "$work/prefix"/lib*/libvekParams2ASCII.so)
[[ $dynamic == *'soname: [libvekParams2ASCII.so.1]'* ]] || fail soname

(cd "$build" && cpack -B "$work/packages" >"$work/cpack.txt")
for package in "$work"/packages/*.deb; do
    dpkg-deb -x "$package" "$work/debian"
done
[ "$(find "$work/packages" -maxdepth 1 -name '*.deb' | wc -l)" -eq 3 ] || fail "not three Debian packages"
control=$(dpkg-deb -I "$work"/packages/libvekparams2ascii1_*.deb)
[[ $control == *'Depends: '*libc6* ]] || fail "no dependencies in $control"
buildByPkgConfig "$work/debian/usr" "$work/byDebian"

# The tool needs nothing but its own package, and brings its pages.
[ "$("$work/debian/usr/bin/vekmsg" get FOCUS_VALUE "$source/examples/messages/4112-focus-value.txt")" = 1024.500000 ] ||
    fail "vekmsg of the Debian package"
for file in man/man1/vekmsg.1 bash-completion/completions/vekmsg zsh/vendor-completions/_vekmsg \
    vekmsg/vekmsg.lnav.json; do
    [ -s "$work/debian/usr/share/$file" ] || [ -s "$work/debian/usr/share/$file.gz" ] || fail "no $file in the package"
done
echo "The hosts run against the installation and the Debian packages."
