"""The values of the raw level and how the library takes them, and texts that it hands out."""
from __future__ import annotations

from ctypes import byref, c_size_t, c_void_p, string_at
from datetime import datetime, timedelta
from typing import Any, Callable, Dict

from . import _library as lib
from ._library import library
from .errors import BadArgument

EPOCH = datetime(1899, 12, 30)
_SECOND = timedelta(seconds=1)


class Integer(int):
    """A whole number of 16 bits; a plain int is one of 32 bits."""


class Byte(int):
    """A number from 0 to 255."""


class Null:
    """The value Null of a database; None is the value Empty. There is one, NULL."""

    def __repr__(self) -> str:
        return "NULL"


class LeftOut:
    """An argument that is left out, which for an output says that it is not written. There is one, LEFT_OUT."""

    def __repr__(self) -> str:
        return "LEFT_OUT"


class Request(bytes):
    """The body of a page's request, as the method OnStartPage takes it."""


NULL = Null()
LEFT_OUT = LeftOut()


class Text:
    """Where the library writes a text: a pointer and a number of bytes."""

    def __init__(self) -> None:
        self.pointer, self.length = c_void_p(), c_size_t()
        self.references = byref(self.pointer), byref(self.length)

    def bytes(self) -> bytes:
        return string_at(self.pointer.value or 0, self.length.value) if self.length.value else b""

    def __str__(self) -> str:
        return self.bytes().decode()


def new_handle(make: Callable[[Any], int]) -> c_void_p:
    handle = c_void_p()
    library.check(make(byref(handle)))
    return handle


def _set_text(handle: c_void_p, value: str) -> int:
    data = value.encode("utf-8", "surrogatepass")  # the library reports a lone surrogate with its position
    return int(library.value_set_text(handle, data, len(data), lib.UTF8))


def _set_whole(handle: c_void_p, value: int) -> int:
    if not -0x80000000 <= value <= 0x7FFFFFFF:
        raise BadArgument(f"{value} does not fit into 32 bits")
    return int(library.value_set_long(handle, value))


def _set_small(set_value: Any, first: int, last: int) -> Callable[[c_void_p, int], int]:
    def set_checked(handle: c_void_p, value: int) -> int:
        if not first <= value <= last:
            raise BadArgument(f"{int(value)} is not in the range of {first} to {last}")
        return int(set_value(handle, value))
    return set_checked


def _set_date(handle: c_void_p, value: datetime) -> int:
    if value.tzinfo:
        value = value.astimezone().replace(tzinfo=None)
    return int(library.value_set_date(handle, (value - EPOCH) // _SECOND))


SETTERS: Dict[type, Callable[[c_void_p, Any], Any]] = {
    str: _set_text,
    type(None): lambda handle, _: library.value_set_empty(handle),
    int: _set_whole,
    bool: lambda handle, value: library.value_set_boolean(handle, value),
    Integer: _set_small(library.value_set_integer, -0x8000, 0x7FFF),
    Byte: _set_small(library.value_set_byte, 0, 255),
    float: lambda handle, value: library.value_set_double(handle, value),
    datetime: _set_date,
    bytes: lambda handle, value: library.value_set_bytes(handle, value, len(value)),
    Request: lambda handle, value: library.value_set_request(handle, value, len(value)),
    Null: lambda handle, _: library.value_set_null(handle),
}
