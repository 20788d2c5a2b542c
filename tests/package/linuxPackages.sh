#!/usr/bin/env bash
# Builds and runs the outside hosts, of which each is as small as can be, against an installation; against each Debian package with nothing but what it depends
# on, by CMake and by pkg-config, and asks lintian about these; and with the library's sources added to the hosts' own
# project, where the four calls are shared, then static. The hosts have folders of their own named as the library's, first
# on the include path. Packages that are made twice are the same.
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

# What a host of the project prints is what it prints here.
hosts=(host cassettes job status image gateway)
runHosts() {
    local host
    for host in hostInC "${hosts[@]}"; do
        "$1/$host" >"$work/host.txt" || fail "$1/$host"
        diff "$work/said/$host" "$work/host.txt" || fail "$1/$host says something else"
    done
    [ ! -x "$1/hostInspecting" ] || "$1/hostInspecting" | grep -q '"id":4112' || fail "$1/hostInspecting"
}

# buildHost PREFIX OUT NAME MODULE COMPILER SOURCE OPTIONS...: one host by pkg-config.
buildHost() {
    local config out=$2 name=$3 module=$4 compiler=$5 file=$6 words flags=() libraries=()
    config=$(find "$1" -name pkgconfig)
    shift 6
    # Quoted for a shell: a folder may have a blank in its name.
    words=$(PKG_CONFIG_LIBDIR=$config pkg-config --cflags "$module") && eval "flags=($words)"
    words=$(PKG_CONFIG_LIBDIR=$config pkg-config --libs "$module") && eval "libraries=($words)"
    "$compiler" "$@" -Wall -Wextra -Wpedantic -Werror -I"$hostile" "${flags[@]}" "$source/examples/$file" \
        -o "$out/$name" "${libraries[@]}" || fail "can't build $file by pkg-config"
}

# buildByPkgConfig PREFIX OUT: the hosts of the modules that the prefix has.
buildByPkgConfig() {
    mkdir -p "$2"
    local host
    buildHost "$1" "$2" hostInC vekParams2ASCII cc host.c -std=c99
    for host in "${hosts[@]}"; do
        buildHost "$1" "$2" "$host" vekParams2ASCII c++ "$host.cpp" -std=c++20 -pthread
    done
    [ -z "$(find "$1" -name vekInspect.pc)" ] || buildHost "$1" "$2" hostInspecting vekInspect cc inspect.c -std=c99
    LD_LIBRARY_PATH=$(dirname "$(find "$1" -name pkgconfig)") runHosts "$2"
}

# bareRoot PACKAGE ROOT: unpacks the package, and those of this project that it says it needs.
bareRoot() {
    local file needed
    file=$(echo "$work"/packages/"$1"_*.deb)
    mkdir -p "$2"
    dpkg-deb -x "$file" "$2"
    for needed in $(dpkg-deb -f "$file" Depends | tr , '\n' | sed -n 's/ *\([a-z0-9-]*\).*/\1/p'); do
        [ ! -e "$(echo "$work"/packages/"$needed"_*.deb)" ] || bareRoot "$needed" "$2"
    done
}

# pack BUILD OUT
pack() {
    (cd "$1" && cpack -B "$2" >"$2.txt" 2>&1) || fail "cpack, see $2.txt"
    rm -r "$2/_CPack_Packages"
}

mkdir "$work/said"
for host in hostInC "${hosts[@]}"; do
    "$build/examples/$host" >"$work/said/$host"
done
cmake --install "$build" --prefix "$work/prefix" >"$work/install.txt"
"$source/tests/package/installedTree.sh" "$work/prefix" 50
hostile=$work/hostile
makeHostile "$work/prefix/include" "$hostile"
buildByCMake "$work/byCMake" -DCMAKE_PREFIX_PATH="$work/prefix"
[ -x "$work/byCMake/hostInspecting" ] || fail "the installation has no vekInspect for CMake"

# The soname is what a host asks for at run time.
dynamic=$(readelf -d "$(find "$work/prefix" -name libvekParams2ASCII.so)")
[[ $dynamic == *'soname: [libvekParams2ASCII.so.1]'* ]] || fail soname

pack "$build" "$work/packages"
names=$(cd "$work/packages" && printf '%s ' * | sed 's/_[^ ]*//g')
[ "$names" = 'libvekinspect-dev libvekinspect1 libvekparams2ascii-dev libvekparams2ascii1 vekmsg ' ] || fail "packages: $names"
for name in $names; do
    root=$work/root/$name
    bareRoot "$name" "$root"
    "$source/tests/package/installedTree.sh" "$root"
    for file in copyright changelog.Debian.gz; do
        [ -f "$root/usr/share/doc/$name/$file" ] || fail "no $file in $name"
    done
done
page=$source/build/page/vekmsg.html # when it was made
[ ! -f "$page" ] || cmp "$page" "$work/root/vekmsg/usr/share/vekmsg/inspector.html" || fail "the inspector is not in vekmsg"
for part in inspector.webmanifest inspector-worker.js; do
    [ ! -f "$page" ] || [ -f "$work/root/vekmsg/usr/share/vekmsg/$part" ] || fail "$part is not in vekmsg"
done
while read -r name target file; do
    root=$work/root/$name/usr
    "$source/tests/package/bills.py" "$build" "$root/share/doc/$name/$name.spdx.json" "$target" \
        "$(find "$root" -type f -path "*/$file")"
done <<'END'
libvekparams2ascii1 vekParams2ASCII libvekParams2ASCII.so.*.*
libvekparams2ascii-dev vekTypes libvekTypes.a
libvekinspect1 vekInspect libvekInspect.so.*.*
vekmsg vekmsg bin/vekmsg
END

