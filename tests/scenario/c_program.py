#!/usr/bin/env python3
"""c_program.py OUTPUT - writes the scenario as a C program that calls the members through the C interface."""
import sys
from pathlib import Path

from scenario import bytes_of, read_scenario

HEAD = """/* Generated from tests/scenario/scenario.json. */
#include "tests/scenario/c_scenario_run.h"

"""
KINDS = {"Empty": "OXAQRY_EMPTY", "Null": "OXAQRY_NULL", "Boolean": "OXAQRY_BOOLEAN", "Byte": "OXAQRY_BYTE",
         "Integer": "OXAQRY_INTEGER", "Long": "OXAQRY_LONG"}


def literal(text):
    """The bytes and their number, in lines that a compiler must take."""
    some = bytes_of(text)
    parts = ["".join(chr(byte) if 32 <= byte < 127 and byte not in b'"\\?' else f"\\{byte:03o}"
                     for byte in some[at:at + 100]) for at in range(0, len(some), 100)]
    return " ".join(f'"{part}"' for part in parts or [""]) + f", {len(some)}"


def value(given):
    if given.kind == "String":
        return f"text({literal(given.value)})"
    if given.kind == "Date":
        return f'date("{given.value}")'
    return f"number({KINDS[given.kind]}, {int(given.value or 0)})"


def call(step):
    arguments = ["NULL" if argument.is_left_out else
                 f"request({literal(argument.body)})" if argument.body is not None else value(argument.value)
                 for argument in step.arguments]
    shown = [str(at) for at, argument in enumerate(step.arguments) if argument.is_reference]
    lists = (f"    oxaqry_value *values[] = {{{', '.join(arguments) or 'NULL'}}};\n"
             f"    static const int32_t shown[] = {{{', '.join(shown) or '0'}}};\n")
    return (f"  {{\n{lists}    call(\"{step.title()}\", \"{step.instance}\", \"{step.name}\", values, {len(arguments)}, "
            f"shown, {len(shown)});\n  }}\n")


def statement(step):
    if step.kind == "call":
        return call(step)
    if step.kind == "get":
        return f'  show("{step.title()}", "{step.instance}", "{step.name}");\n'
    if step.kind == "set":
        done = f'set("{step.instance}", "{step.name}", {value(step.value)})'
    else:
        done = f'{step.kind}_instance("{step.name}")'
    return f'  {done};\n  say("{step.title()}");\n'


def program(scenario):
    text, calls = HEAD, ""
    for number, group in enumerate(scenario.groups, 1):
        text += f"/* {group.name} */\nstatic void group_{number}(void) {{\n"
        text += "".join(statement(step) for step in group.steps) + "}\n\n"
        calls += f"  group_{number}();\n"
    return text + f"int main(int argc, char **argv) {{\n  begin(argc, argv);\n{calls}  return 0;\n}}\n"


if __name__ == "__main__":
    Path(sys.argv[1]).write_text(program(read_scenario()), encoding="ascii")
