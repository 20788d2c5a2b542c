#!/usr/bin/env python3
"""What a package's bill of materials says is inside and beside is what its binaries were made of, no more and no less.

    bills.py BUILD_FOLDER BILL [TARGET BINARY]...

Inside is what the objects of the targets included, and what was linked into a program for Windows, whose own libraries are
part of it; beside, what a binary asks the system for by name.
"""
import json
import os
import re
import subprocess
import sys

# What a package of headers belongs to; nothing else may be included.
PARTS = {"nlohmann-json3-dev": "nlohmann-json", "libcli11-dev": "CLI11", "zlib1g-dev": None, "libzstd-dev": None,
         "libsqlite3-dev": None, "libc6-dev": None, "linux-libc-dev": None, "libz-mingw-w64-dev": "zlib"}
PATTERNS = {r"libcurl4.*-dev": None, r"(libstdc\+\+|libgcc)-\d+-dev": "gcc-runtime", r"g(cc|\+\+)-mingw-w64.*": "gcc-runtime",
            r"mingw-w64-(common|.*dev)": "mingw-w64"}
OBJECTS = {"vekmsg": ["vekmsg", "vekInspectCore", "vekApi", "vekTypes"], "vekTypes": ["vekTypes"],
           "vekInspect": ["vekInspect", "vekInspectCore", "vekApi", "vekTypes"], "vekParams2ASCII": ["vekApi", "vekTypes"]}


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def part_of(package):
    if package in PARTS:
        return PARTS[package]
    for pattern, part in PATTERNS.items():
        if re.fullmatch(pattern, package):
            return part
    sys.exit(f"FAILED: {package} is included, and no bill has a name for it")


def included(build, targets):
    """The parts that headers outside of the project belong to."""
    folders = {f"CMakeFiles/{name}.dir/" for target in targets for name in OBJECTS[target]}
    headers = set()
    counts = False
    for line in output("ninja", "-C", build, "-t", "deps").splitlines():
        if not line.startswith(" "):
            counts = any(folder in line for folder in folders)
        elif counts and (path := re.fullmatch(r" +(?:(/usr/.*)|(?:.*/)?(?:headers/\w+|vekmsg/include)/(.*))", line)):
            headers.add(os.path.realpath(path[1] or "/usr/include/" + path[2]))
    if not headers:
        sys.exit(f"FAILED: nothing is known of how {targets} were compiled")
    owners = output("dpkg", "-S", *headers)
    return {part_of(package.split(":")[0]) for line in owners.splitlines()
            for package in line.split(": ")[0].split(", ")} - {None}


def main():
    build, file, *rest = sys.argv[1:]
    targets, binaries = rest[::2], rest[1::2]
    with open(file, encoding="utf-8") as opened:
        bill = json.load(opened)
    assert bill["spdxVersion"] == "SPDX-2.3" and len({one["SPDXID"] for one in bill["packages"]}) == len(bill["packages"])
    names = {one["SPDXID"]: one for one in bill["packages"]}
    said = {kind: {names[one["relatedSpdxElement"]]["name"] for one in bill["relationships"]
                   if one["relationshipType"] == kind} for kind in ("CONTAINS", "DYNAMIC_LINK")}
    inside, beside = included(build, targets), set()
    for binary in binaries:
        if binary.endswith((".exe", ".dll")):
            with open(binary, "rb") as opened:
                content = opened.read()
            if b"Mutex" in content or b"pthread" in content:
                inside.add("winpthreads")
            version = re.search(rb"deflate ([0-9.]+) Copyright", content)
            zlib = [one["versionInfo"] for one in bill["packages"] if one["name"] == "zlib"]
            if version and version[1].decode() not in zlib:
                sys.exit(f"FAILED: {binary} holds zlib {version[1].decode()}, the bill {zlib}")
        elif not binary.endswith(".a"):
            beside |= set(re.findall(r"NEEDED.*\[(.*)\]", output("readelf", "-d", binary)))
            with open(binary, "rb") as opened:
                beside |= {"libcurl.so.4"} if b"libcurl.so.4" in opened.read() else set() # loaded when it is needed
    beside = {name for name in beside if not name.startswith(("ld-linux", "libm.so"))} # of libc
    for what, is_so, is_said in (("inside", inside, said["CONTAINS"]), ("beside", beside, said["DYNAMIC_LINK"])):
        if is_so != is_said:
            sys.exit(f"FAILED: {file} says {sorted(is_said)} are {what}, it is {sorted(is_so)}")
    with open(file[:file.rindex("/")] + "/NOTICES", encoding="utf-8") as opened:
        notices = opened.read()
    for one in bill["packages"]:
        if one["name"] in inside and f"\n{one['name']} {one['versionInfo']}\n" not in notices:
            sys.exit(f"FAILED: no notice of {one['name']} {one['versionInfo']}")


main()