# What builds programs has all they need, and says what it has not.
for name in libvekparams2ascii-dev libvekinspect-dev; do
    root=$work/root/$name
    buildByCMake "$work/byCMake/$name" -DCMAKE_PREFIX_PATH="$root/usr"
    buildByPkgConfig "$root/usr" "$work/byPkgConfig/$name"
done
for host in byCMake/libvekinspect-dev/hostInspecting byPkgConfig/libvekinspect-dev/hostInspecting; do
    [ -x "$work/$host" ] || fail "no $host"
done
root=$work/root/libvekparams2ascii-dev
[[ $(find "$root" -name libvekParams2ASCII.so) == */usr/lib/*-linux-gnu*/* ]] || fail "the libraries are not in lib/TRIPLET"
for file in man/man3/vekStrToVal.3.gz doc/libvekparams2ascii-dev/{docs/messages.md,examples/host.cpp}; do
    [ -f "$root/usr/share/$file" ] || fail "no $file in the Debian packages"
done
[ -f "$work/root/libvekinspect-dev/usr/share/man/man3/vekInspectToJson.3.gz" ] || fail "no manual page of vekInspect"
mkdir "$work/asking"
echo 'cmake_minimum_required(VERSION 3.20)
project(asking LANGUAGES CXX)
find_package(vekParams2ASCII 1 REQUIRED COMPONENTS vekInspect)' >"$work/asking/CMakeLists.txt"
cmake -S "$work/asking" -B "$work/asking/out" -DCMAKE_PREFIX_PATH="$root/usr" >"$work/asking.txt" 2>&1 &&
    fail "CMake finds a vekInspect that is not there"
tr -s ' \n' ' ' <"$work/asking.txt" | grep -q 'Debian package libvekinspect-dev' || fail "CMake does not say where vekInspect is"

# The libraries say what they export, and since when.
for name in libvekparams2ascii1 libvekinspect1; do
    package=$(echo "$work"/packages/${name}_*.deb)
    [[ $(dpkg-deb -f "$package" Depends) == *libc6* ]] || fail "$name depends on nothing"
    [ "$(dpkg-deb -f "$package" Multi-Arch)" = same ] || fail "$name is not for several architectures"
    mkdir -p "$work/control"
    dpkg-deb -e "$package" "$work/control/$name"
    differences=$(cd "$work/control" && dpkg-gensymbols -p$name -v"$(dpkg-deb -f "$package" Version)" \
        -P"$work/root/$name" -I$name/symbols -O/dev/null -c4 2>&1) && [ -z "$differences" ] ||
        fail "$name exports something else than its symbols file says: $differences"
done

# Other folders, files that are older or newer, another time.
mkdir -p "$work/a copy/of it"
(cd "$source" && tar c --exclude=./build --exclude=./.git .) | tar xm -C "$work/a copy/of it"
for folder in "$source" "$work/a copy/of it"; do
    out=$folder/build packed=$work/packed2
    [ "$folder" != "$source" ] || out=$work/again packed=$work/packed1
    CCACHE_DISABLE=1 cmake -S "$folder" -B "$out" -G Ninja -DCMAKE_BUILD_TYPE=Release -DVEK_UNITY=ON -DVEK_INSPECT=OFF \
        >>"$work/cmake.txt"
    CCACHE_DISABLE=1 cmake --build "$out" >>"$work/cmake.txt" || fail "can't build in $out"
    pack "$out" "$packed"
done
pack "$build" "$work/packages2"
diff -r "$work/packages" "$work/packages2" && diff -r "$work/packed1" "$work/packed2" || fail "packages made twice differ"

lintian --allow-root --fail-on error,warning "$work"/packages/*.deb || fail "lintian objects to the Debian packages"

# The tool needs nothing but its own package, and brings its pages.
tool=$work/root/vekmsg/usr
[ "$("$tool/bin/vekmsg" get FOCUS_VALUE "$source/examples/messages/4112-focus-value.txt")" = 1024.500000 ] ||
    fail "vekmsg of the Debian package"
for file in man/man1/vekmsg.1 bash-completion/completions/vekmsg zsh/vendor-completions/_vekmsg \
    vekmsg/vekmsg.lnav.json; do
    [ -s "$tool/share/$file" ] || [ -s "$tool/share/$file.gz" ] || fail "no $file in the package"
done

# The service: as systemd reads it, and what it runs.
unit=$tool/lib/systemd/system/vekmsg-load@.service
if command -v systemd-analyze >/dev/null; then
    said=$(systemd-analyze verify --man=no "$unit" 2>&1) || fail "systemd refuses the service: $said"
    [ -z "$said" ] || fail "systemd says of the service: $said"
fi
run=$(sed -n "s/^ExecStart=.*'\(.*\)'$/\1/p" "$unit")
"$tool/bin/vekmsg" example --messages 100 "$work/fleet" 2>/dev/null
PATH=$tool/bin:$PATH INTO=$work/fleet.sqlite LOGS="$work/fleet/*.log" OPTIONS='--pattern {device}.log' timeout 4 sh -c "$run" ||
    [ $? = 124 ] || fail "the service ends"
[ "$(sqlite3 "$work/fleet.sqlite" 'SELECT count(DISTINCT device) FROM sources JOIN messages USING (source_id)')" = 8 ] ||
    fail "the service does not load"

# As part of the hosts' project, which gets the libraries and nothing else of this project. The same build folder serves
# both ways, so that the library's sources are compiled once.
crowded=-DCMAKE_PROJECT_hosts_INCLUDE=$source/tests/package/crowdedProject.cmake
buildByCMake "$work/fromSources" "$crowded" -DVEK_UNITY=ON -DVEK_FROM=folder -DVEK_SOURCE="$source"
[ -x "$work/fromSources/hostInspecting" ] || fail "the sources have no vekInspect for CMake"
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
