"""From texts to messages."""

from __future__ import annotations

from typing import Any, Dict, List, Tuple

from . import _core
from ._messages import MESSAGES, REALS
from ._record import Message


def _with_reals(value: Any, is_real: bool = False) -> Any:
    """Reals that are infinite or have hundreds of digits come as texts."""
    if isinstance(value, dict):
        return {key: _with_reals(one, key in REALS) for key, one in value.items()}
    if isinstance(value, list):
        return [_with_reals(one, is_real) for one in value]
    return float(value) if is_real and isinstance(value, str) else value


def made(found: Dict[str, Any], problems: Tuple[_core.Problem, ...]) -> Message:
    """The message of what the library read."""
    of = MESSAGES.get(found.get("id", 0))
    if of is None:
        raise _core.MessageError(f"there is no class for messages of id {found.get('id', 'unknown')}", problems)
    body = found[of.RECORD]
    if "unbounded" in found:
        body = _with_reals(body)
    message = of._read(body.get)
    assert isinstance(message, Message)
    message.echo, message.sequence = found["echo"], found["seq"]
    message.problems = problems
    return message


def parse(text: _core.Text, *, damaged: bool = False) -> Message:
    """The message that a text is: str, or bytes.

    A MessageError when something is wrong with it, with its path, place and remedy; with `damaged`, the values are those
    that a host reads, and what is wrong is in the message's problems. Warnings never keep a message from being read.
    """
    found = _core.read(_core.as_bytes(text))
    if "problems" not in found:
        return made(found, ())
    problems = _core.problems_of(found)
    errors = tuple(one for one in problems if one.severity == "error")
    if errors and not damaged:
        more = "" if len(errors) == 1 else f" (and {len(errors) - 1} more)"
        raise _core.MessageError(str(errors[0]) + more, errors)
    return made(found, problems)


def check(text: _core.Text) -> List[_core.Problem]:
    """What is wrong with a text, in order of the places."""
    return list(_core.problems_of(_core.read(_core.as_bytes(text))))
