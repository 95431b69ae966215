#!/usr/bin/env python3
"""exports_test.py LIBRARY - the shared library exports the functions of oxaqrycln.h and nothing else, and those are the
recorded ones: a function that programs call is never taken away. Prints each difference."""
import re
import subprocess
import sys
from pathlib import Path

FOLDER = Path(__file__).resolve().parent
HEADER = FOLDER.parent.parent.parent / "automation/c/oxaqrycln.h"


def exported(library):
    lines = subprocess.run(["nm", "-D", "--defined-only", library], check=True, capture_output=True, text=True).stdout
    return {line.split()[-1].partition("@")[0] for line in lines.splitlines() if " A " not in line}


def main():
    recorded = set((FOLDER / "exports.txt").read_text(encoding="ascii").split())
    declared = set(re.findall(r"^OXAQRY_API .*?\b(oxaqry_\w+)\(", HEADER.read_text(encoding="ascii"), re.M))
    differences = 0
    for what, names in (("declared", declared), ("exported", exported(sys.argv[1]))):
        for name in sorted(names ^ recorded):
            print(f"{name} is " + (f"not {what}" if name in recorded else f"{what}, but not in exports.txt"))
            differences += 1
    return 1 if differences or not recorded else 0


if __name__ == "__main__":
    sys.exit(main())
