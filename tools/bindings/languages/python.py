"""Python: one module of classes with slots, written for Python 3.9 and mypy --strict."""

from __future__ import annotations

from typing import Any

from declarations import Declarations, Enumeration, Member, Record

TYPES = {"real": "float", "whole": "int", "text": "str", "wide": "str", "flag": "bool"}
RESERVED = {"int"}
HEAD = '''"""The messages, their nested records and their enumerations. Made by the build from the declarations."""

from __future__ import annotations

from typing import Any, Callable, Dict, FrozenSet, List, Optional, Type

from ._record import Message, Record, Word, Writer, wide, words

VERSION = "{version}"
'''


def attribute(key: str) -> str:
    name = key.lower()
    return name + "_" if name in RESERVED else name


def source(declarations: Declarations, version: str) -> str:
    language = _Python(declarations)
    parts = [HEAD.format(version=version)]
    parts += [language.enumeration(one) for one in declarations.enumerations]
    parts += [language.record(one) for one in declarations.records]
    ids = "".join(f"    {one.id}: {one.name},\n" for one in declarations.messages)
    parts.append(f"#: By message id.\nMESSAGES: Dict[int, Type[Message]] = {{\n{ids}}}\n\n"
                 f"#: Keys whose values are reals: one that is infinite comes as a text.\n"
                 f"REALS: FrozenSet[str] = frozenset({declarations.real_keys!r})\n")
    names = ["MESSAGES"] + [one.name for one in [*declarations.enumerations, *declarations.records]]
    parts.append(f"__all__ = {names!r}")
    return "\n\n\n".join(part.strip("\n") for part in parts) + "\n"


class _Python:
    def __init__(self, declarations: Declarations) -> None:
        self.declarations = declarations

    def enumeration(self, one: Enumeration) -> str:
        values = "".join(f'    {value.name} = ({value.number}, "{value.word}")\n' for value in one.values)
        return f"class {one.name}(Word):\n{values}\n\n_{one.name} = words({one.name})"

    def record(self, record: Record) -> str:
        own = [member for member in record.members if not member.counts]
        is_message = record.id is not None
        lines = [f"class {record.name}({'Message' if is_message else 'Record'}):",
                 f'    """{record.about or "A nested record: " + record.record + "."}"""', "",
                 f"    __slots__ = ({''.join(repr(attribute(one.key)) + ', ' for one in own)})",
                 f"    FIELDS = ({''.join(repr(attribute(one.key)) + ', ' for one in own)})"]
        if is_message:
            lines += [f"    MESSAGE_ID = {record.id}", f"    RECORD = {record.record!r}"]
        lines += [""] + [line for member in own for line in (
            f"    {attribute(member.key)}: {self.type(member)}", f'    """{member.about}"""')] + [""]
        lines += self.constructor(own, is_message) + self.reader(record, own) + self.writer(record)
        for member in record.members:
            if member.counts:
                lines += ["", "    @property", f"    def {attribute(member.key)}(self) -> int:",
                          f'        """{member.about}"""', f"        return len(self.{attribute(member.counts[0])})"]
        return "\n".join(lines)

    def type(self, member: Member) -> str:
        plain = member.of if member.kind in ("word", "record") else TYPES[member.kind]
        whole = f"List[{plain}]" if member.is_list else plain
        return f"Optional[{whole}]" if member.is_optional else whole

    def literal(self, member: Member, default: Any) -> str:
        if member.is_optional:
            return "None"
        if member.kind == "word":
            return f"{member.of}.{self.declarations.word_of(member.of, default).name}"
        return repr(float(default)) if member.kind == "real" else repr(default)

    def constructor(self, own: list[Member], is_message: bool) -> list[str]:
        """What can be changed in place is made anew for each object."""
        lines = ["    def __init__(", "        self,"]
        if len(own) > 3:
            lines.append("        *,")
        made = {}
        for member in own:
            if (member.is_list or member.kind == "record") and not member.is_optional:
                lines.append(f"        {attribute(member.key)}: Optional[{self.type(member)}] = None,")
                made[member.key] = self.made(member)
            else:
                lines.append(f"        {attribute(member.key)}: {self.type(member)} = "
                             f"{self.literal(member, member.default)},")
        if is_message:
            lines += ([] if len(own) > 3 else ["        *,"]) + ["        echo: int = -1,", "        sequence: int = 0,"]
        lines.append("    ) -> None:")
        if is_message:
            lines.append("        self._begin(echo, sequence)")
        for member in own:
            name = attribute(member.key)
            lines.append(f"        self.{name} = {name}" +
                         (f" if {name} is not None else {made[member.key]}" if member.key in made else ""))
        return lines

    def made(self, member: Member) -> str:
        if member.is_filled:
            return f"[{member.of}() for _ in range({member.room})]"
        if member.is_list:
            return repr([float(one) for one in member.default] if member.kind == "real" else member.default)
        inner = {one.key: one for one in self.declarations.by_name[member.of].members}
        changed = [f"{attribute(key)}={self.literal(inner[key], value)}" for key, value in member.changed.items()
                   if not inner[key].counts]
        return f"{member.of}({', '.join(changed)})"

    def reader(self, record: Record, own: list[Member]) -> list[str]:
        """What is absent is 0 or empty, as a host reads it."""
        lines = ["", "    @classmethod", f"    def _read(cls, get: Callable[..., Any]) -> {record.name}:",
                 "        self = cls.__new__(cls)"]
        return lines + [f"        self.{attribute(one.key)} = {self.read(one)}" for one in own] + ["        return self"]

    def read(self, member: Member) -> str:
        key = repr(member.key)
        if member.is_list:
            if member.kind == "record":
                return f"[{member.of}._read(one.get) for one in get({key}, ())]"
            if member.kind == "wide":
                return f"None if (found := get({key})) is None else [wide(one) for one in found]"
            return f"get({key}) or []"
        if member.is_optional:
            return {"wide": f"None if (found := get({key})) is None else wide(found)",
                    "word": f"_{member.of}.get(get({key}))"}.get(member.kind, f"get({key})")
        if member.kind == "record":
            return f"{member.of}._read(get({key}, {{}}).get)"
        zero = {"real": "0.0", "whole": "0", "text": '""', "flag": "False"}.get(member.kind)
        if member.kind == "word":
            first = next(one for one in self.declarations.enumerations if one.name == member.of).values[0].word
            return f"_{member.of}[get({key}, {first!r})]"
        return f"get({key}, {zero})"

    def writer(self, record: Record) -> list[str]:
        lines = ["", "    def _write(self, out: Writer) -> None:"]
        for member in record.members:
            name = f"self.{attribute(member.key)}"
            more = f", {member.of}" if member.kind in ("word", "record") else ""
            more = f", {member.bits}" if member.kind == "whole" else more
            call = f"out.{member.kind}{'s' if member.is_list else ''}({member.key!r}, {name}{more})"
            if member.counts:
                call = f"out.count({member.key!r}, {member.counts[0]!r}, self.{attribute(member.counts[0])})"
            condition = f"self.{attribute(member.range)}" if member.range else f"{name} is not None"
            lines += [f"        if {condition}:", f"            {call}"] if member.range or member.is_optional else [
                f"        {call}"]
        return lines
