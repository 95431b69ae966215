"""The package as it is installed: the wheel, the shared library that it looks for, and its types."""
import os
import shutil
import subprocess
import tempfile
import unittest
import zipfile
from pathlib import Path

from support import LONGEST_RUN, PACKAGE, ROOT, run_program

VERSION = "import oxaqrycln; print(oxaqrycln.__version__)"


class PackageTest(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.directory = Path(directory.name)

    def check_version(self, run):
        self.assertEqual(run.stderr, "")
        self.assertRegex(run.stdout, r"^\d+\.\d+\.\d+$")

    def test_a_library_that_does_not_fit_is_named_with_what_is_wrong(self):
        other = os.environ["OTHER_LIBRARY"]
        for library, reasons in [
                (str(self.directory / "none.so"), ["none.so: ", "cannot open", "OXAQRYCLN_LIBRARY"]),
                ("", ["Tried: liboxaqrycln.so.1: "]),
                (other, [other, "version 2 of the C interface (component 9.1.0)", "needs version 1"]),
                ("libm.so.6", ["libm.so.6 is no library of oxaqrycln"])]:
            with self.subTest(library):
                error = run_program(VERSION, environment={"OXAQRYCLN_LIBRARY": library}).stderr
                for reason in ["LibraryError", *reasons]:
                    self.assertIn(reason, error.splitlines()[-1])

    def test_a_library_beside_the_package_is_found(self):
        shutil.copytree(PACKAGE / "oxaqrycln", self.directory / "oxaqrycln")
        shutil.copy(os.environ["OXAQRYCLN_LIBRARY"], self.directory / "oxaqrycln/liboxaqrycln.so.1")
        self.check_version(run_program(VERSION, environment={"OXAQRYCLN_LIBRARY": "", "PYTHONPATH": str(self.directory)}))

    def test_the_wheel_carries_the_library_and_fits_any_python(self):
        source = self.directory / "source/bindings/python"
        shutil.copytree(ROOT / "bindings/python", source, ignore=shutil.ignore_patterns("build", "dist", "*.egg-info"))
        shutil.copy(ROOT / "CMakeLists.txt", self.directory / "source")
        environment = {name: value for name, value in os.environ.items() if name != "LD_PRELOAD"}
        built = subprocess.run([os.environ["SYSTEM_PYTHON"], "-m", "build", "--no-isolation", "--outdir", self.directory,
                                source], env=environment, timeout=LONGEST_RUN, check=False, stdout=subprocess.PIPE,
                               stderr=subprocess.STDOUT, text=True)
        self.assertEqual(built.returncode, 0, built.stdout)
        wheel, = self.directory.glob("oxaqrycln-*-py3-none-linux_*.whl")
        with zipfile.ZipFile(wheel) as archive:
            names = archive.namelist()
            archive.extractall(self.directory / "site")
        for name in ("py.typed", "raw.pyi", "liboxaqrycln.so.1"):
            self.assertIn("oxaqrycln/" + name, names)
        self.check_version(run_program(VERSION, environment={"OXAQRYCLN_LIBRARY": "",
                                                             "PYTHONPATH": str(self.directory / "site")}))

    def test_package_and_examples_have_strict_types(self):
        environment = {name: value for name, value in os.environ.items() if name != "LD_PRELOAD"}
        run = subprocess.run(
            [os.environ["MYPY"], "--strict", "--python-version", "3.9", "--cache-dir", self.directory / "cache",
             PACKAGE / "oxaqrycln", *sorted((ROOT / "examples/python").glob("*.py"))],
            env={**environment, "MYPYPATH": str(PACKAGE)}, stdout=subprocess.PIPE, text=True, check=False, timeout=LONGEST_RUN)
        self.assertEqual(run.returncode, 0, run.stdout)


if __name__ == "__main__":
    unittest.main()
