"""C#: one file of classes, written for netstandard2.0 and C# 7, so that Mono's compiler takes it."""

from __future__ import annotations

from typing import Any

from declarations import Declarations, Enumeration, Member, Record, camel

TYPES = {"real": "double", "text": "string", "wide": "string", "flag": "bool"}
HEAD = """// The messages, their nested records and their enumerations. Made by the build from the declarations.
using System;
using System.Collections.Generic;
using System.Runtime.CompilerServices;

namespace VekParams
{{
    public static partial class Vek
    {{
        /// <summary>The version of the package.</summary>
        public const string Version = "{version}";

        static partial void AddMessages(Dictionary<int, Func<Message>> add)
        {{
{adding}        }}
    }}
"""


def source(declarations: Declarations, version: str) -> str:
    adding = "".join(f"            add[{one.id}] = () => new {one.name}();\n" for one in declarations.messages)
    language = _CSharp(declarations)
    parts = [HEAD.format(version=version, adding=adding)]
    parts += [language.enumeration(one) for one in declarations.enumerations]
    parts += [language.record(one) for one in declarations.records]
    return "\n".join(parts) + "}\n"


def about(text: str, indent: str) -> str:
    text = text.replace("&", "&amp;").replace("<", "&lt;")
    return f"{indent}/// <summary>{text}</summary>\n"


class _CSharp:
    def __init__(self, declarations: Declarations) -> None:
        self.declarations = declarations

    def enumeration(self, one: Enumeration) -> str:
        values = "".join(about(f"{value.word}", "        ") + f"        {camel(value.name)} = {value.number},\n"
                         for value in one.values)
        words = ", ".join(f'"{value.word}"' for value in one.values)
        return (f"    public enum {one.name}\n    {{\n{values}    }}\n\n    internal static class {one.name}Words\n    {{\n"
                f"        internal static readonly string[] All = {{ {words} }};\n    }}\n")

    def name(self, record: Record, member: Member) -> str:
        """A member can't be called as its class: it is the value."""
        name = camel(member.key)
        return name if name != record.name else "Values" if member.is_list else "Value"

    def record(self, record: Record) -> str:
        is_message = record.id is not None
        text = about(record.about or f"A nested record: {record.record}.", "    ")
        text += "    [NullableContext(1)]\n"
        text += f"    public sealed class {record.name} : {'Message' if is_message else 'Record'}\n    {{\n"
        if is_message:
            text += (f"        public const int TypeId = {record.id};\n\n        public override int MessageId => TypeId;\n\n"
                     f'        internal override string RecordName => "{record.record}";\n\n')
        text += "".join(self.property(record, member) for member in record.members)
        text += "        internal override void Read(Fields fields)\n        {\n"
        text += "".join(f"            {self.name(record, one)} = {self.read(one)};\n"
                        for one in record.members if not one.counts)
        text += "        }\n\n        internal override void Write(Writer to)\n        {\n"
        text += "".join("            " + self.write(record, one) for one in record.members)
        return text + "        }\n    }\n"

    def property(self, record: Record, member: Member) -> str:
        text = about(member.about, "        ")
        name = self.name(record, member)
        if member.counts:
            of = next(one for one in record.members if one.key == member.counts[0])
            return text + f"        public int {name} => {self.name(record, of)}?.Count ?? 0;\n\n"
        if member.is_optional and not self.is_value(member):
            text += f"        [Nullable({'2, 1' if member.is_list else '2'})]\n"
        return text + f"        public {self.type(member)} {name} {{ get; set; }}{self.default(member)}\n\n"

    def plain(self, member: Member) -> str:
        if member.kind in ("word", "record"):
            return member.of
        return TYPES.get(member.kind) or ("short" if member.bits == 16 else "int")

    def type(self, member: Member) -> str:
        if member.is_list:
            return f"List<{self.plain(member)}>"
        return self.plain(member) + ("?" if member.is_optional and self.is_value(member) else "")

    @staticmethod
    def is_value(member: Member) -> bool:
        return member.kind in ("real", "whole", "flag", "word") and not member.is_list

    def literal(self, member: Member, default: Any) -> str:
        if member.kind == "word":
            return f"{member.of}.{camel(self.declarations.word_of(member.of, default).name)}"
        if member.kind == "real":
            return repr(float(default))
        return {True: "true", False: "false"}[default] if isinstance(default, bool) else (
            f'"{default}"' if isinstance(default, str) else str(default))

    def default(self, member: Member) -> str:
        if member.is_optional:
            return ""
        if member.is_filled:
            return f" = Record.Filled<{member.of}>({member.room});"
        if member.is_list:
            values = ", ".join(repr(float(one)) for one in member.default) if member.kind == "real" else ""
            return f" = new {self.type(member)}{' { ' + values + ' }' if values else '()'};"
        if member.kind == "record":
            inner = self.declarations.by_name[member.of]
            changed = [f"{self.name(inner, one)} = {self.literal(one, member.changed[one.key])}" for one in inner.members
                       if one.key in member.changed and not one.counts]
            return f" = new {member.of}{' { ' + ', '.join(changed) + ' }' if changed else '()'};"
        return f" = {self.literal(member, member.default)};"

    def read(self, member: Member) -> str:
        call = {"real": "Real", "text": "Text", "wide": "Wide", "flag": "Flag", "word": f"Word<{member.of}>",
                "record": f"Record<{member.of}>", "whole": "Short" if member.bits == 16 else "Whole"}[member.kind]
        if member.is_list:
            call = call.replace("<", "s<") if "<" in call else call + "s"
        front = "Optional" if member.is_optional else ""
        more = f", {member.of}Words.All" if member.kind == "word" else ""
        return f'fields.{front}{call}("{member.key}"{more})'

    def write(self, record: Record, member: Member) -> str:
        name = self.name(record, member)
        call = {"real": "Real", "whole": "Whole", "text": "Text", "wide": "Text", "flag": "Flag", "word": "Word",
                "record": "Record"}[member.kind] + ("s" if member.is_list else "")
        value = name
        if member.is_optional and self.is_value(member):
            value += ".Value"
        if member.kind == "word":
            value = f"(int){value}, {member.of}Words.All"
        text = f'to.{call}("{member.key}", {value});\n'
        if member.range:
            of = next(one for one in record.members if one.key == member.range)
            return f"if ({self.name(record, of)} == null || {self.name(record, of)}.Count > 0)\n                {text}"
        return f"if ({name} != null)\n                {text}" if member.is_optional else text
