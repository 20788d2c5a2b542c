"""Writes the NuGet package: pack.py VERSION PACKAGE NAME=FILE..., with each file's name in the package."""

import sys
import zipfile

NUSPEC = """<?xml version="1.0" encoding="utf-8"?>
<package xmlns="http://schemas.microsoft.com/packaging/2012/06/nuspec.xsd">
  <metadata>
    <id>VekParams</id>
    <version>{version}</version>
    <authors>vekParams2ASCII</authors>
    <description>Messages of laser exposure devices: read, written, checked, found in logs</description>
    <dependencies>
      <group targetFramework=".NETStandard2.0" />
    </dependencies>
  </metadata>
</package>
"""
RELATIONS = """<?xml version="1.0" encoding="utf-8"?>
<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">
  <Relationship Type="http://schemas.microsoft.com/packaging/2010/07/manifest" Target="/VekParams.nuspec" Id="manifest" />
</Relationships>
"""
TYPES = """<?xml version="1.0" encoding="utf-8"?>
<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">
  <Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml" />
{types}</Types>
"""
TYPE = '  <Default Extension="{0}" ContentType="application/octet" />\n'
PART = '  <Override PartName="/{0}" ContentType="application/octet" />\n'

version, target, *files = sys.argv[1:]
content = {"VekParams.nuspec": NUSPEC.format(version=version).encode()}
for file in files:
    name, path = file.split("=", 1)
    with open(path, "rb") as source:
        content[name] = source.read()
extensions = sorted({name.rsplit(".", 1)[1] for name in content if "." in name.rsplit("/", 1)[-1]})
types = "".join(map(TYPE.format, extensions))
types += "".join(PART.format(name) for name in content if "." not in name.rsplit("/", 1)[-1])
content = {"[Content_Types].xml": TYPES.format(types=types).encode(), "_rels/.rels": RELATIONS.encode(), **content}
with zipfile.ZipFile(target, "w", zipfile.ZIP_DEFLATED) as package:
    for name, data in content.items():
        package.writestr(zipfile.ZipInfo(name), data, zipfile.ZIP_DEFLATED)
