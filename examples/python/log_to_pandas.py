"""The focus of a device over time: log_to_pandas.py LOG [PICTURE.png]. Needs pandas, and matplotlib for the picture."""

import sys

import vek

frame = vek.frame(sys.argv[1], vek.FocusValue)
print(frame[["time", "media_name", "focus_value"]].to_string(index=False))
print(frame.groupby("media_name")["focus_value"].describe().to_string())
if len(sys.argv) > 2:
    plot = frame.plot(x="time", y="focus_value", style="o-", title="Focus value")
    plot.figure.savefig(sys.argv[2])
