"""The texts that are generated from the description of the component's interface. Each function makes one text from an
Interface (interface_header.py); OUTPUTS maps options of describe_interface.py to these functions."""
import re
import textwrap

NOTICE = "Made from component/clsQuery.h by automation/describe_interface.py"

PARAMETER_NOTATION = {"in": "{}", "optional in": "[{}]", "optional out": "[out {}]", "in-out": "inout {}"}
HOW_TO_READ = """\
How to read a member: a plain parameter is an input that must be given, [name] an input that may be left out, \
[out name] an output, which may be left out, inout name a variable that is read and replaced. The type of the result \
follows the arrow; a Variant holds the type that the text names."""


def signature(member):
    """A method as the documentation shows it: "Name(input, [optional input], [out output], inout variable) -> Type"."""
    parameters = ", ".join(PARAMETER_NOTATION[each.kind].format(each.name) for each in member.parameters)
    if member.kind == "write-only property":
        return f"{member.name} = {parameters}"
    return f"{member.name}({parameters})" + (f" -> {member.type}" if member.type else "")


# The method table.

PARAMETER_KINDS = {"in": "In", "optional in": "OptionalIn", "optional out": "OptionalOut", "in-out": "InOut"}


def cpp_literal(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"').replace("\n", "\\n") + '"'


def cpp_fields(group, member):
    fields = {"number": str(member.number), "name": cpp_literal(member.name), "group": cpp_literal(group.name),
              "documentation": cpp_literal("\n\n".join(member.documentation))}
    if member.kind != "variable":
        fields["signature"] = cpp_literal(signature(member))
    if member.kind == "write-only property":
        fields["isProperty"] = "true"
    return "{" + ",\n           ".join(f".{name} = {value}" for name, value in fields.items()) + "}"


def cpp_variable(group, member):
    return f"      Variable<&clsQuery::{member.name}>(\n          {cpp_fields(group, member)}),\n"


def cpp_method(group, member):
    kinds = ["ResultKind::" + (member.type or "None")]
    kinds += ["ParameterKind::" + PARAMETER_KINDS[each.kind] for each in member.parameters]
    arguments = [cpp_fields(group, member), *(cpp_literal(each.name) for each in member.parameters)]
    return (f"      Method<&clsQuery::{member.name}, {', '.join(kinds)}>(\n"
            f"          {', '.join(arguments)}),\n")


def cpp_table(interface):
    entries = [(group, member) for group in interface.groups for member in group.members()]
    variables = "".join(cpp_variable(*entry) for entry in entries if entry[1].kind == "variable")
    methods = "".join(cpp_method(*entry) for entry in entries if entry[1].kind != "variable")
    return f"""\
// {NOTICE}.
#include "automation/method_binding.h"

namespace oxaqrycln {{

using binding::Method;
using binding::Variable;

std::span<const VariableEntry> PublicVariables() {{
  static const VariableEntry variables[] = {{
{variables}  }};
  return variables;
}}

std::span<const MethodEntry> PublicMethods() {{
  // Never destroyed: a host may call while the process ends.
  static const auto* const methods = new std::vector<MethodEntry>{{  // NOLINT
{methods}  }};
  return *methods;
}}

}}  // namespace oxaqrycln
"""


# The reference in Markdown: docs/methods.md.

def names_of(interface):
    """The names of members and parameters, which the pages highlight."""
    names = {member.name for member in interface.members()}
    return names | {each.name for member in interface.members() for each in member.parameters}


def with_names(text, names, mark):
    """The text with each name marked, except for the ends of names as in "...Init"."""
    return re.sub(r"(?<![\w.])\w+(?!\.\w)", lambda word: mark(word[0]) if word[0] in names else word[0], text)


def markdown_text(paragraphs, names):
    """The paragraphs, with no blank line between the items of a list."""
    text = ""
    for paragraph in paragraphs:
        escaped = re.sub(r"[\\`*_<]", r"\\\g<0>", paragraph)
        between = "\n" if paragraph.startswith("- ") and text.rpartition("\n\n")[2].startswith("- ") else "\n\n"
        text += (between if text else "") + with_names(escaped, names, "`{}`".format)
    return text + "\n"


def markdown_variables(variables, names):
    table = "\n| variable | type | meaning |\n|---|---|---|\n"
    for member in variables:
        meaning = markdown_text(member.documentation, names).strip().replace("|", "\\|").replace("\n\n", "<br>")
        table += f"| `{member.name}` | {member.type} | {meaning} |\n"
    return table


def markdown_group(group, names):
    text = f"\n## {group.name}\n"
    variables = []
    for entry in group.entries:
        if isinstance(entry, list):
            text += "\n" + markdown_text(entry, names)
        elif entry.kind == "variable":
            variables.append(entry)
        else:
            text += f"\n### {entry.name}\n\n`{signature(entry)}`\n\n" + markdown_text(entry.documentation, names)
    return text + (markdown_variables(variables, names) if variables else "")


def markdown_page(interface):
    names = names_of(interface)
    return ("# Public variables and methods of clsQuery\n\n"
            f"{NOTICE} --markdown; a test compares the two.\n\n"
            + markdown_text(interface.documentation, names)
            + "\n" + re.sub(r"\[(out )?name\]|inout name", r"`\g<0>`", HOW_TO_READ) + "\n"
            + "".join(markdown_group(group, names) for group in interface.groups))


# The manual page: docs/oxaqrycln.3.

MAN_ESCAPES = str.maketrans({"\\": "\\(rs", "-": "\\-", "^": "\\(ha", "~": "\\(ti", "`": "\\(ga"})


def man_escaped(text):
    text = text.translate(MAN_ESCAPES)
    return "\\&" + text if text.startswith((".", "'")) else text


def man_text(paragraphs, names):
    text = ""
    for paragraph in paragraphs:
        is_item = paragraph.startswith("- ")
        words = with_names(man_escaped(paragraph.removeprefix("- ")), names, "\\fI{}\\fP".format)
        text += (".IP \\(bu 2\n" if is_item else ".PP\n") + words + "\n"
    return text


def man_member(member, names):
    documentation = man_text(member.documentation, names)
    if member.kind == "variable":
        return f'.TP\n.BR {member.name} " ({member.type})"\n' + documentation.removeprefix(".PP\n")
    return f".SS {member.name}\n.B {man_escaped(signature(member))}\n" + documentation


def man_entry(entry, names):
    return man_text(entry, names) if isinstance(entry, list) else man_member(entry, names)


def man_group(group, names):
    return f".SH {group.name.upper()}\n" + "".join(man_entry(entry, names) for entry in group.entries)


def man_page(interface):
    names = names_of(interface)
    return (f'.\\" {NOTICE} --man; a test compares the two.\n'
            '.TH OXAQRYCLN 3 "" "oxaqrycln" "Library functions"\n.nh\n.ad l\n'
            ".SH NAME\noxaqrycln \\- public variables and methods of the archive component\n"
            ".SH SYNOPSIS\n.nf\n.B #include <component/clsQuery.h>\n.PP\n.B oxaqrycln::clsQuery query;\n.PP\n"
            ".B c++ \\-std=c++20 program.cpp $(pkg\\-config \\-\\-cflags \\-\\-libs oxaqrycln)\n.fi\n"
            ".SH DESCRIPTION\n" + man_text([*interface.documentation, HOW_TO_READ], names)
            + "".join(man_group(group, names) for group in interface.groups)
            + ".SH SEE ALSO\n.BR oxaqry (1)\n")


# The type library in the interface definition language: numbers are dispatch identifiers. The standard library of types
# is not imported, because the compiler knows its types by their names; these declarations only introduce the names.
# LIBRARY_ID, INTERFACE_ID, CLASS_ID and LIBRARY_VERSION are defined on the command line of the compiler.

IDL_TYPES = """\
typedef double DATE;
typedef short VARIANT_BOOL;
typedef wchar_t* BSTR;
typedef struct tagVARIANT { long unused; } VARIANT;
[object, local, uuid(00000000-0000-0000-C000-000000000046)] interface IUnknown {}
[object, local, uuid(00020400-0000-0000-C000-000000000046)] interface IDispatch : IUnknown {}
"""
IDL_TYPE_NAMES = {"Long": "long", "String": "BSTR", "Date": "DATE", "Boolean": "VARIANT_BOOL", "Variant": "VARIANT",
                  "": "void"}
# An output is declared as "in" too, because a variable that is not written keeps its value.
IDL_PARAMETERS = {"in": "[in] VARIANT {}", "optional in": "[in, optional] VARIANT {}",
                  "optional out": "[in, out, optional] VARIANT* {}", "in-out": "[in, out] VARIANT* {}"}


# The compiler accepts no helpstring for a property.
def idl_property(member):
    return f"    [id({member.number})] {IDL_TYPE_NAMES[member.type]} {member.name};\n"


def idl_method(member):
    summary = re.split(r"(?<=\.) ", " ".join(member.documentation))[0]
    access = ", propput" if member.kind == "write-only property" else ""
    parameters = ", ".join(IDL_PARAMETERS[each.kind].format(each.name) for each in member.parameters)
    return (f"    [id({member.number}){access}, helpstring({cpp_literal(summary)})]\n"
            f"    {IDL_TYPE_NAMES[member.type]} {member.name}({parameters});\n")


def idl_library(interface):
    properties = "".join(idl_property(each) for each in interface.variables())
    methods = "".join(idl_method(each) for each in interface.methods())
    return f"""\
// {NOTICE}.
{IDL_TYPES}
[uuid(LIBRARY_ID), version(LIBRARY_VERSION), helpstring("OXAQryCln: document archive queries and web users")]
library OXAQryCln {{

[uuid(INTERFACE_ID), helpstring("Public variables and methods of clsQuery")]
dispinterface IclsQuery {{
  properties:
{properties}  methods:
{methods}}};

[uuid(CLASS_ID), helpstring("One page request")]
coclass clsQuery {{
  [default] dispinterface IclsQuery;
}};

}};
"""


# The stub of the Python package's raw level: bindings/python/src/oxaqrycln/raw.pyi.

PYTHON_TYPES = {"Long": "int", "String": "str", "Date": "datetime", "Boolean": "bool", "Variant": "Any", "": "None"}
PYTHON_PARAMETERS = {"in": "{}: Input", "optional in": "{}: OptionalInput = ...", "optional out": "{}: Output = ...",
                     "in-out": "{}: Input"}
PYTHON_HEAD = """\
from datetime import datetime
from typing import Any, NamedTuple, Union

from ._query import QueryCore, Rows as Rows
from ._values import LEFT_OUT as LEFT_OUT, NULL as NULL, Byte as Byte, Integer as Integer, LeftOut as LeftOut
from ._values import Null as Null, Request as Request
from ._watch import Outcome as Outcome, Progress as Progress, Server as Server, ServerHealth as ServerHealth

Input = Union[None, bool, int, float, str, bytes, datetime, Null]
OptionalInput = Union[Input, LeftOut]
Output = Union[Input, LeftOut]  # the start value; LEFT_OUT leaves the output out
"""


def python_documentation(paragraphs, indent):
    lines = []
    for paragraph in paragraphs:
        lines += ([""] if lines else []) + textwrap.wrap(paragraph.replace("\\", "\\\\"), 116 - len(indent))
    return f'{indent}"""' + f"\n{indent}".join(lines).replace(f"{indent}\n", "\n") + f'\n{indent}"""\n'


def python_outputs(member):
    return [each.name for each in member.parameters if each.kind in ("optional out", "in-out")]


def python_result(member):
    """The named tuple that a method with outputs returns; "" without one."""
    if not python_outputs(member):
        return ""
    fields = "".join(f"    {name}: Any\n" for name in python_outputs(member))
    return f"class {member.name}Result(NamedTuple):\n    result: {PYTHON_TYPES[member.type]}\n{fields}\n"


def python_member(member):
    documentation = python_documentation(member.documentation, "        ")
    if member.kind == "variable":
        comment = documentation.replace('"""', "").strip().split("\n")
        return "".join(f"    # {line.strip()}\n" for line in comment) + f"    {member.name}: {PYTHON_TYPES[member.type]}\n"
    parameters = ", ".join(["self", *(PYTHON_PARAMETERS[each.kind].format(each.name) for each in member.parameters)])
    if member.kind == "write-only property":
        return (f"    @property\n    def {member.name}(self) -> Any:\n{documentation}"
                f"    @{member.name}.setter\n    def {member.name}({parameters}) -> None: ...\n")
    result = member.name + "Result" if python_outputs(member) else PYTHON_TYPES[member.type]
    # Broken behind commas only.
    declared = f"{member.name}({parameters}) -> {result}:".replace(" ", "\u00a0").replace(",\u00a0", ", ")
    lines = textwrap.wrap("def " + declared, 120, initial_indent="    ", subsequent_indent=" " * 12)
    return "\n".join(lines).replace("\u00a0", " ") + f"\n{documentation}"


def python_stub(interface):
    members = interface.members()
    return (f"# {NOTICE} --python; a test compares the two.\n{PYTHON_HEAD}\n"
            + "".join(python_result(member) for member in members)
            + "class Query(QueryCore):\n" + "".join(python_member(member) for member in members))


OUTPUTS = {"cpp": cpp_table, "markdown": markdown_page, "man": man_page, "idl": idl_library, "python": python_stub}
