#!/usr/bin/env python3
"""check_sources.py ROOT - the rules for sources that no compiler checks; prints each breach as FILE: WHAT.

A file includes only what the NEEDS list of its layer allows (see oxaqrycln_layer() in cmake/CompilerFlags.cmake), and
includes form no cycle; every listed source exists and every source is listed; code for one operating system stays in
*_posix.cpp, *_windows.cpp and automation/com/; the component never sleeps; no identifier is a macro of <windows.h>; guards follow the
path; no source is longer than 500 lines; README shows the tested program.
"""
import re
import sys
from pathlib import Path

LAYER = re.compile(r"^oxaqrycln_layer\(\s*([^)]*)\)", re.M)
PUBLIC = re.compile(r"set\(public_headers\s+([^)]*)\)")
# Test code may include everything.
UNLAYERED = re.compile(r"(tests|bench|fuzz|examples)/")
COMPONENT = re.compile(r"(values|platform|support|transport|component|archive|userdb|automation)/")
SYSTEM_FILE = re.compile(r"[\w/]+_(posix|windows)\.cpp$|automation/com/")
SYSTEM_MACRO = re.compile(r"^\s*#\s*(?:el)?if.*\b(_WIN32|_WIN64|__linux__|__unix__|__APPLE__)\b", re.M)
SYSTEM_HEADER = re.compile(
    r"^\s*#\s*include <((?:sys/|netinet/|arpa/)\w+\.h|(?:unistd|poll|netdb|fcntl|dlfcn|pthread|dirent|windows|winsock2)\.h)>",
    re.M)
WINDOWS_MACRO = re.compile(
    r"\b(Yield|DeleteFile|RemoveDirectory|CreateFile|CopyFile|MoveFile|GetObject|GetMessage|SendMessage|PostMessage|"
    r"CreateDirectory|GetCurrentTime|LoadString|FormatMessage)\(")
SLEEP = re.compile(r"\b(sleep_for|sleep_until|usleep|nanosleep|sleep|Sleep)\s*\(")
INCLUDE = re.compile(r'^\s*#\s*include "([^"]+)"', re.M)
LONGEST_SOURCE = 500
KEYWORDS = ("OF", "SOURCES", "NEEDS")


def read_layers(root):
    """The folder of each layer, with its sources and needs as written; and the headers that are installed."""
    layers, public = {}, set()
    for file in [root / "CMakeLists.txt", *sorted(root.glob("*/**/CMakeLists.txt")), *sorted(root.glob("cmake/*.cmake"))]:
        if "build" in file.relative_to(root).parts or not file.is_file():
            continue
        text = re.sub(r"#.*", "", file.read_text(encoding="utf-8"))
        for match in LAYER.finditer(text):
            lists, key = {"FOLDER": []}, "FOLDER"
            for word in match[1].split():
                if word in KEYWORDS:
                    key = word
                lists.setdefault(key, []).extend([] if word in KEYWORDS else [word])
            sources = [source for source in lists.get("SOURCES", []) if not source.startswith("$")]
            layers[lists["FOLDER"][0]] = (sources, lists.get("NEEDS", []))
        for match in PUBLIC.finditer(text):
            public.update(match[1].split())
    return layers, public


def folder_of(path):
    return path.rpartition("/")[0]


def check_layers(layers, sources, generated):
    """Layers form no cycle, and list the sources of their folders."""
    for folder, (listed, needs) in layers.items():
        for source in listed:
            if f"{folder}/{source}" not in sources:
                yield f"{folder}/CMakeLists.txt: lists {source}, which does not exist"
        there = {path for path in sources if path.endswith(".cpp") and folder_of(path) == folder}
        for path in sorted(there - {f"{folder}/{source}" for source in listed}):
            if not path.endswith("/main.cpp"):
                yield f"{path}: is in no SOURCES list"
        for need in needs:
            if need != "public" and need not in layers and need not in sources and need not in generated:
                yield f"{folder}/CMakeLists.txt: needs {need}, which is no layer and no header"
    if cycle := find_cycle({folder: needs for folder, (_, needs) in layers.items()}):
        yield "a cycle of layers: " + " -> ".join(cycle)


def check_includes(path, includes, sources, generated, layers, public):
    folder = folder_of(path)
    for target in includes:
        if target not in sources and target not in generated:
            yield f'includes "{target}", which is no file of the project'
        elif UNLAYERED.match(path) or folder_of(target) == folder:
            continue
        elif folder not in layers:
            yield f"is in no layer, but includes \"{target}\""
        else:
            needs = layers[folder][1]
            allowed = target in needs or folder_of(target) in needs or ("public" in needs and target in public)
            if not allowed:
                yield f'includes "{target}", which is not in the NEEDS of {folder}'


def find_cycle(graph):
    """The nodes of one cycle, or nothing."""
    done, trail = set(), []

    def visit(node):
        if node in trail:
            return trail[trail.index(node):] + [node]
        if node in done:
            return []
        trail.append(node)
        for target in graph.get(node, []):
            if cycle := visit(target):
                return cycle
        done.add(trail.pop())
        return []

    for start in graph:
        if cycle := visit(start):
            return cycle
    return []


def check_source(path, text):
    if not SYSTEM_FILE.match(path):
        for found in SYSTEM_MACRO.finditer(text):
            yield f"asks for {found[1]}; only *_posix.cpp and *_windows.cpp may"
    if COMPONENT.match(path) and not SYSTEM_FILE.match(path):
        for found in SYSTEM_HEADER.finditer(text):
            yield f"includes <{found[1]}>; only *_posix.cpp, *_windows.cpp and automation/com/ may"
    if COMPONENT.match(path):
        if found := SLEEP.search(text):
            yield f"calls {found[1]}; the component waits in the event loop"
        if not path.endswith("_windows.cpp") and (found := WINDOWS_MACRO.search(text)):
            yield f"uses {found[1]}, which <windows.h> defines as a macro"
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
    layers, public = read_layers(root)
    tops = {folder.partition("/")[0] for folder in layers} | {"tests", "bench", "fuzz", "examples"}
    sources, generated = {}, set()
    for top in sorted(tops):
        for file in sorted((root / top).rglob("*")):
            path = file.relative_to(root).as_posix()
            if file.suffix in (".h", ".cpp"):
                sources[path] = file.read_text(encoding="utf-8")
            elif path.endswith(".h.in"):
                generated.add(path[:-3])
    if not sources:
        yield f"{root}: there is no source"
    yield from check_layers(layers, sources, generated)
    graph = {path: INCLUDE.findall(text) for path, text in sources.items()}
    for path, text in sources.items():
        breaches = [*check_includes(path, graph[path], sources, generated, layers, public), *check_source(path, text)]
        for breach in breaches:
            yield f"{path}: {breach}"
    if cycle := find_cycle(graph):
        yield "a cycle of includes: " + " -> ".join(cycle)
    yield from check_readme(root)


def main():
    breaches = list(check(Path(sys.argv[1] if len(sys.argv) > 1 else ".").resolve()))
    print("\n".join(breaches) or "every source follows the rules")
    return 1 if breaches else 0


if __name__ == "__main__":
    sys.exit(main())
