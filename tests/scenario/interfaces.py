"""interfaces.py - the interfaces that the scenario runs through. A new one is a function that returns the transcript's
lines, and an entry in INTERFACES."""
import os
import shutil
import subprocess
from dataclasses import dataclass
from pathlib import Path
from typing import Callable

from session_client import run_session
from vbscript import SENTINEL, script

LONGEST_RUN = 100  # seconds


class InterfaceFailed(Exception):
    """The interface gave no transcript; the text says why."""


@dataclass
class Interface:
    run: Callable  # (environment, options) -> lines
    without: tuple = ()  # what it lacks of what groups need
    path: Callable = str  # a file's path as the interface takes it


def output_of(command, **settings):
    """The lines that a command prints, and whether it ended well."""
    try:
        done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=LONGEST_RUN, check=False,
                              stdin=subprocess.DEVNULL, **settings)
    except (OSError, subprocess.TimeoutExpired) as error:
        raise InterfaceFailed(f"{command[0]}: {error}") from error
    lines = done.stdout.decode("ascii", "backslashreplace").replace("\r", "").splitlines()
    if done.returncode != 0:
        lines.append(f"(exit status {done.returncode}: {done.stderr.decode(errors='replace')[-2000:].strip()})")
    return lines


def run_cpp(environment, options):
    return output_of([options.program, *(f"{name}={text}" for name, text in environment.texts.items())])


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
    registered = output_of(["wine", "regsvr32", "/s", windows_path(Path(options.dll).resolve())], **settings)
    if registered:
        raise InterfaceFailed(f"the server could not be registered: {' '.join(registered)}")
    (environment.directory / "scenario.vbs").write_bytes(script(environment).encode("ascii"))
    lines = output_of(["wine", "cscript", "/nologo", "scenario.vbs"], **settings)
    if lines[-1:] != [SENTINEL]:
        return [*lines, "(the script ended before its last line; an error in the next step, or in the whole script)"]
    return lines[:-1]


INTERFACES = {
    "cpp": Interface(run_cpp),
    "session": Interface(run_session),
    # Under Wine there is no ODBC driver for SQLite, and objects of VBScript do not answer IDispatch::Invoke.
    "com": Interface(run_com, without=("database", "page"), path=windows_path),
}
