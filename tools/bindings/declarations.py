"""The declarations as the packages need them, read from the catalogue's JSON: what classes there are, and their members.

Knows no language: a description in languages/ says how names, types and values are spelt in one.
"""

from __future__ import annotations

import re
from dataclasses import dataclass
from typing import Any, Optional

WORDS = {  # by the catalogue's kinds
    "double": "real", "float": "real", "pixels": "real", "long integer": "whole", "short integer": "whole",
    "string": "text", "16-bit character string": "wide", "boolean": "flag", "enumeration": "word",
    "nested record": "record",
}


def camel(name: str) -> str:
    """UpperCamelCase of a KEY, a structure or an enumeration."""
    if "_" in name:
        parts = [part if part[:1].isdigit() else part[:1].upper() + part[1:].lower() for part in name.split("_")]
        return "".join(parts)
    if name.isupper():
        return name.capitalize()
    return name[:1].upper() + name[1:]


@dataclass
class Value:
    number: int
    word: str  # in the text
    name: str  # VEK_MEDIA_FILM is FILM


@dataclass
class Enumeration:
    name: str
    values: list[Value]


@dataclass
class Member:
    key: str
    kind: str  # real, whole, text, wide, flag, word, record
    is_list: bool
    bits: int  # of a whole number
    of: str  # class of a record, or name of an enumeration
    counts: list[str]  # keys of the lists whose elements it counts; the first one says how many
    range: str  # of a range's type: the key of the values, without which it is not written
    is_optional: bool  # it may be there or not
    default: Any  # None for a record, whose class has its own
    changed: dict[str, Any]  # of a record: defaults that differ from those of its class, by key
    room: Optional[int]  # characters of a text, or elements of a list
    is_filled: bool  # a list that always has as many elements as there is room for
    about: str


@dataclass
class Record:
    name: str  # the class
    record: str  # in the JSON
    about: str
    members: list[Member]
    id: Optional[int]  # of a message


class Declarations:
    def __init__(self, catalogue: dict[str, Any]) -> None:
        self.enumerations = [self._enumeration(one) for one in catalogue["enumerations"]]
        self.records: list[Record] = []
        self._by_name = {one["name"]: one for one in catalogue["records"]}
        self._ids: dict[str, list[int]] = {}
        for message in catalogue["messages"]:
            if "record" in message:
                self._ids.setdefault(message["record"], []).append(message["id"])
        for one in self._by_name.values():
            self._record(one)
        self.by_name = {record.name: record for record in self.records}
        self._check_reals()

    def word_of(self, enumeration: str, word: str) -> Value:
        of = next(one for one in self.enumerations if one.name == enumeration)
        return next(value for value in of.values if value.word == word)

    @property
    def messages(self) -> list[Record]:
        return sorted((record for record in self.records if record.id is not None), key=lambda record: record.id or 0)

    @property
    def real_keys(self) -> list[str]:
        return self._keys(lambda member: member.kind == "real")

    def _keys(self, choose: Any) -> list[str]:
        return sorted({member.key for record in self.records for member in record.members if choose(member)})

    def _check_reals(self) -> None:
        """Infinite reals come as texts, and are told by their keys."""
        texts = self._keys(lambda member: member.kind in ("text", "wide", "word"))
        assert not set(texts) & set(self.real_keys), "a key is a real here and a text there"

    @staticmethod
    def _enumeration(one: dict[str, Any]) -> Enumeration:
        constants = [value["constant"] for value in one["values"]]
        common = re.match(r"(.*_)[^\n]*(?:\n\1[^\n]*)*$", "\n".join(constants))
        front = len(common.group(1)) if common else 0
        return Enumeration(camel(one["name"]), [
            Value(value["value"], value["name"], value["constant"][front:]) for value in one["values"]])

    @staticmethod
    def _class_name(one: dict[str, Any]) -> str:
        name = one["structure"]
        name = name[3:] if re.match("vek[A-Z]", name) else name
        return camel(re.sub("_t$", "", name))

    def _record(self, one: dict[str, Any]) -> str:
        """Puts the classes of a record down behind those that it needs; returns its class."""
        name = self._class_name(one)
        ids = self._ids.get(one["name"], [None])  # type: ignore[list-item]
        names = [name] if len(ids) == 1 else [f"{name}{id}" for id in ids]
        if any(record.name == names[0] for record in self.records):
            return name
        counted: dict[str, list[str]] = {}
        for key in one["keys"]:
            if "count" in key:
                counted.setdefault(key["count"], []).append(key["key"])
        ranges = {key["rangeType"]: key["key"] for key in one["keys"] if "rangeType" in key}
        members = [self._member(key, counted.get(key["key"], []), ranges.get(key["key"], "")) for key in one["keys"]]
        for class_name, id in zip(names, ids):
            if any(record.name == class_name for record in self.records):
                continue
            self.records.append(Record(class_name, one["name"], one.get("about", ""), members, id))
        return name

    def _member(self, key: dict[str, Any], counts: list[str], range: str) -> Member:
        kind = WORDS[key["kind"]]
        of, changed = "", {}
        if kind == "word":
            of = camel(key["enumeration"])
        elif "of" in key:
            own = self._by_name.get(self._message_record(key["of"]), key["of"])
            of = self._record(own)
            theirs = {inner["key"]: inner.get("default") for inner in own["keys"]}
            changed = {inner["key"]: inner.get("default") for inner in key["of"]["keys"]
                       if inner.get("default") != theirs[inner["key"]]}
        elif kind == "record":
            of = self._record(self._by_name[key["record"]])
        is_filled = key.get("listKind") == "array" and "count" not in key
        return Member(key["key"], kind, key["list"], 16 if key["kind"] == "short integer" else 32, of, counts, range,
                      key["defaultKind"] == "not set", self._default(key), changed, key.get("room"), is_filled,
                      self._about(key, counts))

    def _message_record(self, nested: dict[str, Any]) -> str:
        return next((name for name, one in self._by_name.items() if one["structure"] == nested["structure"]), "")

    @staticmethod
    def _default(key: dict[str, Any]) -> Any:
        if key["defaultKind"] == "null" and key["kind"] == "string":
            return ""
        return key.get("default")

    @staticmethod
    def _about(key: dict[str, Any], counts: list[str]) -> str:
        words = f"{key['key']}: {key['words']}"
        if "room" in key and not key["list"]:
            words += f", room for {key['room'] - 1} bytes"
        if counts:
            return words + f". Follows {' and '.join(counts)}."
        if key["defaultKind"] == "not set":
            return words + ". Not there by default."
        if "of" in key or key.get("listKind") == "array" and "count" not in key:
            return words + "."
        default = key.get("default")
        return words + (". Default: " + str(default) + "." if default not in (None, "", []) else ". Default: empty.")
