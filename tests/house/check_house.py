#!/usr/bin/env python3
"""check_house.py ROOT - the rules of the house that no compiler checks; prints each breach as FILE: WHAT.

Includes point down, and to files of the project; there is no circle between files; what belongs to one operating
system stays in its own files; the component never sleeps; guards follow the path; no source outgrows 500 lines; README
shows the tested program.
"""
import re
import sys
from pathlib import Path

# From the ground up; a file belongs to the first pattern that fits, and may include its own floor and those below.
FLOORS = [
    ("platform", r"platform/"),
    ("component supports", r"component/(log_writer|text_helpers|file_helpers|trap|version)\."),
    ("transport", r"transport/"),
    ("component, archive and userdb", r"(component|archive|userdb)/"),
    ("automation", r"automation/"),
    ("tools", r"tools/"),
    ("tests, benchmarks and examples", r"(tests|bench|fuzz|examples)/"),
]
# Headers that the build makes from a file of the tree.
GENERATED = {
    "component/version.h": "component/version.h.in",
    "tools/devserver/schema.h": "tools/devserver/schema.h.in",
    "tools/oxaqry/user_schema.h": "tools/oxaqry/user_schema.h.in",
}
COMPONENT = re.compile(r"(platform|component|transport|archive|userdb|automation)/")
SYSTEM_FILE = re.compile(r"platform/\w+_(posix|windows)\.cpp$")
SYSTEM_MACRO = re.compile(r"^\s*#\s*(?:el)?if.*\b(_WIN32|_WIN64|__linux__|__unix__|__APPLE__)\b", re.M)
SYSTEM_HEADER = re.compile(
    r"^\s*#\s*include <((?:sys/|netinet/|arpa/)\w+\.h|(?:unistd|poll|netdb|fcntl|dlfcn|pthread|dirent|windows|winsock2)\.h)>",
    re.M)
SLEEP = re.compile(r"\b(sleep_for|sleep_until|usleep|nanosleep|sleep|Sleep)\s*\(")
INCLUDE = re.compile(r'^\s*#\s*include "([^"]+)"', re.M)
LONGEST_SOURCE = 500


def floor_of(path):
    for floor, (_, pattern) in enumerate(FLOORS):
        if re.match(pattern, path):
            return floor
    return None


def check_includes(path, includes, sources, root):
    for target in includes:
        if target not in sources and not (target in GENERATED and (root / GENERATED[target]).is_file()):
            yield f'includes "{target}", which is no file of the project'
        elif floor_of(target) > floor_of(path):
            yield f'includes "{target}" upwards: {FLOORS[floor_of(path)][0]} may not know {FLOORS[floor_of(target)][0]}'


def find_circle(graph):
    """The files of one circle of includes, or nothing."""
    done, trail = set(), []

    def visit(path):
        if path in trail:
            return trail[trail.index(path):] + [path]
        if path in done:
            return []
        trail.append(path)
        for target in graph.get(path, []):
            if circle := visit(target):
                return circle
        done.add(trail.pop())
        return []

    for start in graph:
        if circle := visit(start):
            return circle
    return []


def check_source(path, text):
    if not SYSTEM_FILE.match(path):
        for found in SYSTEM_MACRO.finditer(text):
            yield f"asks for {found[1]}; only platform/*_posix.cpp and *_windows.cpp may"
    if COMPONENT.match(path) and not SYSTEM_FILE.match(path):
        for found in SYSTEM_HEADER.finditer(text):
            yield f"includes <{found[1]}>; only platform/*_posix.cpp and *_windows.cpp may"
    if COMPONENT.match(path) and (found := SLEEP.search(text)):
        yield f"calls {found[1]}; the component waits in the event loop"
    if path.endswith(".h"):
        guard = "OXAQRYCLN_" + re.sub(r"\W", "_", path).upper() + "_"
        if f"#ifndef {guard}\n#define {guard}\n" not in text:
            yield f"has no guard {guard}"
    if (lines := text.count("\n")) > LONGEST_SOURCE:
        yield f"has {lines} lines, more than {LONGEST_SOURCE}"


def check_readme(root):
    readme, program = root / "README.md", root / "examples/first_query/main.cpp"
    if program.is_file() and f"```cpp\n{program.read_text()}```\n" not in readme.read_text():
        yield "README.md: its first program is not examples/first_query/main.cpp"


def check(root):
    sources = {}
    for folder in sorted(path for path in root.iterdir() if path.is_dir()):
        if floor_of(folder.name + "/") is None:
            continue
        for file in sorted(folder.rglob("*")):
            if file.suffix in (".h", ".cpp"):
                sources[file.relative_to(root).as_posix()] = file.read_text(encoding="utf-8")
    if not sources:
        yield f"{root}: there is no source"
    graph = {path: INCLUDE.findall(text) for path, text in sources.items()}
    for path, text in sources.items():
        for breach in [*check_includes(path, graph[path], sources, root), *check_source(path, text)]:
            yield f"{path}: {breach}"
    if circle := find_circle(graph):
        yield "a circle of includes: " + " -> ".join(circle)
    yield from check_readme(root)


def main():
    breaches = list(check(Path(sys.argv[1] if len(sys.argv) > 1 else ".").resolve()))
    print("\n".join(breaches) or "the house is in order")
    return 1 if breaches else 0


if __name__ == "__main__":
    sys.exit(main())
