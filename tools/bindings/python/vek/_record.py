"""What the classes of messages have in common: comparing, showing, writing."""

from __future__ import annotations

import enum
import math
import operator
import struct
from json import encoder
from typing import Any, Callable, ClassVar, Dict, List, Sequence, Tuple, Type, TypeVar, Union

from . import _core

quoted: Callable[[str], str] = getattr(encoder, "encode_basestring_ascii")


class Word(enum.IntEnum):
    """An enumeration, whose values have a word in the text."""

    word: str

    def __new__(cls, value: int, word: str) -> Word:
        self = int.__new__(cls, value)
        self._value_ = value
        self.word = word
        return self


W = TypeVar("W", bound=Word)


def words(of: Type[W]) -> Dict[str, W]:
    return {one.word: one for one in of}


def wide(found: Union[str, List[int]]) -> str:
    """A 16-bit text; one that is no sound UTF-16 comes as its codes."""
    if isinstance(found, str):
        return found
    codes = found[: found.index(0)] if 0 in found else found
    return struct.pack(f"<{len(codes)}H", *(code & 0xFFFF for code in codes)).decode("utf-16-le", "surrogatepass")


class Writer:
    """The JSON of a body, put together member by member. A value of another type is a TypeError with its path."""

    def __init__(self) -> None:
        self.out: List[str] = []
        self._path: List[str] = []

    def _wrong(self, key: str, value: object, expected: str) -> TypeError:
        return TypeError(f"{'.'.join(self._path + [key])}: {value!r} is no {expected}")

    def _put(self, key: str, value: str) -> None:
        self.out.append(f'"{key}":{value},')

    def _put_list(self, key: str, values: Sequence[str]) -> None:
        self.out.append(f'"{key}":[{",".join(values)}],')

    def _sequence(self, key: str, values: object) -> Sequence[Any]:
        if isinstance(values, (list, tuple)):
            return values
        raise self._wrong(key, values, "list")

    def _real(self, key: str, value: object) -> str:
        try:
            real = float(value)  # type: ignore[arg-type]
            if isinstance(value, (str, bytes)) or not math.isfinite(real):
                raise ValueError
        except (TypeError, ValueError):
            raise self._wrong(key, value, "finite number") from None
        return "%f" % real

    def _whole(self, key: str, value: object, bits: int) -> str:
        try:
            number = operator.index(value)  # type: ignore[arg-type]
        except TypeError:
            raise self._wrong(key, value, "whole number") from None
        if not -1 << bits - 1 <= number < 1 << bits - 1:
            path = ".".join(self._path + [key])
            raise _core.MessageError(f"{path}: {number} does not fit {bits} bits", path=path)
        return str(number)

    def _text(self, key: str, value: object) -> str:
        if not isinstance(value, str):
            raise self._wrong(key, value, "str")
        if not value.isascii():
            try:
                value.encode()
            except UnicodeEncodeError:
                raise self._wrong(key, value, "text of Unicode") from None
        return quoted(value)

    def real(self, key: str, value: object) -> None:
        self._put(key, self._real(key, value))

    def reals(self, key: str, values: object) -> None:
        self._put_list(key, [self._real(f"{key}[{i}]", one) for i, one in enumerate(self._sequence(key, values))])

    def whole(self, key: str, value: object, bits: int) -> None:
        self._put(key, self._whole(key, value, bits))

    def wholes(self, key: str, values: object, bits: int) -> None:
        found = self._sequence(key, values)
        self._put_list(key, [self._whole(f"{key}[{i}]", one, bits) for i, one in enumerate(found)])

    def count(self, key: str, of: str, values: object) -> None:
        self._put(key, str(len(self._sequence(of, values))))

    def text(self, key: str, value: object) -> None:
        self._put(key, self._text(key, value))

    def texts(self, key: str, values: object) -> None:
        self._put_list(key, [self._text(f"{key}[{i}]", one) for i, one in enumerate(self._sequence(key, values))])

    wide, wides = text, texts

    def flag(self, key: str, value: object) -> None:
        if not isinstance(value, bool):
            raise self._wrong(key, value, "bool")
        self._put(key, "true" if value else "false")

    def word(self, key: str, value: object, of: Type[Word]) -> None:
        if not isinstance(value, of):
            meant = [f"; did you mean {of.__name__}.{one.name}?" for one in of if value in (one.word, one.value)]
            raise self._wrong(key, value, of.__name__ + "".join(meant[:1]))
        self._put(key, f'"{value.word}"')

    def _record(self, key: str, value: object, of: Type[Record]) -> None:
        if not isinstance(value, of):
            raise self._wrong(key, value, of.__name__)
        self._path.append(key)
        self.out.append("{")
        value._write(self)
        self._close("}")
        self._path.pop()

    def _close(self, bracket: str) -> None:
        self.out[-1] = self.out[-1].rstrip(",")
        self.out.append(bracket + ",")

    def record(self, key: str, value: object, of: Type[Record]) -> None:
        self.out.append(f'"{key}":')
        self._record(key, value, of)

    def records(self, key: str, values: object, of: Type[Record]) -> None:
        self.out.append(f'"{key}":[')
        for i, one in enumerate(self._sequence(key, values)):
            self._record(f"{key}[{i}]", one, of)
        self._close("]")


class Record:
    """A group of values: a message's body, or a record in it."""

    __slots__ = ()
    FIELDS: ClassVar[Tuple[str, ...]] = ()
    """The names of its members, in the order of the text."""

    def _write(self, out: Writer) -> None:
        raise NotImplementedError

    def __eq__(self, other: object) -> bool:
        if type(other) is not type(self):
            return NotImplemented
        return all(getattr(self, name) == getattr(other, name) for name in self.FIELDS)

    @classmethod
    def _read(cls, get: Callable[..., Any]) -> Record:
        raise NotImplementedError

    __hash__ = None  # type: ignore[assignment]

    def __repr__(self) -> str:
        return f"{type(self).__name__}({', '.join(f'{name}={getattr(self, name)!r}' for name in self.FIELDS)})"


class Message(Record):
    """A message. Equal messages have equal values; the header numbers are not compared. str() is its text."""

    __slots__ = ("echo", "sequence", "problems")
    MESSAGE_ID: ClassVar[int]
    RECORD: ClassVar[str]

    echo: int
    """Of the message that this one answers, or -1."""
    sequence: int
    problems: Tuple[_core.Problem, ...]
    """What was wrong with the text that it was read from."""

    def _begin(self, echo: int, sequence: int) -> None:
        self.echo, self.sequence, self.problems = echo, sequence, ()

    def __bytes__(self) -> bytes:
        out = Writer()
        head = f'{{"id":{self.MESSAGE_ID},"echo":{out._whole("@echo", self.echo, 32)},'
        out.out.append(head + f'"seq":{out._whole("@seq", self.sequence, 32)},"{self.RECORD}":{{')
        self._write(out)
        out._close("}")
        return _core.write("".join(out.out)[:-1] + "}")

    def __str__(self) -> str:
        return bytes(self).decode("utf-8", "surrogateescape")
