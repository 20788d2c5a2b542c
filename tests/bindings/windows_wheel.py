"""The files of a wheel for Windows, its DLL under Wine, against what the library says of the same messages. There is no Python
for Windows: this machine's runs the wheel's modules, and what they call by ctypes dllHost.exe calls there.
windows_wheel.py FOLDER DLL_HOST CONFORMANCE LOG VEKMSG, of a folder in which the wheel is installed."""

from __future__ import annotations

import ctypes
import os
import subprocess
import sys
import unittest
from typing import Any, Tuple
from unittest import mock

EACH = 4  # how many cases make one, for the pipe is slow


class Dll:
    """What ctypes makes of a DLL: its functions can be given types."""

    def __init__(self, path: str) -> None:
        assert os.path.dirname(path) == os.path.join(FOLDER, "vek"), path
        self._host = subprocess.Popen(["scripts/wine-run.sh", HOST, "Z:" + path.replace("/", "\\")], stdin=subprocess.PIPE,
                                      stdout=subprocess.PIPE)
        self._found = ctypes.create_string_buffer(0)
        self.vekBindingsRead = lambda *given: self._make("R", *given)
        self.vekBindingsWrite = lambda *given: self._make("W", *given)
        self.vekBindingsOpenLog = lambda: self._call("O")[0]
        self.vekBindingsTakeLog = lambda log, block, size: self._take(log, block[:size])
        self.vekBindingsFound = lambda log: ctypes.addressof(self._found)
        self.vekBindingsCloseLog = lambda log: self._call("C", log) and None

    def _call(self, name: str, log: int = 0, text: bytes = b"", room: int = 0) -> Tuple[int, bytes]:
        to, answers = self._host.stdin, self._host.stdout
        assert to and answers
        to.write(f"{name} {log} {len(text)} {room}\n".encode() + text)
        to.flush()
        result, size = map(int, answers.readline().split())
        return result, answers.read(size)

    def _make(self, name: str, text: bytes, size: int, address: int, room: int) -> int:
        result, made = self._call(name, 0, text[:size], room)
        ctypes.memmove(address, made, len(made))
        return result

    def _take(self, log: int, block: bytes) -> int:
        result, found = self._call("T", log, block)
        self._found = ctypes.create_string_buffer(found, len(found) + 1)
        return result

    def close(self) -> None:
        self._host.communicate()
        assert self._host.returncode == 0, "dllHost failed"


if __name__ == "__main__":
    FOLDER, HOST = map(os.path.abspath, sys.argv[1:3])
    sys.path.insert(0, FOLDER)
    with mock.patch("ctypes.CDLL", Dll), mock.patch("sys.platform", "win32"):
        import vek._core
    import conformance_test

    assert conformance_test.vek.__file__.startswith(FOLDER), "another package was tested"
    conformance_test.take(sys.argv[3:], EACH)
    result: Any = unittest.main(conformance_test, argv=sys.argv[:1], exit=False).result
    vek._core.library.close()
    sys.exit(not result.wasSuccessful())
