"""scenario.py - reads scenario.json: the settings, calls and canned answers that every interface is run through.

The file holds "groups" of steps. A step is one of

    {"set": NAME, "to": VALUE}                 assigns a public variable
    {"get": NAME, "result": VALUE}             reads one
    {"new": INSTANCE}, {"drop": INSTANCE}      begins and ends an instance besides "q"
    {"call": NAME, "args": [ARGUMENT, ...], "request": TEXT, "answer": ANSWER, "result": VALUE, "outputs": [VALUE, ...]}

and may name its instance with "on". A VALUE is a text (String), a whole number (Long), true or false (Boolean), or a
typed one: {"Integer": -1}, {"Byte": 5}, {"Date": "2026-11-15T20:31:07"}, {"Empty": true}, {"Null": true}. An ARGUMENT is
a VALUE, null (left out), {"ref": VALUE} (a variable passed by reference, null for an empty one), whose values after the
call are the "outputs", or {"context": {"body": TEXT}}, a page with that request body. {port}, {printPort}, {blobs},
{logs} and {database} in a text stand for what a run provides. "request" is what the server must receive behind the
account, and "print" says that it is the print server. For ANSWER see canned_server.py. Of a result that "varies" from run
to run only the kind and the length are compared. A group that "needs" something ("page":
contexts) is skipped by interfaces that do not have it. "files" are in the blob directory at the end, those of a group if it
is run; "log" are texts that the log of the session "S1" then holds in this order.

A transcript has one line for each step: its number, its name, the result and the outputs, with their kinds. A text is
written in ASCII, with \\xHH for any other byte of its Windows-1252 form.
"""
import json
import re
import sys
from dataclasses import dataclass, field
from pathlib import Path

FOLDER = Path(__file__).resolve().parent
ROOT = FOLDER.parent.parent
sys.path.insert(0, str(ROOT / "automation"))
from interface_header import read_header  # noqa: E402

FILE = FOLDER / "scenario.json"
KINDS = ("Empty", "Null", "Boolean", "Byte", "Integer", "Long", "Date", "String")
STEP_MEMBERS = ("on", "new", "drop", "set", "to", "get", "call", "args", "request", "print", "answer", "varies", "result",
                "outputs")
STEP_KINDS = {"call": {"on", "call", "args", "request", "print", "answer", "varies", "result", "outputs"},
              "set": {"set", "to", "on"}, "get": {"get", "result", "on"}, "new": {"new"}, "drop": {"drop"}}
WIDEST = 120


UNDEFINED = b"\x81\x8D\x8F\x90\x9D"


def text_of(some_bytes):
    """The text of Windows-1252 bytes; the five undefined ones are the control characters of the same number."""
    return "".join(chr(byte) if byte in UNDEFINED else bytes([byte]).decode("cp1252") for byte in some_bytes)


def bytes_of(text):
    """The inverse of text_of; an error for a character that has no place in the code page."""
    return b"".join(char.encode("latin-1" if char in UNDEFINED.decode("latin-1") else "cp1252") for char in text)


def escaped(some_bytes):
    """Bytes between quotes, as a transcript has them."""
    return '"' + "".join(chr(byte) if 32 <= byte < 127 and byte not in b'"\\' else f"\\x{byte:02X}"
                         for byte in some_bytes) + '"'


@dataclass(frozen=True)
class Value:
    kind: str
    value: object = None

    @staticmethod
    def from_json(json_value):
        if json_value is None:
            return Value("Empty")
        if isinstance(json_value, dict):
            (kind, value), = json_value.items()
            if kind not in KINDS:
                raise ValueError(f"unknown kind of value: {json_value}")
            return Value(kind, None if kind in ("Empty", "Null") else value)
        kind = {bool: "Boolean", int: "Long", str: "String"}[type(json_value)]
        return Value(kind, json_value)

    def to_json(self):
        if self.kind in ("Empty", "Null"):
            return {self.kind: True}
        return self.value if self.kind in ("Boolean", "Long", "String") else {self.kind: self.value}

    def shown(self):
        if self.kind in ("Empty", "Null"):
            return self.kind
        return f"{self.kind} {escaped(bytes_of(self.value)) if self.kind == 'String' else self.value}"


@dataclass
class Argument:
    kind: str  # of the parameter: "in", "in-out", "optional in", "optional out"
    is_left_out: bool = False
    is_reference: bool = False
    body: str = None  # of a page's request
    value: Value = None


@dataclass
class Step:
    number: int
    kind: str
    name: str  # of the method, variable or instance
    instance: str
    json: dict
    type: str = ""  # of the variable or of the method's result: "Long", "Variant", ...; "" without a result
    is_property: bool = False  # set by a method in C++
    arguments: list = field(default_factory=list)
    value: Value = None  # that is assigned

    def references(self):
        return [argument for argument in self.arguments if argument.is_reference]

    def title(self):
        return f"{self.number:03} {self.name if self.kind == 'call' else self.kind + ' ' + self.name}"

    def expected(self):
        """The line of the transcript."""
        if self.kind not in ("call", "get"):
            return self.title()
        values = [self.json.get("result"), *self.json.get("outputs", [])]
        return line(self, [Value.from_json(value) for value in values])


