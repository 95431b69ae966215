"""The component with all its members under their own names, as docs/methods.md describes them. raw.pyi, which is
generated, declares them. Most pages want oxaqrycln.Archive instead.

A method takes its arguments in order or by name. What has outputs returns a named tuple: result, then the outputs by
name; an output is None when it was not written, or what was given as its start value. An input may be left out, and so
may an output with LEFT_OUT. Values are None (Empty), bool, int (32 bits), Integer (16 bits), Byte, float, datetime
(local time, to the second), str, bytes and NULL."""
from __future__ import annotations

from ctypes import byref, c_int32
from typing import Any, Callable, List

from ._library import library
from ._query import IN, IN_OUT, OPTIONAL_OUT, Method, Parameter, QueryCore, Rows, result_type
from ._values import LEFT_OUT, NULL, Byte, Integer, LeftOut, Null, Request, Text
from ._watch import Outcome, Progress, Server, ServerHealth

__all__ = ["LEFT_OUT", "NULL", "Byte", "Integer", "LeftOut", "Null", "Outcome", "Progress", "Query", "Request", "Rows",
           "Server", "ServerHealth"]

_VARIABLE, _METHOD, _PROPERTY = range(3)
_NAME, _DOCUMENTATION = 0, 2
_ALSO_WAITING = ("LiveCheck", "DirectQuery")  # besides the methods with a status


class Query(QueryCore):
    """An instance of the component, for one page request: assign its variables, then call Init."""

    __slots__ = ()


def _number(ask: Callable[..., int], *arguments: Any) -> int:
    number = c_int32()
    library.check(ask(*arguments, byref(number)))
    return number.value


def _text(ask: Callable[..., int], *arguments: Any) -> str:
    text = Text()
    library.check(ask(*arguments, *text.references))
    return str(text)


def _parameters(member: int) -> List[Parameter]:
    def read(position: int) -> Parameter:
        kind = c_int32()
        name = _text(library.parameter, member, position, byref(kind))
        return Parameter(name, kind.value)
    return [read(position) for position in range(_number(library.parameter_count, member))]


def _add_method(member: int, name: str, type_: int) -> None:
    parameters = _parameters(member)
    outputs = [i for i, each in enumerate(parameters) if each.kind in (OPTIONAL_OUT, IN_OUT)]
    names = [each.name for each in parameters]
    result = result_type(name + "Result", ["result", *(names[i] for i in outputs)]) if outputs else None
    method = Method(name, member, tuple(parameters), type_, "strParamStatus" in names or name in _ALSO_WAITING,
                    tuple(outputs), sum(each.kind in (IN, IN_OUT) for each in parameters),
                    tuple(None if each.kind == OPTIONAL_OUT else LEFT_OUT for each in parameters), result)

    def call(self: Query, *arguments: Any, **named: Any) -> Any:
        return self._call(method, arguments, named)

    call.__name__, call.__qualname__ = name, "Query." + name
    call.__doc__ = _text(library.member_text, member, _DOCUMENTATION)
    setattr(call, "method", method)
    setattr(Query, name, call)
    if result:
        globals()[result.__name__] = result


def _add_members() -> None:
    for member in range(1, _number(library.member_count) + 1):
        kind, type_ = c_int32(), c_int32()
        library.check(library.member(member, byref(kind), byref(type_)))
        name = _text(library.member_text, member, _NAME)
        if kind.value == _METHOD:
            _add_method(member, name, type_.value)
            continue

        def get(self: Query, member: int = member) -> Any:
            return self._get(member)

        def set_(self: Query, value: Any, member: int = member) -> None:
            self._set(member, value)

        documentation = _text(library.member_text, member, _DOCUMENTATION)
        setattr(Query, name, property(None if kind.value == _PROPERTY else get, set_, None, documentation))


_add_members()
