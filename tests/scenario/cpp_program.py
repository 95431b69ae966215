#!/usr/bin/env python3
"""cpp_program.py OUTPUT - writes the scenario as a C++ program that calls the members of clsQuery directly."""
import sys
from pathlib import Path

from scenario import bytes_of, read_scenario

HEAD = """// Generated from tests/scenario/scenario.json.
#include <string_view>

#include "component/clsQuery.h"
#include "tests/scenario/scenario_run.h"

using namespace oxaqrycln;
using namespace oxaqrycln::testing;
using namespace std::literals;

"""


def literal(text):
    """A std::string_view of the text's bytes, with what a run provides filled in."""
    content = "".join(chr(byte) if 32 <= byte < 127 and byte not in b'"\\?' else f"\\{byte:03o}" for byte in bytes_of(text))
    quoted = f'"{content}"sv'
    return f"run.Filled({quoted})" if "{" in text else quoted


def plain(value):
    """A value as a variable of C++ takes it."""
    if value.kind == "String":
        return literal(value.value)
    return f'*DateTime::FromIso("{value.value}")' if value.kind == "Date" else str(value.value)


def variant(value):
    return {"Empty": lambda: "Variant()",
            "Null": lambda: "Variant::Null()",
            "Boolean": lambda: f"Variant({str(value.value).lower()})",
            "Byte": lambda: f"Variant(std::uint8_t{{{value.value}}})",
            "Integer": lambda: f"Variant::Integer({value.value})",
            "Long": lambda: f"Variant::Long({value.value})"}.get(value.kind, lambda: f"Variant({plain(value)})")()


def call(step, instance):
    arguments, declarations, references = [], [], []
    for argument in step.arguments:
        if argument.is_left_out:
            arguments.append("nullptr" if argument.kind == "optional out" else "Missing")
        elif argument.body is not None:
            arguments.append(f"PageWithBody({literal(argument.body)})")
        elif argument.is_reference:
            name = f"v{len(references) + 1}"
            declarations.append(f"    Variant {name} = {variant(argument.value)};\n")
            references.append(f"&{name}")
            arguments.append(f"&{name}" if argument.kind == "optional out" else name)
        else:
            arguments.append(variant(argument.value))
    expression = f"{instance}.{step.name}({', '.join(arguments)})"
    outputs = "{" + ", ".join(references) + "}"
    shown = f'    run.Show("{step.title()}", {expression}, {outputs});\n'
    if not step.type:
        shown = f'    {expression};\n    run.Show("{step.title()}", Variant(), {outputs});\n'
    return "  {\n" + "".join(declarations) + shown + "  }\n"


def statement(step):
    instance = f'run.Instance("{step.instance}")'
    if step.kind == "call":
        return call(step, instance)
    if step.kind == "get":
        return f'  run.Show("{step.title()}", Variant({instance}.{step.name}), {{}});\n'
    if step.kind == "set":
        done = f"{instance}.{step.name}" + (f"({variant(step.value)})" if step.is_property else f" = {plain(step.value)}")
    else:
        done = f'run.{step.kind.capitalize()}("{step.name}")'
    return f'  {done};\n  run.Say("{step.title()}");\n'


def program(scenario):
    text, calls = HEAD, ""
    for number, group in enumerate(scenario.groups, 1):
        text += f"// {group.name}\nstatic void Group{number}(ScenarioRun& run) {{\n"
        text += "".join(statement(step) for step in group.steps) + "}\n\n"
        calls += f"  Group{number}(run);\n"
    return text + f"int main(int argc, char** argv) {{\n  ScenarioRun run(argc, argv);\n{calls}}}\n"


if __name__ == "__main__":
    Path(sys.argv[1]).write_text(program(read_scenario()), encoding="ascii")
