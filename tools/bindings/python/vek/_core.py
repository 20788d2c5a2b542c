"""The library beside this file, and what its calls say."""

from __future__ import annotations

import ctypes
import json
import pathlib
import re
import sys
import threading
from typing import Any, Callable, Dict, List, Optional, Tuple, Union

Text = Union[str, bytes, bytearray, memoryview]

_BYTE = re.compile(b"\xee(?:\xbe[\x80-\xbf]|\xbf[\x80-\xbf])")


class Problem:
    """What is wrong with a message, what a host makes of it, and what puts it right."""

    __slots__ = ("severity", "code", "path", "place", "message", "consequence", "remedy")

    def __init__(self, found: Dict[str, Any]) -> None:
        self.severity: str = found["severity"]
        """error or warning"""
        self.code: str = found["code"]
        """stable, for programs: unknown-key"""
        self.path: str = found["path"]
        """of the key; empty for the envelope"""
        self.place: Tuple[int, int] = (found["start"], found["end"])
        """first byte in the message, and behind the last one"""
        self.message: str = found["message"]
        self.consequence: str = found["consequence"]
        """what a host makes of it; may be empty"""
        self.remedy: str = found["suggestion"]
        """what should stand at that place, when that is known"""

    def __repr__(self) -> str:
        return f"<{self.severity} {self.code} at byte {self.place[0]}: {self}>"

    def __str__(self) -> str:
        words = self.message if not self.path or self.path in self.message else f"{self.path}: {self.message}"
        words += f"; {self.consequence}" if self.consequence else ""
        return words + (f"; did you mean {self.remedy}?" if self.remedy else "")


class MessageError(ValueError):
    """A text that is no sound message, or values that no message can carry."""

    __module__ = "vek"

    def __init__(self, words: str, problems: Tuple[Problem, ...] = (), path: str = "") -> None:
        super().__init__(words)
        self.problems = problems
        self.path = problems[0].path if problems else path
        self.place: Optional[Tuple[int, int]] = problems[0].place if problems else None
        """first byte in the message, and behind the last one"""
        self.remedy = problems[0].remedy if problems else ""


def as_bytes(text: Text) -> bytes:
    """The bytes of a text; those that are no UTF-8 stand in a str as surrogates."""
    if isinstance(text, bytes):
        return text
    if isinstance(text, str):
        return text.encode("utf-8", "surrogateescape")
    if isinstance(text, (bytearray, memoryview)):
        return bytes(text)
    raise TypeError(f"a message is str or bytes, not {type(text).__name__}")


def bytes_said(text: str) -> bytes:
    """The bytes of a value, in which those that are no UTF-8 are the characters U+EF80 to U+EFFF."""
    data = text.encode("utf-8", "surrogatepass")
    return _BYTE.sub(lambda found: bytes([(found[0][1] & 1) << 6 | found[0][2] & 0x3F | 0x80]), data)


def _load() -> ctypes.CDLL:
    name = {"win32": "vekBindings.dll", "darwin": "libvekBindings.dylib"}.get(sys.platform, "libvekBindings.so")
    library = ctypes.CDLL(str(pathlib.Path(__file__).with_name(name)))
    pointer, size = ctypes.c_void_p, ctypes.c_size_t
    for call, result, arguments in (
        ("Read", ctypes.c_int32, [ctypes.c_char_p, size, pointer, size]),
        ("Write", ctypes.c_int32, [ctypes.c_char_p, size, pointer, size]),
        ("OpenLog", pointer, []),
        ("TakeLog", ctypes.c_int32, [pointer, ctypes.c_char_p, size]),
        ("Found", pointer, [pointer]),
        ("CloseLog", None, [pointer]),
    ):
        function = getattr(library, "vekBindings" + call)
        function.restype, function.argtypes = result, arguments
    return library


library = _load()
_read, _write = library.vekBindingsRead, library.vekBindingsWrite
_decode: Callable[[str], Tuple[Any, int]] = json.JSONDecoder().raw_decode


class _Room(threading.local):
    """Where the library puts its results, for each thread."""

    def __init__(self) -> None:
        self.make(1 << 16)

    def make(self, size: int) -> None:
        self.buffer = ctypes.create_string_buffer(size)
        self.view = memoryview(self.buffer).cast("B")
        self.address = ctypes.addressof(self.buffer)
        self.size = size


_room = _Room()


def _call(function: Callable[..., int], data: bytes) -> Tuple[int, _Room]:
    room = _room
    size = function(data, len(data), room.address, room.size)
    if size >= room.size:
        room.make(size + 1)
        size = function(data, len(data), room.address, room.size)
    return size, room


def decode(line: str) -> Dict[str, Any]:
    found: Dict[str, Any] = _decode(line)[0]
    return found


def read(data: bytes) -> Dict[str, Any]:
    """The JSON of a message, with its values as a host reads them."""
    size, room = _call(_read, data)
    if size < 0:
        raise MemoryError(ctypes.string_at(room.address).decode())
    return decode(str(room.view[:size], "utf-8"))


def write(text: str) -> bytes:
    """The message of such JSON."""
    size, room = _call(_write, text.encode("ascii"))
    if size >= 0:
        return bytes(room.view[:size])
    words = ctypes.string_at(room.address).decode("utf-8", "replace")
    path = re.match(r"([A-Za-z0-9_\[\].]+): ", words)
    raise MessageError(words, path=path[1] if path else "")


def problems_of(found: Dict[str, Any]) -> Tuple[Problem, ...]:
    problems: List[Dict[str, Any]] = found.get("problems", [])
    return tuple(Problem(one) for one in problems)
