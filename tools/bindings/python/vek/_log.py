"""The messages of a log."""

from __future__ import annotations

import ctypes
import datetime
import importlib
import os
from typing import Any, Dict, Iterator, List, Optional, Protocol, Tuple, Type, Union

from . import _core
from ._parse import made
from ._record import Message, Record


class ByteStream(Protocol):
    """What can be read block by block: a file, a pipe, the file of a socket."""

    def read(self, size: int) -> bytes: ...


Log = Union[str, "os.PathLike[str]", bytes, bytearray, memoryview, ByteStream]

_BLOCK = 1 << 16


class LogMessage:
    """A message in a log, where it stood and what is wrong with it."""

    __slots__ = ("_found", "_message", "source", "line", "offset", "before", "problems")

    def __init__(self, found: Dict[str, Any]) -> None:
        self._found = found
        self._message: Optional[Message] = None
        self.source: bytes = _core.bytes_said(found["source"])
        """The message as it stands."""
        self.line: int = found["line"]
        """From 1."""
        self.offset: int = found["offset"]
        """Of its first byte."""
        self.before: str = found.get("before", "")
        """What stands in front of it on its line."""
        self.problems: Tuple[_core.Problem, ...] = _core.problems_of(found)

    @property
    def id(self) -> int:
        """0 when it can't be read."""
        found: int = self._found.get("id", 0)
        return found

    @property
    def time(self) -> Union[datetime.datetime, datetime.time, None]:
        """On its line: with a date, or of a day; aware when the log says its zone."""
        text: str = self._found.get("time", "")
        if not text:
            return None
        if "T" not in text:
            return datetime.time.fromisoformat(text)
        return datetime.datetime.fromisoformat(text.replace("Z", "+00:00"))

    @property
    def message(self) -> Message:
        """Its values as a host reads them, whatever the problems. A MessageError when its id has no record."""
        if self._message is None:
            self._message = made(self._found, self.problems)
        return self._message

    def __repr__(self) -> str:
        return f"<{self._found.get('name', 'message')} in line {self.line}, {len(self.problems)} problems>"


def _blocks(log: Log) -> Iterator[bytes]:
    if isinstance(log, (bytes, bytearray, memoryview)):
        yield bytes(log)
    elif isinstance(log, (str, os.PathLike)):
        with open(log, "rb") as file:
            yield from _blocks(file)
    else:
        take = getattr(log, "read1", log.read)  # what is there, of a pipe or a socket
        while True:
            block = take(_BLOCK)
            if not isinstance(block, bytes):
                raise TypeError("messages() reads bytes: open the log with mode 'rb'")
            if not block:
                return
            yield block


def messages(log: Log) -> Iterator[LogMessage]:
    """The messages of a log: a file by its name, bytes, or a stream of bytes, of which each comes as soon as it is whole.

    It finds what `vekmsg json` finds in a log, the damaged ones too.
    """
    if not isinstance(log, (str, os.PathLike, bytes, bytearray, memoryview)) and not hasattr(log, "read"):
        raise TypeError(f"a log is a file's name, bytes, or a stream of bytes, not {type(log).__name__}")
    return _messages(log)


def _messages(log: Log) -> Iterator[LogMessage]:
    library = _core.library
    handle = library.vekBindingsOpenLog()
    if not handle:
        raise MemoryError
    try:
        for block in _blocks(log):
            if block:
                yield from _take(handle, block)
        yield from _take(handle, b"")
    finally:
        library.vekBindingsCloseLog(handle)


def _take(handle: int, block: bytes) -> Iterator[LogMessage]:
    size = _core.library.vekBindingsTakeLog(handle, block, len(block))
    if size < 0:
        raise MemoryError
    found = ctypes.string_at(_core.library.vekBindingsFound(handle), size) if size else b""
    for line in found.decode("utf-8").split("\n")[:-1]:
        yield LogMessage(_core.decode(line))


def frame(log: Log, of: Type[Message]) -> Any:
    """The messages of one kind as a pandas.DataFrame: time, line, echo, sequence, and a column for each value."""
    if not (isinstance(of, type) and issubclass(of, Message)):
        raise TypeError(f"frame() makes rows of a class of messages, such as vek.FocusValue, not of {of!r}")
    pandas = importlib.import_module("pandas")  # where it is there

    def row(time: Any, line: int, message: Message) -> Dict[str, Any]:
        values = {"time": time, "line": line, "echo": message.echo, "sequence": message.sequence}
        _columns(values, "", message)
        return values

    rows = [row(found.time, found.line, found.message) for found in messages(log) if found.id == of.MESSAGE_ID]
    return pandas.DataFrame(rows, columns=None if rows else list(row(None, 0, of())))


def _columns(row: Dict[str, Any], front: str, record: Record) -> None:
    for name in record.FIELDS:
        value = getattr(record, name)
        if isinstance(value, Record):
            _columns(row, f"{front}{name}.", value)
        else:
            row[front + name] = value
