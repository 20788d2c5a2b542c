"""The wheel of one platform, with its library inside: VEK_PLATFORM is linux_x86_64, win32 or win_amd64."""

import os
import pathlib
import re

from setuptools import Distribution, setup
from wheel.bdist_wheel import bdist_wheel

SOURCE = pathlib.Path("vek/_messages.py").read_text(encoding="utf-8")
VERSION = re.search(r'^VERSION = "(.*)"$', SOURCE, re.MULTILINE)
assert VERSION is not None


class PlatformWheel(bdist_wheel):
    """For any Python 3, on one platform."""

    def get_tag(self):
        return "py3", "none", os.environ["VEK_PLATFORM"]


class Inside(Distribution):
    """With a library inside: it goes where a platform's packages go."""

    def has_ext_modules(self):
        return True


setup(
    name="vekparams2ascii",
    version=VERSION[1],
    description="Messages of laser exposure devices: read, written, checked, found in logs",
    packages=["vek"],
    package_data={"vek": ["py.typed", "*.so", "*.dll", "NOTICES", "copyright", "*.spdx.json"]},
    python_requires=">=3.9",
    cmdclass={"bdist_wheel": PlatformWheel},
    distclass=Inside,
)
