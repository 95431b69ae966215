"""interfaces.py - the interfaces that the scenario runs through. A new one is a function that returns the transcript's
lines, and an entry in INTERFACES."""
import os
import shutil
from dataclasses import dataclass
from pathlib import Path
from typing import Callable

import php_program
from program import InterfaceFailed, lines_of
from python_client import run_python
from session_client import run_session
from vbscript import SENTINEL, script


@dataclass
class Interface:
    run: Callable  # (environment, options) -> lines
    without: tuple = ()  # what it lacks of what groups need
    path: Callable = str  # a file's path as the interface takes it


def run_program(environment, options):
    return lines_of([options.program, *(f"{name}={text}" for name, text in environment.texts.items())])


def windows_path(path):
    return "Z:" + str(path).replace("/", "\\")


def run_com(environment, options):
    """Runs a VBScript in the script host of Wine, which exits with 0 and prints nothing on an error of the script."""
    if not (options.wine_prefix and options.dll):
        raise InterfaceFailed("com needs --wine-prefix and --dll")
    settings = {"env": {**os.environ, "WINEPREFIX": str(Path(options.wine_prefix).resolve()), "WINEDEBUG": "-all",
                        "WINEDLLOVERRIDES": "mscoree,mshtml="}, "cwd": environment.directory}
    if not shutil.which("wine"):
        raise InterfaceFailed("com needs wine")
    registered = lines_of(["wine", "regsvr32", "/s", windows_path(Path(options.dll).resolve())], **settings)
    if registered:
        raise InterfaceFailed(f"the server could not be registered: {' '.join(registered)}")
    (environment.directory / "scenario.vbs").write_bytes(script(environment).encode("ascii"))
    lines = lines_of(["wine", "cscript", "/nologo", "scenario.vbs"], **settings)
    if lines[-1:] != [SENTINEL]:
        return [*lines, "(the script ended before its last line; an error in the next step, or in the whole script)"]
    return lines[:-1]


def run_php(environment, options):
    """Needs the shared library in the environment variable OXAQRYCLN_LIBRARY, unless it is installed."""
    file = environment.directory / "scenario.php"
    file.write_text(php_program.program(environment), encoding="ascii")
    return lines_of([options.program or "php", file])


INTERFACES = {
    "cpp": Interface(run_program),
    "c": Interface(run_program),
    "session": Interface(run_session),
    "php": Interface(run_php),
    "python": Interface(run_python),
    # Under Wine 8 an object of a VBScript class, which a page would be, answers IDispatch::Invoke with E_NOTIMPL.
    "com": Interface(run_com, without=("page",), path=windows_path),
}
