"""Messages of laser exposure devices: read, written, checked, and found in logs.

    >>> import vek
    >>> message = vek.parse("@@4112    44 7 41 {FOCUS_VALUE=1.500000;}!!")
    >>> message.focus_value += 1
    >>> print(message)
    @@4112    44 7 41 {FOCUS_VALUE=2.500000;}!!

Bytes of a value that are no UTF-8 are the characters U+EF80 to U+EFFF.
"""

from ._core import MessageError as MessageError, Problem as Problem
from ._log import LogMessage as LogMessage, frame as frame, messages as messages
from ._messages import *  # noqa: F403
from ._messages import VERSION as __version__  # noqa: F401
from ._parse import check as check, parse as parse
from ._record import Message as Message, Record as Record, Word as Word
