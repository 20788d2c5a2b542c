"""Pascal: one unit of classes, for Free Pascal in Delphi's mode and Delphi."""

from __future__ import annotations

from typing import Any

from declarations import Declarations, Enumeration, Member, Record, camel

TYPES = {"real": "Double", "text": "UnicodeString", "wide": "UnicodeString", "flag": "Boolean"}
CALLS = {"real": "Real", "whole": "Whole", "text": "Text", "wide": "Text", "flag": "Flag", "word": "Word", "record": "Group"}
RESERVED = {"Type"}
HEAD = """// The messages, their nested records and their enumerations. Made by the build from the declarations.
unit VekMessages;

{{$ifdef FPC}}{{$mode delphi}}{{$endif}}
{{$SCOPEDENUMS ON}}

interface

uses
  SysUtils, VekFields, VekJson, VekRecord, VekParams;

const
  VekVersion = '{version}';

type
"""


def source(declarations: Declarations, version: str) -> str:
    language = _Pascal(declarations)
    text = HEAD.format(version=version)
    text += "\n".join([language.enumeration(one) for one in declarations.enumerations] +
                      [language.declaration(one) for one in declarations.records])
    text += "\nimplementation\n\nconst\n" + "".join(language.words(one) for one in declarations.enumerations)
    text += "".join(language.implementation(one) for one in declarations.records)
    kinds = ",\n    ".join(f"T{one.name}" for one in declarations.messages)
    return text + f"\ninitialization\n  VekRegister([\n    {kinds}]);\n\nend.\n"


def about(text: str, indent: str) -> str:
    text = text.replace("&", "&amp;").replace("<", "&lt;")
    return f"{indent}/// <summary>{text}</summary>\n"


def name(member: Member) -> str:
    found = camel(member.key)
    return found + "_" if found in RESERVED else found


def plain(member: Member) -> str:
    if member.kind in ("word", "record"):
        return "T" + member.of
    return TYPES.get(member.kind) or ("SmallInt" if member.bits == 16 else "Integer")


def type_of(member: Member) -> str:
    return f"TArray<{plain(member)}>" if member.is_list else plain(member)


def is_owned(member: Member) -> bool:
    """A record that is always there; another that is put in its place belongs to the message."""
    return member.kind == "record" and not member.is_list


