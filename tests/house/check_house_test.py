#!/usr/bin/env python3
"""Small trees with one fault each: the check has to name it, and to be silent about the sound tree."""
import tempfile
import unittest
from pathlib import Path

from check_house import check


def header(path, body=""):
    guard = "OXAQRYCLN_" + path.replace("/", "_").replace(".", "_").upper() + "_"
    return f"#ifndef {guard}\n#define {guard}\n{body}#endif\n"


SOUND = {
    "platform/a.h": header("platform/a.h"),
    "platform/socket_posix.cpp": '#include "platform/a.h"\n#include <poll.h>\n#ifdef _WIN32\n#endif\n',
    "component/trap.h": header("component/trap.h", '#include "platform/a.h"\n'),
    "transport/b.h": header("transport/b.h", '#include "component/trap.h"\n'),
    "component/clsQuery.h": header("component/clsQuery.h", '#include "transport/b.h"\n'),
    "tools/x/main.cpp": '#include "component/clsQuery.h"\n',
}

FAULTS = [
    ("upwards", "transport/c.cpp", '#include "component/clsQuery.h"\n', "transport/c.cpp: includes"),
    ("upwards from a support", "component/trap.cpp", '#include "transport/b.h"\n', "component/trap.cpp: includes"),
    ("component knows a tool", "component/c.cpp", '#include "tools/x/y.h"\n', "which is no file of the project"),
    ("not from the root", "platform/c.cpp", '#include "a.h"\n', "which is no file of the project"),
    ("circle", "platform/a.h", header("platform/a.h", '#include "platform/a.h"\n'), "a circle of includes: platform/a.h"),
    ("system macro", "platform/c.cpp", "#if defined(_WIN32)\n#endif\n", "platform/c.cpp: asks for _WIN32"),
    ("system macro after others", "tools/x/c.cpp", "#  elif 1 && __linux__\n", "tools/x/c.cpp: asks for __linux__"),
    ("system header", "transport/c.cpp", "#include <sys/socket.h>\n", "transport/c.cpp: includes <sys/socket.h>"),
    ("sleep", "transport/c.cpp", "std::this_thread::sleep_for(1s);\n", "transport/c.cpp: calls sleep_for"),
    ("guard", "transport/c.h", "#pragma once\n", "has no guard OXAQRYCLN_TRANSPORT_C_H_"),
    ("too long", "platform/c.cpp", "\n" * 501, "has 501 lines"),
    ("another first program", "examples/first_query/main.cpp", "int main() {}\n", "README.md: its first program"),
]


def breaches(files):
    with tempfile.TemporaryDirectory() as folder:
        for path, text in {"README.md": "# x\n", **files}.items():
            file = Path(folder) / path
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_text(text)
        return list(check(Path(folder)))


class CheckHouse(unittest.TestCase):
    def test_is_silent_about_a_sound_tree(self):
        self.assertEqual(breaches(SOUND), [])

    def test_names_each_fault(self):
        for name, path, text, expected in FAULTS:
            with self.subTest(name):
                found = breaches({**SOUND, path: text})
                self.assertEqual(len(found), 1, found)
                self.assertIn(expected, found[0])


if __name__ == "__main__":
    unittest.main()
