#!/usr/bin/env python3
"""scenario_test.py OXAQRY - plants faults in the scenario and expects run.py to say what is wrong."""
import copy
import json
import sys
import tempfile
import unittest
from pathlib import Path
from types import SimpleNamespace

import run
from scenario import FILE, read_scenario

PROGRAM = ""


class Description:
    """The first groups of the scenario, to be changed."""

    def __init__(self):
        self.json = json.loads(FILE.read_text(encoding="utf-8"))
        self.json["groups"] = copy.deepcopy(self.json["groups"][:2])
        self.json.update(files={}, log=self.json["log"][:1])

    def step(self, name, number=0):
        steps = [step for group in self.json["groups"] for step in group["steps"]]
        return [step for step in steps if step.get("call") == name][number]

    def differences(self, interface="session", program=None):
        with tempfile.TemporaryDirectory() as directory:
            file = Path(directory) / "scenario.json"
            file.write_text(json.dumps(self.json), encoding="utf-8")
            options = SimpleNamespace(interface=interface, program=program or PROGRAM, record=False, scenario=file)
            return run.run(read_scenario(file), options)


class PlantedFaults(unittest.TestCase):
    def test_nothing_is_wrong_without_a_fault(self):
        self.assertEqual(Description().differences(), [])

    def test_each_is_reported_with_its_step_and_what_differs(self):
        faults = [
            ("an expected value", lambda it: it.step("TELOGetChannelsNext", 1).update(result="Finanzen"),
             ['expected 037 TELOGetChannelsNext = String "Finanzen"', 'shown    037 TELOGetChannelsNext = String "Finance"']),
            ("an expected kind", lambda it: it.step("TELOGetChannelsInit", 1).update(result={"Integer": 4}),
             ["expected 035 TELOGetChannelsInit = Integer 4", "shown    035 TELOGetChannelsInit = Long 4"]),
            ("an expected output", lambda it: it.step("TELOGetAllArchivesExtNext").update(outputs=["Mail", ""]),
             ['shown    056 TELOGetAllArchivesExtNext = Long 2; String "Mail"; String "Incoming"']),
            ("a byte of an answer", lambda it: it.step("LiveCheck", 1).update(answer=["OXA server alivf"]),
             ['expected 032 LiveCheck = String "OXA server alive"', 'shown    032 LiveCheck = String "OXA server alivf"']),
            ("an answer's count", lambda it: it.step("LiveCheck", 1).update(
                answer={"lines": ["OXA server alive"], "announced": 99}), ["10054"]),
            ("an expected request", lambda it: it.step("LiveCheck", 1).update(request="^Livecheck^"),
             ["032 LiveCheck: the server received another request", "differ from position 35 on"]),
            ("the server", lambda it: it.step("LiveCheck", 1).update(print=True),
             ["032 LiveCheck: the request came to the wrong one of the two servers"]),
            ("a request too many", lambda it: it.step("TELOGetArchiveProperties", 3).pop("request") and it.step(
                "TELOGetArchiveProperties", 3).pop("answer"), ["a request that no step expects", "Nirgends"]),
            ("a request too few", lambda it: it.step("TELOGetAllArchivesExtNext", 3).update(request="^X^", answer=[]),
             ["063 TELOGetAllArchivesExtNext: the server received another request", "067 TELOGetArchiveProperties: its request never came"]),
            ("a file", lambda it: it.json["files"].update({"a.txt": "x"}), ["the blob directory has no file a.txt"]),
            ("the log", lambda it: it.json["log"].append("never logged"),
             ['the session\'s log does not hold "never logged"']),
        ]
        for name, plant, texts in faults:
            with self.subTest(name):
                description = Description()
                plant(description)
                report = "\n".join(description.differences())
                for text in texts:
                    self.assertIn(text, report)

    def test_a_program_that_ends_early_is_no_empty_transcript(self):
        self.assertIn("(exit status 1", "\n".join(Description().differences("cpp", "/bin/false")))
        self.assertIn("(exit status 1", "\n".join(Description().differences("session", "/bin/false")))
        self.assertIn("No such file", "\n".join(Description().differences("cpp", "/nowhere/scenario_cpp")))

    def test_an_impossible_step_is_refused(self):
        for name, change in [("left out", {"args": [None, "Orders"]}), ("by value", {"args": ["a", "b", "c"]}),
                             ("too many", {"args": ["a", "b", None, "d"]}), ("misspelt", {"results": 1})]:
            with self.subTest(name), self.assertRaises(ValueError):
                description = Description()
                description.step("TELOGetQueryFormatListInit").update(change)
                description.differences()


if __name__ == "__main__":
    PROGRAM = sys.argv.pop(1)
    unittest.main()
