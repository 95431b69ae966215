"""The description of the component's interface, read from component/clsQuery.h by a strict grammar.

Anything that does not follow the grammar is a DescriptionError "component/clsQuery.h:LINE: what is wrong; what is
expected".
The grammar, line by line:

    header      = ..., DOCUMENTATION, "class clsQuery {", " public:", {special}, group, {group}, " private:", ...
    special     = [DOCUMENTATION], constructor, destructor or one of the deleted copies, as in SPECIAL_MEMBERS
    group       = "  // --- Name ---", {TEXT | member}, with at least one member
    member      = DOCUMENTATION, (variable | method), which ends with ";"; further lines are indented deeper
    variable    = "std::int32_t NAME = 0;" | "std::string NAME;" | "DateTime NAME;"
    method      = ("bool" | "std::string" | "Variant" | "void"), NAME, "(", [parameter, {", ", parameter}], ");"
    parameter   = "const Variant& NAME"             an input
                | "Variant& NAME"                   a value that is read and replaced
                | "const Variant& NAME = Missing"   an optional input
                | "Variant* NAME = nullptr"         an optional output; the optional parameters come last

DOCUMENTATION is a comment block directly above the declaration that it documents. TEXT is a comment block followed by a
blank line; it applies to the members below it in the group. In both, a line "//" separates paragraphs; a paragraph that
begins with "- " is an item of a list, and its further lines are indented by two blanks. A method whose documentation
begins with "Write-only property:" is assigned instead of called: it has no result and one input. All names differ in
more than letter case.
"""
import re
from dataclasses import dataclass, field

HEADER = "component/clsQuery.h"
SPECIAL_MEMBERS = ("clsQuery();", "~clsQuery();", "clsQuery(const clsQuery&) = delete;",
                   "clsQuery& operator=(const clsQuery&) = delete;")
# The C++ types and their names for pages; a method of type "" has no result.
VARIABLE_TYPES = {"std::int32_t": "Long", "std::string": "String", "DateTime": "Date"}
RESULT_TYPES = {"bool": "Boolean", "std::string": "String", "Variant": "Variant", "void": ""}
START_VALUES = {"std::int32_t": " = 0"}
PARAMETER_FORMS = {
    "in": "const Variant& NAME",
    "in-out": "Variant& NAME",
    "optional in": "const Variant& NAME = Missing",
    "optional out": "Variant* NAME = nullptr",
}
PROPERTY_MARK = "Write-only property:"


class DescriptionError(Exception):
    """An error in the description; its text names file and line."""


@dataclass
class Parameter:
    name: str
    kind: str  # a key of PARAMETER_FORMS


@dataclass
class Member:
    name: str
    kind: str  # "variable", "method" or "write-only property"
    type: str  # of the variable or the result: a value of VARIABLE_TYPES or RESULT_TYPES
    parameters: list
    documentation: list  # of paragraphs; an item of a list begins with "- "
    line: int
    number: int = 0  # 0: not recorded


@dataclass
class Group:
    name: str
    line: int
    entries: list = field(default_factory=list)  # in the header's order: a Member, or the paragraphs of a text

    def members(self):
        return [entry for entry in self.entries if isinstance(entry, Member)]


@dataclass
class Interface:
    documentation: list
    groups: list

    def variables(self):
        return [member for group in self.groups for member in group.members() if member.kind == "variable"]

    def methods(self):
        """The methods and the write-only property."""
        return [member for group in self.groups for member in group.members() if member.kind != "variable"]

    def members(self):
        """The variables, then the methods, each in the header's order."""
        return self.variables() + self.methods()


@dataclass
class Piece:
    """A blank line, group line, comment block (value: its lines) or declaration (value: its text in one line)."""
    kind: str
    line: int
    value: object = None


def fail(line, message):
    raise DescriptionError(f"{HEADER}:{line}: {message}")


def read_header(text):
    lines = text.splitlines()
    for number, line in enumerate(lines, 1):
        if not line.isascii():
            fail(number, "a character outside ASCII; expected only ASCII")
    if "class clsQuery {" not in lines:
        fail(1, 'the class is missing; expected a line "class clsQuery {"')
    opening = lines.index("class clsQuery {") + 1
    if lines[opening:opening + 1] != [" public:"]:
        fail(opening + 1, 'the public section does not come first; expected " public:"')
    if " private:" not in lines[opening:]:
        fail(len(lines), 'the class has no private section; expected a line " private:" below its members')
    end = lines.index(" private:", opening)
    for number, line in enumerate(lines[end:], end + 1):
        if line in (" public:", " protected:"):
            fail(number, 'a second public or protected section; expected one public and then one private section')
    return Interface(read_class_documentation(lines[:opening - 1]), read_groups(pieces_of(lines, opening + 1, end)))


def read_class_documentation(lines_above):
    first = len(lines_above)
    while first > 0 and lines_above[first - 1].startswith("//"):
        first -= 1
    return paragraphs_of(Piece("comment", first + 1, lines_above[first:]), "clsQuery", len(lines_above) + 1)


def pieces_of(lines, at, end):
    """The pieces of the lines with indexes from at up to end."""
    while at < end:
        start = at
        if lines[at] == "":
            yield Piece("blank", at + 1)
            at += 1
        elif lines[at].startswith("  // ---"):
            yield Piece("group", at + 1, lines[at])
            at += 1
        elif lines[at].startswith("  //"):
            while at < end and lines[at].startswith("  //") and not lines[at].startswith("  // ---"):
                at += 1
            yield Piece("comment", start + 1, [line[2:] for line in lines[start:at]])
        elif re.match(r"  \S", lines[at]):
            at = end_of_declaration(lines, at, end)
            yield Piece("declaration", start + 1, " ".join(line.strip() for line in lines[start:at]))
        else:
            fail(at + 1, "not a comment or declaration; expected one, indented by two blanks")


