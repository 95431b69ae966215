"""What pyproject.toml cannot say: the version, which CMakeLists.txt sets, and the shared library that a wheel carries
when the environment variable OXAQRYCLN_LIBRARY names it."""
import os
import re
import shutil
from pathlib import Path

from setuptools import setup
from setuptools.command.build_py import build_py
from wheel.bdist_wheel import bdist_wheel

HERE = Path(__file__).resolve().parent
LIBRARY = os.environ.get("OXAQRYCLN_LIBRARY", "")


def version():
    """A source distribution has its own record."""
    for file, pattern in ((HERE / "PKG-INFO", r"^Version: (.+)$"),
                          (HERE.parent.parent / "CMakeLists.txt", r"^project\(oxaqrycln VERSION (\S+)")):
        if file.is_file() and (found := re.search(pattern, file.read_text(encoding="utf-8"), re.M)):
            return found[1]
    raise SystemExit("setup.py: neither PKG-INFO nor the CMakeLists.txt of the project is there")


class BuildWithLibrary(build_py):
    def run(self):
        super().run()
        if LIBRARY:
            shutil.copy(LIBRARY, Path(self.build_lib, "oxaqrycln", "liboxaqrycln.so.1"))


class PlatformWheel(bdist_wheel):
    """Fits any Python 3; with the library, the system that it was built for."""

    def finalize_options(self):
        super().finalize_options()
        self.root_is_pure = not LIBRARY

    def get_tag(self):
        tag = super().get_tag()
        return ("py3", "none", tag[2])


setup(version=version(), cmdclass={"build_py": BuildWithLibrary, "bdist_wheel": PlatformWheel})
