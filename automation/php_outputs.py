"""What the PHP package is given: the class of the raw level, made from an Interface (interface_header.py), and the C
functions as PHP's FFI reads them. OUTPUTS is as in interface_outputs.py."""
import re
import textwrap
from pathlib import Path

from interface_outputs import NOTICE, signature

C_HEADER = Path(__file__).resolve().parent / "c/oxaqrycln.h"
PHP_TYPES = {"Long": "int", "String": "string", "Date": "\\DateTimeImmutable", "Boolean": "bool", "Variant": "mixed",
             "": "void"}


def comment(lines, indent):
    """A documentation comment of these paragraphs and tags; an empty text is an empty line."""
    text = indent + "/**\n"
    for line in lines:
        for part in textwrap.wrap(line.replace("*/", "* /"), 116 - len(indent), break_long_words=False) or [""]:
            text += f"{indent} * {part}".rstrip() + "\n"
    return text + indent + " */\n"


def paragraphs(documentation):
    lines = []
    for paragraph in documentation:
        lines += ([""] if lines else []) + [paragraph]
    return lines


def php_properties(interface):
    lines = []
    for member in interface.members():
        if member.kind == "variable":
            lines.append(f"@property {PHP_TYPES[member.type]} ${member.name} {' '.join(member.documentation)}")
        elif member.kind == "write-only property":
            lines.append(f"@property-write string ${member.name} {' '.join(member.documentation)}")
    return lines


def php_parameter(parameter):
    reference = "&" if parameter.kind in ("optional out", "in-out") else ""
    # Stack traces of errors do not show these.
    secret = "#[\\SensitiveParameter] " if re.search("Passw|Pwd|Key", parameter.name) else ""
    return f"{secret}mixed {reference}${parameter.name}" + (" = Argument::LeftOut" if parameter.kind.startswith("optional") else "")


def php_method(member):
    inputs, outputs = [], []
    for position, each in enumerate(member.parameters):
        if each.kind in ("optional out", "in-out"):
            outputs.append(f"{position} => &${each.name}")
        else:
            inputs.append(f"{position} => ${each.name}")
    call = f"$this->invoke({member.number}, [{', '.join(inputs)}], [{', '.join(outputs)}])"
    parameters = ", ".join(map(php_parameter, member.parameters))
    return ("\n" + comment([signature(member), "", *paragraphs(member.documentation)], "    ")
            + f"    public function {member.name}({parameters}): {PHP_TYPES[member.type]}\n    {{\n"
            + f"        {'return ' if member.type else ''}{call};\n    }}\n")


def php_class(interface):
    documentation = [*paragraphs(interface.documentation), ""]
    for group in interface.groups:
        for entry in group.entries:
            if isinstance(entry, list):
                documentation += [f"{group.name}:", *paragraphs(entry), ""]
    numbers = "".join(f"        '{member.name}' => {member.number},\n" for member in interface.members())
    methods = "".join(php_method(each) for each in interface.methods() if each.kind == "method")
    return f"""\
<?php

// {NOTICE} --php; a test compares the two.

declare(strict_types=1);

namespace Oxaqrycln\\Raw;

{comment([*documentation, *php_properties(interface)], "")}\
final class Query extends Instance
{{
    /** The number of each member. */
    public const MEMBERS = [
{numbers}    ];
{methods}}}
"""


def ffi_declarations(_interface):
    """The header of the C interface without preprocessor lines and comments."""
    text = re.sub(r" *//.*", "", C_HEADER.read_text(encoding="utf-8"))
    text = re.sub(r"(?m)^\s*#.*\n", "", text).replace("OXAQRY_API ", "")
    return re.sub(r"\n\s*\n+", "\n", text).lstrip()


OUTPUTS = {"php": php_class, "ffi": ffi_declarations}
