#!/usr/bin/env python3
"""run.py - runs the scenario through one interface and compares its transcript with the expected one.

    run.py --interface cpp --program build/debug/tests/scenario/scenario_cpp
    run.py --interface c --program build/debug/tests/scenario/scenario_c
    run.py --interface session --program build/debug/tools/oxaqry/oxaqry
    OXAQRYCLN_LIBRARY=build/debug/liboxaqrycln.so.1 run.py --interface php
    run.py --interface python --program build/debug/liboxaqrycln.so.1
    run.py --interface com --wine-prefix DIR --dll OXAQryCln.dll

Prints the first line that differs and what the server found wrong; the exit status is 0 if there is no difference.
"""
import argparse
import shutil
import sqlite3
import sys
import tempfile
from pathlib import Path

from canned_server import CannedServer
from interfaces import INTERFACES
from program import InterfaceFailed
from scenario import FILE, ROOT, bytes_of, comparable, escaped, read_scenario, text_of, write_scenario


class Environment:
    """What a run provides: its directories, the server, the database, and the texts that stand for them."""

    def __init__(self, scenario, interface, record=False):
        self.directory = Path(tempfile.mkdtemp(prefix="scenario-"))
        self.blobs, self.logs = self.directory / "blobs", self.directory / "logs"
        self.blobs.mkdir()
        self.logs.mkdir()
        self.scenario, self.without = scenario, interface.without
        self.steps = scenario.steps(self.without)
        self.texts = {"blobs": interface.path(self.blobs), "logs": interface.path(self.logs)}
        self.texts["database"] = f"Driver={{SQLite3}};Database={self.make_database(scenario)}"
        self.server = CannedServer(scenario, self.steps, self.blobs, record)
        self.texts["port"], self.texts["printPort"] = map(str, self.server.ports)

    def make_database(self, scenario):
        file = self.directory / "users.sqlite"
        database = sqlite3.connect(file)
        database.execute("PRAGMA synchronous = OFF")
        for name in ("schema.sql", "sample.sql"):
            database.executescript((ROOT / "userdb" / name).read_text(encoding="utf-8"))
        for statement in scenario.json["users"]:
            database.execute(statement)
        database.commit()
        database.close()
        return file

    def filled(self, text):
        for name, value in self.texts.items():
            text = text.replace("{" + name + "}", value)
        return text

    def remove(self):
        shutil.rmtree(self.directory)


def transcript_difference(expected, shown):
    """The first line that differs, with a mark below the place; nothing if there is none."""
    for number in range(max(len(expected), len(shown))):
        want = expected[number] if number < len(expected) else "(no further line)"
        have = shown[number] if number < len(shown) else "(the transcript ends here)"
        if want != have:
            at = next((at for at, pair in enumerate(zip(want, have)) if pair[0] != pair[1]), min(len(want), len(have)))
            return [f"line {number + 1} of the transcript differs:\n  expected {want}\n  shown    {have}\n"
                    f"           {' ' * at}^"]
    return []


def file_differences(expected, directory):
    """How the files of the blob directory differ from those expected at the end."""
    there = {file.name: file.read_bytes() if file.is_file() else b"" for file in directory.iterdir()}
    for name in sorted({*expected, *there}):
        if name not in there:
            yield f"the blob directory has no file {name}"
        elif name not in expected:
            yield f"the blob directory has an unexpected file {name}: {escaped(there[name])}"
        elif bytes_of(expected[name]) != there[name]:
            yield (f"the file {name} differs:\n  expected {escaped(bytes_of(expected[name]))}\n"
                   f"  there is {escaped(there[name])}")


def log_differences(expected, directory):
    """Which of the texts the log of the session does not hold, in their order."""
    log = (directory / "S1.log").read_bytes() if (directory / "S1.log").is_file() else b""
    at = 0
    for text in expected:
        found = log.find(bytes_of(text), at)
        if found < 0:
            yield f"the session's log does not hold {escaped(bytes_of(text))}" + (" at its place" if at else "")
        at = max(at, found)


def record_files(scenario, directory):
    there = {file.name: text_of(file.read_bytes()) for file in sorted(directory.iterdir())}
    for json_group in scenario.json["groups"]:
        for name in json_group.get("files", {}):
            json_group["files"][name] = there.pop(name)
    scenario.json["files"] = there


def run(scenario, options):
    """What is wrong: texts that each say one difference."""
    interface = INTERFACES[options.interface]
    environment = Environment(scenario, interface, options.record)
    try:
        try:
            shown = interface.run(environment, options)
        except InterfaceFailed as error:
            return [str(error)]
        finally:
            environment.server.close()
        if options.record:
            record_files(scenario, environment.blobs)
            write_scenario(scenario, options.scenario)
            return []
        expected = comparable(scenario.transcript(environment.without), environment.steps)
        return [*transcript_difference(expected, comparable(shown, environment.steps)), *environment.server.differences,
                *file_differences(scenario.files(environment.without), environment.blobs),
                *log_differences(scenario.json["log"], environment.logs)]
    finally:
        environment.remove()


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--interface", required=True, choices=sorted(INTERFACES))
    parser.add_argument("--program", help="the program of the interface")
    parser.add_argument("--wine-prefix", help="com: the Wine prefix to run in")
    parser.add_argument("--dll", help="com: the automation server, which is registered in the prefix")
    parser.add_argument("--scenario", default=FILE, help="another description than scenario.json")
    parser.add_argument("--record", action="store_true",
                        help="session: write what is shown into the description instead of comparing; to be read then")
    options = parser.parse_args()
    if options.record and options.interface != "session":
        parser.error("--record is for the session")
    scenario = read_scenario(options.scenario)
    differences = run(scenario, options)
    print("\n".join(differences) or f"{options.interface}: {len(scenario.steps(INTERFACES[options.interface].without))} "
          "steps, no difference")
    return 1 if differences else 0


if __name__ == "__main__":
    sys.exit(main())