def end_of_declaration(lines, start, end):
    at = start
    while not lines[at].endswith(";"):
        if "//" in lines[at]:
            fail(at + 1, "a comment after or inside a declaration; expected it directly above")
        at += 1
        if at == end or not re.match(r"   +\S", lines[at]):
            fail(start + 1, 'the declaration has no end; expected ";" at the end of its last line')
    if "//" in lines[at]:
        fail(at + 1, "a comment inside a declaration; expected it directly above")
    return at + 1


def read_groups(pieces):
    groups, names, comment = [], set(), None
    for piece in [*pieces, Piece("blank", 0)]:
        if piece.kind == "comment":
            comment = piece
            continue
        if piece.kind == "declaration" and groups:
            member = read_member(piece, comment)
            if member.name.lower() in names:
                fail(piece.line, f"{member.name} is declared twice; expected names that differ in more than letter case")
            names.add(member.name.lower())
            groups[-1].entries.append(member)
        elif piece.kind == "declaration" and piece.value not in SPECIAL_MEMBERS:
            fail(piece.line, 'a member outside the groups; expected "  // --- Name ---" above it')
        elif piece.kind != "declaration" and comment:
            if not groups:
                fail(comment.line, "a comment without a declaration; expected a declaration directly below it")
            groups[-1].entries.append(paragraphs_of(comment, "the group"))
        if piece.kind == "group":
            groups.append(read_group(piece, groups))
        comment = None
    for group in groups:
        if not group.members():
            fail(group.line, f'the group "{group.name}" is empty; expected a member')
    return groups


def read_group(piece, groups):
    found = re.fullmatch(r"  // --- (\S.*) ---", piece.value)
    if not found:
        fail(piece.line, 'not a group line; expected "  // --- Name ---"')
    if any(group.name == found[1] for group in groups):
        fail(piece.line, f'the group "{found[1]}" exists already; expected another name')
    return Group(found[1], piece.line)


def paragraphs_of(comment, name, line=0):
    """The paragraphs of a comment block that documents the name declared in the line."""
    if not comment or not comment.value:
        fail(line, f"{name} has no documentation; expected a comment block directly above")
    paragraphs, begins = [], True
    for number, text in enumerate(comment.value, comment.line):
        found = re.fullmatch(r"//(?: (  )?(\S.*))?", text)
        if not found:
            fail(number, 'not a line of a comment; expected "// text", "// - item" or "//"')
        indented, words = found.groups()
        in_item = bool(paragraphs) and paragraphs[-1].startswith("- ") and not begins
        if indented and not in_item:
            fail(number, 'an indented line outside an item of a list; expected "// text"')
        if words and (begins or words.startswith("- ") or in_item and not indented):
            paragraphs.append(words)
        elif words:
            paragraphs[-1] += " " + words
        begins = not words
    if not paragraphs:
        fail(comment.line, f"the documentation of {name} is empty; expected a sentence")
    return paragraphs


def read_member(piece, comment):
    found = re.fullmatch(r"([\w:]+) (\w+)(?:\((.*)\)|( = .*)?);", piece.value)
    if not found:
        fail(piece.line, 'not a member declaration; expected "TYPE NAME;" or "TYPE NAME(PARAMETERS);"')
    cpp_type, name, parameters, start_value = found.groups()
    types = VARIABLE_TYPES if parameters is None else RESULT_TYPES
    if cpp_type not in types:
        fail(piece.line, f"{name} has the unknown type {cpp_type}; expected " + " or ".join(types))
    documentation = paragraphs_of(comment, name, piece.line)
    if parameters is None:
        if (start_value or "") != START_VALUES.get(cpp_type, ""):
            expected = f"{cpp_type} {name}{START_VALUES.get(cpp_type, '')};"
            fail(piece.line, f'{name} has another start value; expected "{expected}"')
        return Member(name, "variable", types[cpp_type], [], documentation, piece.line)
    method = Member(name, "method", types[cpp_type], read_parameters(piece.line, name, parameters), documentation,
                    piece.line)
    if documentation[0].startswith(PROPERTY_MARK):
        method.kind = "write-only property"
        if method.type or [parameter.kind for parameter in method.parameters] != ["in"]:
            fail(piece.line, f'{name} cannot be a property; expected "void {name}(const Variant& NAME);"')
    return method


def read_parameters(line, method, text):
    parameters = []
    for declared in text.split(", ") if text else []:
        for kind, form in PARAMETER_FORMS.items():
            if found := re.fullmatch(re.escape(form).replace("NAME", r"(\w+)"), declared):
                parameters.append(Parameter(found[1], kind))
                break
        else:
            forms = ", ".join(f'"{form}"' for form in PARAMETER_FORMS.values())
            fail(line, f'{method} has the parameter "{declared}"; expected one of {forms}')
    kinds = [parameter.kind.startswith("optional") for parameter in parameters]
    if kinds != sorted(kinds):
        fail(line, f"{method} has a required parameter after an optional one; expected the optional ones last")
    names = [parameter.name.lower() for parameter in parameters]
    for parameter in parameters:
        if names.count(parameter.name.lower()) > 1:
            fail(line, f"{method} has two parameters {parameter.name}; expected different names")
    return parameters
