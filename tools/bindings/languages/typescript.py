"""TypeScript: one module of classes; the compiler makes JavaScript and declarations of it."""

from __future__ import annotations

from typing import Any

from declarations import Declarations, Enumeration, Member, Record, camel

TYPES = {"real": "number", "whole": "number", "text": "string", "wide": "string", "flag": "boolean"}
HEAD = """// The messages, their nested records and their enumerations. Made by the build from the declarations.
import {{ Message, Record, filled, type Field, type Values }} from './record.js';

export const version = '{version}';
"""


def source(declarations: Declarations, version: str) -> str:
    language = _TypeScript(declarations)
    parts = [HEAD.format(version=version)]
    parts += [language.enumeration(one) for one in declarations.enumerations]
    parts += [language.record(one) for one in declarations.records]
    kinds = "".join(f"  [{one.id}, {one.name}],\n" for one in declarations.messages)
    parts.append(f"/** The classes by their ids. */\nexport const messageClasses: ReadonlyMap<number, new () => Message> = "
                 f"new Map<number, new () => Message>([\n{kinds}]);\n")
    return "\n".join(parts)


def name(key: str) -> str:
    return key[:1].lower() + key[1:] if (key := camel(key)) else ""


class _TypeScript:
    def __init__(self, declarations: Declarations) -> None:
        self.declarations = declarations

    def enumeration(self, one: Enumeration) -> str:
        """Its values are the words of the text."""
        values = "".join(f"  {camel(value.name)}: '{value.word}',\n" for value in one.values)
        return (f"export const {one.name} = {{\n{values}}} as const;\n"
                f"export type {one.name} = (typeof {one.name})[keyof typeof {one.name}];\n")

    def record(self, record: Record) -> str:
        text = f"/** {record.about or 'A nested record: ' + record.record + '.'} */\n"
        text += f"export class {record.name} extends {'Message' if record.id is not None else 'Record'} {{\n"
        if record.id is not None:
            text += f"  static readonly id: number = {record.id};\n  static override readonly record: string = '{record.record}';\n"
        fields = "".join(f"    {self.field(record, one)},\n" for one in record.members)
        text += f"  static override readonly fields: readonly Field[] = [\n{fields}  ];\n\n"
        text += "".join(f"  /** {one.about} */\n  {name(one.key)}: {self.type(one)} = {self.default(one)};\n"
                        for one in record.members if not one.counts)
        text += (f"\n  constructor(values: Values<{record.name}> = {{}}) {{\n    super();\n"
                 "    this.assign(values);\n  }\n")
        for one in record.members:
            if one.counts:
                text += (f"\n  /** {one.about} */\n  get {name(one.key)}(): number {{\n"
                         f"    return this.{name(one.counts[0])}.length;\n  }}\n")
        return text + "}\n"

    def field(self, record: Record, member: Member) -> str:
        parts = [f"key: '{member.key}'", f"name: '{name(member.key)}'", f"kind: '{member.kind}'"]
        if member.is_list:
            parts.append("isList: true")
        if member.kind == "whole":
            parts.append(f"bits: {member.bits}")
        if member.kind == "word":
            parts.append(f"words: Object.values({member.of})")
        if member.kind == "record":
            parts.append(f"of: {member.of}")
        if member.counts:
            parts.append("isCount: true")
        if member.range:
            parts.append(f"range: '{name(member.range)}'")
        if member.is_optional:
            parts.append("isOptional: true")
        return "{ " + ", ".join(parts) + " }"

    def type(self, member: Member) -> str:
        plain = member.of if member.kind in ("word", "record") else TYPES[member.kind]
        whole = f"{plain}[]" if member.is_list else plain
        return f"{whole} | null" if member.is_optional else whole

    def literal(self, member: Member, default: Any) -> str:
        if member.is_optional:
            return "null"
        if member.kind == "word":
            return f"{member.of}.{camel(self.declarations.word_of(member.of, default).name)}"
        if isinstance(default, bool):
            return "true" if default else "false"
        return f"'{default}'" if isinstance(default, str) else f"{default:g}" if isinstance(default, float) else str(default)

    def default(self, member: Member) -> str:
        if member.is_filled:
            return f"filled({member.room}, {member.of})"
        if member.is_list and not member.is_optional:
            return str(member.default)
        if member.kind == "record":
            inner = self.declarations.by_name[member.of].members
            changed = [f"{name(one.key)}: {self.literal(one, member.changed[one.key])}" for one in inner
                       if one.key in member.changed and not one.counts]
            return f"new {member.of}({'{ ' + ', '.join(changed) + ' }' if changed else ''})"
        return self.literal(member, member.default)
