"""Reads a message, changes it, and prints it."""

import vek

message = vek.parse("@@4112    80 7 41 {MEDIA_NAME=Northlight violet 0.3;FOCUS_VALUE=1024.500000;}!!")
assert isinstance(message, vek.FocusValue)
message.focus_value += 0.25
print(message)
