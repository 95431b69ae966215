"""What pyproject.toml cannot say: the version, which CMakeLists.txt sets, and the shared library that a wheel carries
when the environment variable OXAQRYCLN_LIBRARY names it."""
import os
import re
import shutil
from pathlib import Path

from setuptools import Distribution, setup
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


class BuiltDistribution(Distribution):
    """With the library it fits one system only."""

    def has_ext_modules(self):
        return bool(LIBRARY)


class AnyPythonWheel(bdist_wheel):
    def get_tag(self):
        return ("py3", "none", super().get_tag()[2])


setup(version=version(), distclass=BuiltDistribution,
      cmdclass={"build_py": BuildWithLibrary, "bdist_wheel": AnyPythonWheel})
