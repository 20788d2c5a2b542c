#!/usr/bin/env bash
# Builds and runs the two outside hosts against an installation, by CMake; against what the Debian packages hold, by
# pkg-config, and asks lintian about these; and with the library's sources added to the hosts' own project, where the four
# calls are shared, then static. The hosts have folders of their own named as the library's, first on the include path.
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

# Files named as the library's headers, in the hosts' own folders $2, for the headers in $1.
makeHostile() {
    local header
    [ "$(ls "$1")" = vek ] || fail "hosts would find more in $1 than the folder vek"
    (cd "$1/vek" && find . -name '*.h' -o -name '*.hpp') | while read -r header; do
        mkdir -p "$2/$(dirname "$header")"
        echo "#error \"$header of the host's own\"" >"$2/$header"
    done
    [ -d "$2/api" ] && [ -d "$2/records" ] && [ -d "$2/text" ] || fail "no hostile folders in $2"
}

# buildByCMake OUT [OPTIONS...]: the hosts' project, as it is or with the options of one that is built already.
buildByCMake() {
    local out=$1
    shift
    cmake -S "$source/examples/outside" -B "$out" -G Ninja -DCMAKE_C_FLAGS="-I$hostile" -DCMAKE_CXX_FLAGS="-I$hostile" \
        "$@" >>"$work/cmake.txt" || fail "can't configure the hosts $*"
    cmake --build "$out" >>"$work/cmake.txt" || fail "can't build the hosts $*, see $work/cmake.txt"
    runHosts "$out"
}

runHosts() {
    "$1/hostInC" >"$work/c.txt" || fail "$1/hostInC"
    "$1/hostInCpp" >"$work/cpp.txt" || fail "$1/hostInCpp"
    grep -q '@@' "$work/c.txt" && grep -q '@@' "$work/cpp.txt" || fail "the hosts of $1 print no message"
}

# buildByPkgConfig PREFIX OUT: the objects are of the first prefix, whose headers are those of the others.
buildByPkgConfig() {
    local prefix=$1 out=$2 config flags=() libraries=()
    config=$(find "$prefix" -name vekParams2ASCII.pc -printf '%h')
    mkdir -p "$out"
    # Quoted for a shell: a folder may have a blank in its name.
    eval "flags=($(PKG_CONFIG_PATH=$config pkg-config --cflags vekParams2ASCII))"
    eval "libraries=($(PKG_CONFIG_PATH=$config pkg-config --libs vekParams2ASCII))"
    if [ ! -e "$work/hostInC.o" ]; then
        cc -std=c99 -Wall -Wextra -Wpedantic -Werror -I"$hostile" "${flags[@]}" -c "$source/examples/host.c" \
            -o "$work/hostInC.o"
        c++ -std=c++20 -Wall -Wextra -Werror -I"$hostile" "${flags[@]}" -c "$source/examples/host.cpp" \
            -o "$work/hostInCpp.o"
    fi
    cc "$work/hostInC.o" -o "$out/hostInC" "${libraries[@]}"
    c++ "$work/hostInCpp.o" -o "$out/hostInCpp" "${libraries[@]}"
    LD_LIBRARY_PATH=$(dirname "$config") runHosts "$out"
}

cmake --install "$build" --prefix "$work/prefix" >"$work/install.txt"
"$source/tests/package/installedTree.sh" "$work/prefix"
hostile=$work/hostile
makeHostile "$work/prefix/include" "$hostile"
buildByCMake "$work/byCMake" -DCMAKE_PREFIX_PATH="$work/prefix"

# The soname is what a host asks for at run time.
dynamic=$(readelf -d "$(find "$work/prefix" -name libvekParams2ASCII.so)")
[[ $dynamic == *'soname: [libvekParams2ASCII.so.1]'* ]] || fail soname

(cd "$build" && cpack -B "$work/packages" >"$work/cpack.txt" 2>&1) || fail "cpack, see $work/cpack.txt"
for package in "$work"/packages/*.deb; do
    dpkg-deb -x "$package" "$work/debian"
done
[[ $(find "$work/debian" -name libvekParams2ASCII.so) == */usr/lib/*-linux-gnu*/* ]] || fail "the libraries are not in lib/TRIPLET"
for file in man/man3/vekStrToVal.3.gz doc/libvekparams2ascii-dev/{docs/messages.md,examples/host.cpp} \
    doc/libvekparams2ascii1/{copyright,changelog.Debian.gz}; do
    [ -f "$work/debian/usr/share/$file" ] || fail "no $file in the Debian packages"
done
"$source/tests/package/installedTree.sh" "$work/debian"
[ "$(find "$work/packages" -maxdepth 1 -name '*.deb' | wc -l)" -eq 4 ] || fail "not four Debian packages"
control=$(dpkg-deb -I "$work"/packages/libvekparams2ascii1_*.deb)
[[ $control == *'Depends: '*libc6* ]] || fail "no dependencies in $control"
lintian --allow-root --fail-on error,warning "$work"/packages/*.deb || fail "lintian objects to the Debian packages"
buildByPkgConfig "$work/debian/usr" "$work/byDebian"

# The tool needs nothing but its own package, and brings its pages.
[ "$("$work/debian/usr/bin/vekmsg" get FOCUS_VALUE "$source/examples/messages/4112-focus-value.txt")" = 1024.500000 ] ||
    fail "vekmsg of the Debian package"
for file in man/man1/vekmsg.1 bash-completion/completions/vekmsg zsh/vendor-completions/_vekmsg \
    vekmsg/vekmsg.lnav.json; do
    [ -s "$work/debian/usr/share/$file" ] || [ -s "$work/debian/usr/share/$file.gz" ] || fail "no $file in the package"
done

# As part of the hosts' project, which gets the libraries and nothing else of this project. The same build folder serves
# both ways, so that the library's sources are compiled once.
crowded=-DCMAKE_PROJECT_hosts_INCLUDE=$source/tests/package/crowdedProject.cmake
buildByCMake "$work/fromSources" "$crowded" -DVEK_UNITY=ON -DVEK_FROM=folder -DVEK_SOURCE="$source"
[ ! -e "$work/fromSources/CPackConfig.cmake" ] || fail "the hosts' project makes packages of the library"
cmake --install "$work/fromSources" --prefix "$work/nothing" >>"$work/cmake.txt"
[ ! -e "$work/nothing" ] || fail "the hosts' project installs the library"
grep -q -- '-Werror' "$work/fromSources/build.ninja" && fail "warnings are errors for others"

# The static form, which a project may also install as its own.
buildByCMake "$work/fromSources" -DVEK_FROM=fetched -DBUILD_SHARED_LIBS=OFF -DVEK_INSTALL=ON
dynamic=$(readelf -d "$work/fromSources/hostInC")
[[ $dynamic != *vekParams2ASCII* ]] || fail "the static host loads the library"
cmake --install "$work/fromSources" --prefix "$work/static" >>"$work/cmake.txt"
buildByPkgConfig "$work/static" "$work/byStatic"
echo "The hosts run against the installation, the Debian packages and the sources."