class _Pascal:
    def __init__(self, declarations: Declarations) -> None:
        self.declarations = declarations

    def enumeration(self, one: Enumeration) -> str:
        return f"  T{one.name} = ({', '.join(f'{camel(value.name)} = {value.number}' for value in one.values)});\n"

    def words(self, one: Enumeration) -> str:
        words = ", ".join(f"'{value.word}'" for value in one.values)
        return f"  {one.name}Words: array [0 .. {len(one.values) - 1}] of UnicodeString = ({words});\n"

    def declaration(self, record: Record) -> str:
        """What may be absent, follows a list or is owned is a property; the rest are fields."""
        kind = "TVekRecord" if record.id is None else "TVekMessage"
        text = about(record.about or f"A nested record: {record.record}.", "  ") + f"  T{record.name} = class({kind})\n"
        fields = [one for one in record.members if not (one.counts or one.is_optional or is_owned(one))]
        others = [one for one in record.members if one not in fields]
        private = "".join(f"    F{name(one)}: {type_of(one)};\n" for one in others if not one.counts)
        for one in others:
            if one.counts:
                private += f"    function Get{name(one)}: Integer;\n"
            else:
                private += f"    procedure Set{name(one)}(const Value: {type_of(one)});\n"
        text += f"  private\n{private}  public\n" if private else "  public\n"
        for one in fields:
            text += about(one.about, "    ") + f"    {name(one)}: {type_of(one)};\n"
        for one in others:
            if one.is_optional:
                text += f"    /// <summary>Whether there is one; assigning sets it.</summary>\n    Has{name(one)}: Boolean;\n"
        if self.defaults(record):
            text += "    constructor Create; override;\n"
        if self.owned(record):
            text += "    destructor Destroy; override;\n"
        text += "    procedure ReadFrom(From: TVekValue); override;\n    procedure WriteTo(Writer: TVekWriter); override;\n"
        if record.id is not None:
            text += ("    class function MessageId: Integer; override;\n"
                     "    class function RecordName: UnicodeString; override;\n"
                     "    class function Parse(const Text: UnicodeString; Damaged: Boolean = False): "
                     f"T{record.name};\n")
        for one in others:
            text += about(one.about, "    ")
            text += f"    property {name(one)}: " + (f"Integer read Get{name(one)};\n" if one.counts else
                                                    f"{type_of(one)} read F{name(one)} write Set{name(one)};\n")
        return text + "  end;\n"

    def defaults(self, record: Record) -> list[str]:
        return [line for one in record.members if not one.counts for line in self.default(one)]

    @staticmethod
    def owned(record: Record) -> list[Member]:
        return [one for one in record.members if one.kind == "record"]

    def implementation(self, record: Record) -> str:
        own = [one for one in record.members if not one.counts]
        text = ""
        if self.defaults(record):
            text += "\n" + self.routine(f"constructor T{record.name}.Create", ["inherited;"] + self.defaults(record))
        if self.owned(record):
            free = [f"F{name(one)}.Free;" if is_owned(one) else f"VekFree(TVekRecords({name(one)}));"
                    for one in self.owned(record)]
            text += "\n" + self.routine(f"destructor T{record.name}.Destroy", free + ["inherited;"])
        text += "\n" + self.routine(f"procedure T{record.name}.ReadFrom(From: TVekValue)",
                                    [line for one in own for line in self.read(one)])
        text += "\n" + self.routine(f"procedure T{record.name}.WriteTo(Writer: TVekWriter)",
                                    [self.write(record, one) for one in record.members])
        if record.id is not None:
            text += "\n" + self.routine(f"class function T{record.name}.MessageId: Integer", [f"Result := {record.id};"])
            text += "\n" + self.routine(f"class function T{record.name}.RecordName: UnicodeString",
                                        [f"Result := '{record.record}';"])
            text += "\n" + self.routine(
                f"class function T{record.name}.Parse(const Text: UnicodeString; Damaged: Boolean): T{record.name}",
                [f"Result := T{record.name}(VekParseAs(T{record.name}, Text, Damaged));"])
        for one in record.members:
            if one.counts:
                of = next(other for other in record.members if other.key == one.counts[0])
                text += "\n" + self.routine(f"function T{record.name}.Get{name(one)}: Integer",
                                            [f"Result := Length({name(of)});"])
            elif one.is_optional or is_owned(one):
                also = f"Has{name(one)} := True;" if one.is_optional else ""
                free = f"if F{name(one)} <> Value then\n    F{name(one)}.Free;" if is_owned(one) else ""
                text += "\n" + self.routine(f"procedure T{record.name}.Set{name(one)}(const Value: {type_of(one)})",
                                            [line for line in (free, f"F{name(one)} := Value;", also) if line])
        return text

    @staticmethod
    def routine(head: str, lines: list[str]) -> str:
        return f"{head};\nbegin\n" + "".join(f"  {line}\n" for line in lines) + "end;\n"

    def literal(self, member: Member, default: Any) -> str:
        if member.kind == "word":
            return f"T{member.of}.{camel(self.declarations.word_of(member.of, default).name)}"
        if member.kind == "real":
            return repr(float(default))
        return f"'{default}'" if isinstance(default, str) else str(default)

    def default(self, member: Member) -> list[str]:
        """What differs from the zeros of a new object."""
        if member.is_optional:
            return []
        if member.is_filled:
            return [f"{name(member)} := {type_of(member)}(VekFilled(T{member.of}, {member.room}));"]
        if member.is_list:
            values = ", ".join(repr(float(one)) for one in member.default) if member.kind == "real" else ""
            return [f"{name(member)} := {type_of(member)}.Create({values});"] if values else []
        if member.kind == "record":
            inner = {one.key: one for one in self.declarations.by_name[member.of].members}
            return [f"F{name(member)} := T{member.of}.Create;"] + [
                f"F{name(member)}.{name(inner[key])} := {self.literal(inner[key], value)};"
                for key, value in member.changed.items() if not inner[key].counts]
        text = self.literal(member, member.default)
        is_zero = not member.default or member.kind == "word" and self.declarations.word_of(
            member.of, member.default).number == 0
        return [] if is_zero else [f"{name(member)} := {text};"]

    def read(self, member: Member) -> list[str]:
        key = f"'{member.key}'"
        call = CALLS[member.kind] + ("s" if member.is_list else "")
        if is_owned(member):
            return [f"F{name(member)}.ReadFrom(VekReadGroup(From, {key}));"]
        if member.kind == "word":
            value = f"{plain(member)}(VekReadWord(From, {key}, {member.of}Words))"
        elif member.kind == "record":
            value = f"{type_of(member)}(VekReadGroups(From, {key}, T{member.of}))"
        else:
            value = f"VekRead{'Shorts' if type_of(member) == 'TArray<SmallInt>' else call}(From, {key})"
        lines = [f"VekFree(TVekRecords({name(member)}));"] if member.kind == "record" else []
        lines.append(f"{'F' if member.is_optional else ''}{name(member)} := {value};")
        return lines + ([f"Has{name(member)} := VekHas(From, {key});"] if member.is_optional else [])

    def write(self, record: Record, member: Member) -> str:
        call = CALLS[member.kind]
        value = name(member)
        if member.is_list:
            call = "Shorts" if plain(member) == "SmallInt" else call + "s"
            value = f"TVekRecords({value})" if member.kind == "record" else value
        if member.kind == "word":
            value = f"Ord({value}), {member.of}Words"
        text = f"Writer.{call}('{member.key}', {value});"
        if member.range:
            of = next(one for one in record.members if one.key == member.range)
            return f"if {name(of)} <> nil then\n    {text}"
        return f"if Has{name(member)} then\n    {text}" if member.is_optional else text
