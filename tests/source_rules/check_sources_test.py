#!/usr/bin/env python3
"""Small trees with one fault each: the check has to report it, and nothing for the sound tree."""
import tempfile
import unittest
from pathlib import Path

from check_sources import check


def header(path, body=""):
    guard = "OXAQRYCLN_" + path.replace("/", "_").replace(".", "_").upper() + "_"
    return f"#ifndef {guard}\n#define {guard}\n{body}#endif\n"


SOUND = {
    "values/CMakeLists.txt": "oxaqrycln_layer(values)\n",
    "values/a.h": header("values/a.h"),
    "platform/net/CMakeLists.txt": "oxaqrycln_layer(platform/net SOURCES x_posix.cpp NEEDS values)  # NEEDS tools/x\n",
    "platform/net/x_posix.cpp": '#include "values/a.h"\n#include <poll.h>\n#ifdef _WIN32\n#endif\n',
    "component/CMakeLists.txt": "oxaqrycln_layer(component\n  SOURCES\n  NEEDS platform/net values)\n",
    "component/version.h.in": "",
    "component/clsQuery.h": header("component/clsQuery.h", '#include "values/a.h"\n'),
    "component/watch.h": header("component/watch.h", '#include "component/version.h"\n'),
    "component/state.h": header("component/state.h"),
    "cmake/Install.cmake": "set(public_headers\n  component/clsQuery.h)\n",
    "tools/x/CMakeLists.txt": "oxaqrycln_layer(tools/x OF x SOURCES NEEDS public component/watch.h)\n",
    "tools/x/main.cpp": '#include "component/clsQuery.h"\n#include "component/watch.h"\n',
    "tests/a_test.cpp": '#include "component/state.h"\n',
}

FAULTS = [
    ("not in NEEDS", "values/a.h", header("values/a.h", '#include "component/state.h"\n'), 'includes "component/state.h", which is not in the NEEDS of values'),
    ("internal header", "tools/x/main.cpp", '#include "component/state.h"\n', "which is not in the NEEDS of tools/x"),
    ("no such file", "tools/x/main.cpp", '#include "tools/x/y.h"\n', "which is no file of the project"),
    ("not from the root", "tools/x/main.cpp", '#include "a.h"\n', "which is no file of the project"),
    ("no layer", "tools/y/main.cpp", '#include "values/a.h"\n', "is in no layer"),
    ("cycle of includes", "values/a.h", header("values/a.h", '#include "values/a.h"\n'), "a cycle of includes: values/a.h"),
    ("cycle of layers", "values/CMakeLists.txt", "oxaqrycln_layer(values NEEDS component)\n", "a cycle of layers: "),
    ("unlisted source", "values/b.cpp", "", "values/b.cpp: is in no SOURCES list"),
    ("missing source", "values/CMakeLists.txt", "oxaqrycln_layer(values SOURCES b.cpp)\n", "lists b.cpp, which does not exist"),
    ("unknown need", "values/CMakeLists.txt", "oxaqrycln_layer(values NEEDS other)\n", "needs other, which is no layer"),
    ("system macro", "values/a.h", header("values/a.h", "#  elif 1 && __linux__\n"), "values/a.h: asks for __linux__"),
    ("system header", "values/a.h", header("values/a.h", "#include <sys/socket.h>\n"), "includes <sys/socket.h>"),
    ("sleep", "values/a.h", header("values/a.h", "std::this_thread::sleep_for(1s);\n"), "values/a.h: calls sleep_for"),
    ("windows macro", "values/a.h", header("values/a.h", "void DeleteFile();\n"), "values/a.h: uses DeleteFile"),
    ("guard", "values/a.h", "#pragma once\n", "has no guard OXAQRYCLN_VALUES_A_H_"),
    ("too long", "tests/a_test.cpp", "\n" * 501, "has 501 lines"),
    ("another first program", "examples/first_query/main.cpp", "int main() {}\n", "README.md: its first program"),
]


def breaches(files):
    with tempfile.TemporaryDirectory() as folder:
        for path, text in {"README.md": "# x\n", **files}.items():
            file = Path(folder) / path
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_text(text)
        return list(check(Path(folder)))


class CheckSources(unittest.TestCase):
    def test_reports_nothing_for_a_sound_tree(self):
        self.assertEqual(breaches(SOUND), [])

    def test_reports_each_fault(self):
        for name, path, text, expected in FAULTS:
            with self.subTest(name):
                found = breaches({**SOUND, path: text})
                self.assertEqual(len(found), 1, found)
                self.assertIn(expected, found[0])


if __name__ == "__main__":
    unittest.main()
