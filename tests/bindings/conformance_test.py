"""The Python package against what the library says of the same messages: conformance_test.py CONFORMANCE LOG VEKMSG"""

from __future__ import annotations

import io
import json
import random
import subprocess
import sys
import tempfile
import unittest
from typing import Any, Dict, List

import vek
from vek._core import bytes_said

CASES: List[Dict[str, Any]] = []
LOG = VEKMSG = ""
EACH = 1  # of so many cases


def values(record: Any, keys: Dict[str, Any]) -> None:
    """Every value that the library read stands in the object, as a type of its own."""
    for key, expected in keys.items():
        found = getattr(record, {"INT": "int_"}.get(key, key.lower()))
        counts = isinstance(getattr(type(record), key.lower(), None), property)
        if counts:
            continue
        same(found, expected)


def same(found: Any, expected: Any) -> None:
    if isinstance(expected, dict):
        values(found, expected)
    elif isinstance(expected, list):
        if isinstance(found, str):
            return  # the codes of a 16-bit text that is no sound one
        assert len(found) == len(expected), (found, expected)
        for one, other in zip(found, expected):
            same(one, other)
    elif isinstance(found, vek.Word):
        assert found.word == expected, (found, expected)
    elif isinstance(found, float):
        assert found == float(expected) or expected == "nan", (found, expected)
    else:
        assert found == expected and type(found) is type(expected), (found, expected)


