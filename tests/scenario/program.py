"""program.py - runs the program of an interface."""
import subprocess

LONGEST_RUN = 100  # seconds


class InterfaceFailed(Exception):
    """The interface gave no transcript; the text says why."""


def lines_of(command, given="", **settings):
    """The lines that a command prints in answer to its standard input, and at their end whether it failed."""
    try:
        done = subprocess.run(command, input=given.encode("utf-8"), stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                              timeout=LONGEST_RUN, check=False, **settings)
    except (OSError, subprocess.TimeoutExpired) as error:
        raise InterfaceFailed(f"{command[0]}: {error}") from error
    lines = done.stdout.decode("utf-8", "backslashreplace").replace("\r", "").split("\n")
    if lines[-1] == "":
        lines.pop()
    if done.returncode != 0:
        lines.append(f"(exit status {done.returncode}: {done.stderr.decode(errors='replace')[-2000:].strip()})")
    return lines