def line(step, values):
    return step.title() + " = " + "; ".join(value.shown() for value in values)


def comparable(lines, steps):
    """The lines of a transcript with the lengths of texts in place of those that vary from run to run."""
    varying = {step.title() + " = " for step in steps if "varies" in step.json}

    def with_length(match):
        text = re.sub(r"\\x..", "?", match[2])
        return f"{match[1]}String of {len(text)} bytes"

    return [re.sub(r'^(.*? = )String "([^"]*)"', with_length, each) if each.partition("String")[0] in varying else each
            for each in lines]


@dataclass
class Group:
    name: str
    needs: str
    steps: list


@dataclass
class Scenario:
    json: dict
    groups: list

    def steps(self, without=()):
        """Those of the groups that an interface runs which lacks some of what groups need."""
        return [step for group in self.groups if group.needs not in without for step in group.steps]

    def transcript(self, without=()):
        return [step.expected() for step in self.steps(without)]

    def files(self, without=()):
        """Those that are in the blob directory at the end."""
        files = dict(self.json["files"])
        for json_group in self.json["groups"]:
            if json_group.get("needs") not in without:
                files.update(json_group.get("files", {}))
        return files

    def instances(self):
        return sorted({"q"} | {step.name for step in self.steps() if step.kind == "new"})


def read_argument(json_argument, parameter):
    if json_argument is None:
        if not parameter.kind.startswith("optional"):
            raise ValueError(f"{parameter.name} cannot be left out")
        return Argument(parameter.kind, is_left_out=True)
    if isinstance(json_argument, dict) and "context" in json_argument:
        return Argument(parameter.kind, body=json_argument["context"]["body"])
    if isinstance(json_argument, dict) and "ref" in json_argument:
        return Argument(parameter.kind, is_reference=True, value=Value.from_json(json_argument["ref"]))
    if parameter.kind in ("optional out", "in-out"):
        raise ValueError(f"{parameter.name} needs a reference")
    return Argument(parameter.kind, value=Value.from_json(json_argument))


def read_step(number, json_step, members):
    kind = next((kind for kind in STEP_KINDS if kind in json_step), None)
    if kind is None or set(json_step) - STEP_KINDS[kind]:
        raise ValueError(f"not a step: {json_step}")
    step = Step(number, kind, json_step[kind], json_step.get("on", "q"), json_step)
    if kind in ("new", "drop"):
        step.instance = step.name
        return step
    member = members[step.name]
    step.type, step.is_property = member.type, member.kind == "write-only property"
    if (kind == "call") != (member.kind == "method"):
        raise ValueError(f"step {number}: {step.name} is a {member.kind}")
    if kind == "set":
        step.value = Value.from_json(json_step["to"])
    if kind == "call":
        given = json_step.get("args", [])
        if len(given) > len(member.parameters):
            raise ValueError(f"step {number}: {step.name} takes {len(member.parameters)} arguments")
        step.arguments = [read_argument(*pair) for pair in zip(given, member.parameters)]
        if ("answer" in json_step) != ("request" in json_step):
            raise ValueError(f"step {number}: a request and its answer belong together")
    return step


def read_scenario(file=FILE):
    document = json.loads(Path(file).read_text(encoding="utf-8"))
    interface = read_header((ROOT / "component/clsQuery.h").read_text(encoding="utf-8"))
    members = {member.name: member for member in interface.members()}
    groups, number = [], 0
    for json_group in document["groups"]:
        steps = []
        for json_step in json_group["steps"]:
            number += 1
            steps.append(read_step(number, json_step, members))
        groups.append(Group(json_group["name"], json_group.get("needs", ""), steps))
    return Scenario(document, groups)


def write_scenario(scenario, file=FILE):
    """Writes the description back, in lines that are not too wide."""
    def compact(value):
        text = json.dumps(value, ensure_ascii=False)
        return "".join(f"\\u{ord(char):04x}" if "\x7f" <= char <= "\x9f" else char for char in text)

    def filled(items, indent):
        lines = [""]
        for item in items:
            if lines[-1] and len(lines[-1]) + len(item) + indent + 2 > WIDEST:
                lines.append("")
            lines[-1] += (" " if lines[-1] else "") + item + ","
        return ("\n" + " " * indent).join(lines).removesuffix(",")

    def written(value, indent):
        if not isinstance(value, (dict, list)) or len(compact(value)) + indent < WIDEST:
            return compact(value)
        items, brackets = [written(item, indent + 1) for item in value], "[]"
        if isinstance(value, dict):
            items, brackets = [f"{compact(key)}: {written(item, indent + 1)}" for key, item in value.items()], "{}"
        is_filled = "steps" not in value and not any(isinstance(item, dict) and len(item) > 1 for item in value)
        inner = filled(items, indent + 1) if is_filled else (",\n" + " " * (indent + 1)).join(items)
        return brackets[0] + inner + brackets[1]

    for step in scenario.steps():
        in_order = {key: step.json[key] for key in STEP_MEMBERS if key in step.json}
        step.json.clear()
        step.json.update(in_order)
    Path(file).write_text(written(scenario.json, 0) + "\n", encoding="utf-8")
