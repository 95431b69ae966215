#!/usr/bin/env python3
"""Reads the description of the component's interface and generates the requested files from it:

    automation/describe_interface.py [--record] [--cpp FILE] [--markdown FILE] [--man FILE] [--idl FILE]
                                     [--php FILE] [--ffi FILE] [--python FILE]

    --record         record the next free number for each member without one, in automation/interface_numbers.txt
    --cpp FILE       write the method table that the build compiles
    --markdown FILE  write docs/methods.md
    --man FILE       write docs/oxaqrycln.3
    --idl FILE       write the source of the type library that the build for Windows compiles
    --php FILE       write bindings/php/src/Raw/Query.php
    --ffi FILE       write bindings/php/oxaqrycln.ffi, the declarations of automation/c/oxaqrycln.h
    --python FILE    write bindings/python/src/oxaqrycln/raw.pyi

Without an option it only checks the description. An error is one line "FILE:LINE: what is wrong; what is expected".

interface_header.py reads component/clsQuery.h and defines the data, interface_outputs.py and php_outputs.py
generate the texts. A program that generates another text from the data imports load().
"""
import argparse
import re
import sys
from pathlib import Path

import interface_outputs
import php_outputs
from interface_header import HEADER, DescriptionError, read_header

ROOT = Path(__file__).resolve().parent.parent
NUMBERS = "automation/interface_numbers.txt"
RECORD_COMMAND = "automation/describe_interface.py --record"
OUTPUTS = {**interface_outputs.OUTPUTS, **php_outputs.OUTPUTS}


def read_header_file():
    return (ROOT / HEADER).read_text(encoding="utf-8")


def read_numbers_file():
    """The content of the file; empty if it does not exist yet."""
    return (ROOT / NUMBERS).read_text(encoding="utf-8") if (ROOT / NUMBERS).exists() else ""


def read_numbers(text):
    """The recorded names in the order of their numbers, from 1. Each line is "NUMBER NAME"."""
    names = []
    for line, content in enumerate(text.splitlines(), 1):
        found = re.fullmatch(r"(\d+) (\w+)", content)
        if not found:
            raise DescriptionError(f'{NUMBERS}:{line}: not a record; expected "{line} NAME"')
        if int(found[1]) != line:
            raise DescriptionError(f"{NUMBERS}:{line}: {found[2]} has the number {found[1]}; expected {line}: a recorded "
                                   "number is never changed, removed or assigned twice")
        if found[2].lower() in (name.lower() for name in names):
            raise DescriptionError(f"{NUMBERS}:{line}: {found[2]} is recorded twice; expected one number for each member")
        names.append(found[2])
    return names


def set_numbers(interface, recorded):
    """Sets the number of each recorded member; returns the members without one."""
    members = {member.name: member for member in interface.members()}
    for number, name in enumerate(recorded, 1):
        if name not in members:
            raise DescriptionError(f"{NUMBERS}:{number}: {HEADER} declares no {name}; expected every recorded member, "
                                   "since programs call members by their numbers")
        members[name].number = number
    return [member for member in interface.members() if member.number == 0]


def load(header_text=None, numbers_text=None):
    """The checked Interface; by default of the source tree."""
    interface = read_header(header_text or read_header_file())
    numbers = read_numbers_file() if numbers_text is None else numbers_text
    for member in set_numbers(interface, read_numbers(numbers)):
        raise DescriptionError(f"{HEADER}:{member.line}: {member.name} has no number; expected a line in {NUMBERS}, "
                               f'which "{RECORD_COMMAND}" adds')
    return interface


def with_records(header_text, numbers_text):
    """The text of the numbers file with the numbers of new members added."""
    recorded = read_numbers(numbers_text)
    new = set_numbers(read_header(header_text), recorded)
    return "".join(f"{number} {name}\n" for number, name in enumerate([*recorded, *(each.name for each in new)], 1))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter,
                                     usage=argparse.SUPPRESS)
    parser.add_argument("--record", action="store_true", help=argparse.SUPPRESS)
    for name in OUTPUTS:
        parser.add_argument("--" + name, metavar="FILE", type=Path, help=argparse.SUPPRESS)
    arguments = parser.parse_args()
    try:
        if arguments.record:
            (ROOT / NUMBERS).write_text(with_records(read_header_file(), read_numbers_file()), encoding="utf-8")
        interface = load()
    except DescriptionError as error:
        sys.exit(str(error))
    for name, make in OUTPUTS.items():
        if file := getattr(arguments, name):
            file.write_text(make(interface), encoding="utf-8")


if __name__ == "__main__":
    main()