class Conformance(unittest.TestCase):
    def test_messages(self) -> None:
        refused = 0
        for case in CASES:
            with self.subTest(case):
                if case["group"] == "default":
                    made = vek.MESSAGES[case["id"]](sequence=1)
                    self.assertEqual(str(made), case["again"])
                    continue
                source = bytes_said(case["source"])
                problems = case.get("problems", [])
                message = vek.parse(source, damaged=True)
                record = message.RECORD
                self.assertEqual([one.code for one in message.problems], [one["code"] for one in problems])
                self.assertEqual([str(one.remedy) for one in vek.check(source)], [one["suggestion"] for one in problems])
                values(message, case[record])
                self.assertEqual((message.MESSAGE_ID, message.echo, message.sequence),
                                 (case["id"], case["echo"], case["seq"]))
                errors = [one for one in problems if one["severity"] == "error"]
                if errors:
                    refused += 1
                    with self.assertRaises(vek.MessageError) as wrong:
                        vek.parse(source)
                    self.assertEqual((wrong.exception.path, wrong.exception.place, wrong.exception.remedy),
                                     (errors[0]["path"], (errors[0]["start"], errors[0]["end"]), errors[0]["suggestion"]))
                if case["again"] is not None:
                    message.sequence += 1
                    again = bytes(message)
                    self.assertEqual(again, bytes_said(case["again"]))
                    self.assertEqual(vek.parse(again, damaged=True), message)
        self.assertGreater(refused, len(CASES) / 9)

    def test_refusals(self) -> None:
        job = vek.ExposeJob(punch_params=vek.PunchParams(active_systems=list(range(10))))
        self.assertIn("NUM_SYSTEMS=10;", str(job))
        for change, error, path in (
            (lambda: vek.FocusValue(focus_value="high"), TypeError, "FOCUS_VALUE"),
            (lambda: vek.FocusValue(focus_value=float("inf")), TypeError, "FOCUS_VALUE"),
            (lambda: vek.FocusValue(media_name=3), TypeError, "MEDIA_NAME"),
            (lambda: vek.FocusValue(media_name="\ud800"), TypeError, "MEDIA_NAME"),
            (lambda: vek.FocusValue("a\0b"), vek.MessageError, "MEDIA_NAME"),
            (lambda: vek.DeviceState(1 << 31), vek.MessageError, "DEVICE_STATE"),
            (lambda: vek.ExposeResolution(laser_intensity=40000), vek.MessageError, "LASER_INTENSITY"),
            (lambda: vek.Media(type=vek.Transport.SHEET), TypeError, "TYPE"),
            (lambda: vek.Media(type="mediaPlate_e"), TypeError, "TYPE: 'mediaPlate_e' is no MediaType; did you mean MediaType.PLATE?"),
            (lambda: vek.DeviceStatus(msgs=(one for one in "ab")), TypeError, "MSGS: <generator"),
            (lambda: vek.parse(None), TypeError, "str or bytes, not NoneType"),
            (lambda: vek.messages(None), TypeError, "not NoneType"),
            (lambda: vek.frame(b"", 4112), TypeError, "such as vek.FocusValue"),
            (lambda: vek.CassetteArray([vek.Cassette(), vek.Cassette(media_position=None)]), TypeError,
             "ARRAY_CASSETTE[1].MEDIA_POSITION"),
            (lambda: vek.DeviceStatus(msgs=["x"] * 11), vek.MessageError, "MSGS[10]"),
            (lambda: vek.DeviceStatus(msgs="text"), TypeError, "MSGS"),
            (lambda: vek.CylinderJob(device_media_name_id="x" * 256), vek.MessageError, "DEVICE_MEDIA_NAME_ID"),
            (lambda: vek.PunchSystem(w_unit_location=[1.0]), vek.MessageError, "NUM_OF_UNITS"),
        ):
            with self.assertRaises(error) as wrong:
                str(change())  # type: ignore[no-untyped-call]
            self.assertIn(path, str(wrong.exception))
            self.assertEqual(getattr(wrong.exception, "path", path), path)
        with self.assertRaises(AttributeError):
            vek.FocusValue().focus_valeu = 1.0  # type: ignore[attr-defined]
        with self.assertRaises(TypeError):
            next(vek.messages(io.StringIO("x")))  # type: ignore[arg-type]
        focus = bytearray(str(vek.FocusValue(focus_value=1.5)).encode())
        self.assertEqual([vek.parse(focus)], [one.message for one in vek.messages(memoryview(focus))])
        self.assertEqual(str(vek.JobPort("\U0001f600", 1)), "@@4194    59 -1 0 {JOB_NAME={-10179,-8704,0,};JOB_ID=1;}!!")

    def test_logs(self) -> None:
        """What `vekmsg json` finds in a log, however it is damaged and in whatever blocks it comes."""
        with open(LOG, "rb") as file:
            whole = file.read()
        draw = random.Random(1)
        for turn in range(60 // EACH):
            log = bytearray(whole)
            for _ in range(turn * 2):
                at = draw.randrange(len(log))
                log[at:at + draw.choice((0, 1, 1, 30))] = draw.choice((b"@@", b"\n", b"!!", b"}!!", b"\xff", b"{", b"@@41", b"7"))
            with tempfile.NamedTemporaryFile() as file:
                file.write(log)
                file.flush()
                told = subprocess.run([VEKMSG, "json", "--jobs", "1", file.name], stdout=subprocess.PIPE).stdout
                expected = [json.loads(line) for line in told.splitlines()]
                found = list(vek.messages(_Pieces(bytes(log), draw)))
                self.assertEqual([(one.line, one.offset, one.id, [each.code for each in one.problems]) for one in found],
                                 [(one["line"], one["offset"], one.get("id", 0), [each["code"] for each in one.get("problems", [])])
                                  for one in expected])
                self.assertEqual([one.before for one in found], [one.get("before", "") for one in expected])
                self.assertTrue(all(bytes(log[one.offset:]).startswith(one.source) for one in found))
        timed = list(vek.messages(LOG))
        self.assertTrue(all(one.time is not None for one in timed))
        try:
            import pandas  # noqa: F401
        except ImportError:
            return
        frame = vek.frame(LOG, vek.FocusValue)
        self.assertIn("focus_value", frame.columns)
        self.assertGreater(len(frame), 1)
        self.assertEqual(list(vek.frame(b"", vek.FocusValue).columns), list(frame.columns))


class _Pieces(io.RawIOBase):
    """A stream that gives what it has in pieces of any size."""

    def __init__(self, data: bytes, draw: random.Random) -> None:
        self.data, self.draw = data, draw

    def read(self, size: int = -1) -> bytes:
        size = self.draw.choice((1, 100, 5000))
        piece, self.data = self.data[:size], self.data[size:]
        return piece


def take(arguments: List[str], each: int) -> None:
    """What the tests are made with: CONFORMANCE LOG VEKMSG."""
    global CASES, EACH, LOG, VEKMSG
    path, LOG, VEKMSG = arguments
    EACH = each
    with open(path, encoding="utf-8") as lines:
        CASES = [json.loads(line) for line in lines]
    assert len(CASES) >= 2500
    CASES = CASES[::each]


if __name__ == "__main__":
    take(sys.argv[1:], 1)
    unittest.main(argv=sys.argv[:1])
