"""The shared library of the component: where it is looked for, the types of its functions, and what their codes mean.

Loading it has no effect: a host may import the package and fork then."""
from __future__ import annotations

import ctypes
import os
import sys
from ctypes import POINTER, c_char_p, c_double, c_int16, c_int32, c_int64, c_size_t, c_uint8, c_uint32, c_void_p
from pathlib import Path
from typing import Any, Dict, List, Type

from .errors import BadArgument, Error, LibraryError, WrongThread

ABI_VERSION = 1
FILE_NAME = "OXAQryCln.dll" if sys.platform == "win32" else "liboxaqrycln.so.1"
VARIABLE = "OXAQRYCLN_LIBRARY"

UTF8, WINDOWS_1252 = 0, 1
EMPTY, NULL, BOOLEAN, BYTE, INTEGER, LONG, DOUBLE, DATE, TEXT, BYTES = range(10)  # kinds of values
UNTIL_END, EVERY_ROW = 0, 1
TRIED_LAST = 1

_E_HANDLE, _E_TEXT, _E_THREAD, _E_FORKED, _E_MEMORY = -1, -6, -7, -8, -10
_ERRORS: Dict[int, Type[Error]] = {-2: BadArgument, -4: BadArgument, -5: BadArgument, _E_TEXT: BadArgument,
                                   _E_THREAD: WrongThread, _E_FORKED: WrongThread}

_int, _long, _size, _text = POINTER(c_int32), POINTER(c_int64), POINTER(c_size_t), POINTER(c_void_p)
_FUNCTIONS: Dict[str, List[Any]] = {
    "error_position": [_size],
    "member_count": [_int],
    "member": [c_int32, _int, _int],
    "member_text": [c_int32, c_int32, _text, _size],
    "parameter_count": [c_int32, _int],
    "parameter": [c_int32, c_int32, _int, _text, _size],
    "value_new": [POINTER(c_void_p)],
    "value_free": [c_void_p],
    "value_set_empty": [c_void_p],
    "value_set_null": [c_void_p],
    "value_set_boolean": [c_void_p, c_int32],
    "value_set_byte": [c_void_p, c_uint8],
    "value_set_integer": [c_void_p, c_int16],
    "value_set_long": [c_void_p, c_int32],
    "value_set_double": [c_void_p, c_double],
    "value_set_date": [c_void_p, c_int64],
    "value_set_text": [c_void_p, c_char_p, c_size_t, c_int32],
    "value_set_bytes": [c_void_p, c_char_p, c_size_t],
    "value_set_request": [c_void_p, c_char_p, c_size_t],
    "value_kind": [c_void_p, _int],
    "value_get_boolean": [c_void_p, _int],
    "value_get_long": [c_void_p, _int],
    "value_get_double": [c_void_p, POINTER(c_double)],
    "value_get_date": [c_void_p, _long],
    "value_get_text": [c_void_p, c_int32, _text, _size],
    "value_get_bytes": [c_void_p, _text, _size],
    "query_new": [POINTER(c_void_p)],
    "query_free": [c_void_p],
    "get_variable": [c_void_p, c_int32, c_void_p],
    "set_variable": [c_void_p, c_int32, c_void_p],
    "call": [c_void_p, c_int32, c_void_p, c_int32, c_void_p],
    "call_for_texts": [c_void_p, c_int32, c_void_p, c_int32, c_void_p, c_int32, c_void_p, c_void_p],
    "fetch_rows": [c_void_p, c_int32, c_int32, _int, c_int32, c_int32, c_int32, POINTER(c_void_p)],
    "rows_read": [c_void_p, _int, _int, _text, POINTER(POINTER(c_uint32))],
    "rows_free": [c_void_p],
    "request_number": [c_void_p, _long],
    "outcome": [c_void_p, _int, _long, _int, _int],
    "outcome_text": [c_void_p, _text, _size],
    "attempt": [c_void_p, c_int32, _text, _size, _int, _text, _size, _long],
    "handled_error": [c_void_p, _int, _text, _size],
    "progress": [c_void_p, _long, _long, _long],
    "cancel": [c_void_p],
    "resume": [c_void_p],
    "server_count": [c_void_p, _int],
    "server": [c_void_p, c_int32, _text, _size, _int, _int, _int, _long, _text, _size],
    "server_failures": [c_void_p, c_int32, _int],
    "check_servers": [c_void_p, c_char_p, c_size_t, POINTER(c_void_p)],
    "set_sick_servers": [c_void_p, c_int32],
}
# These may wait for a server, a database or a file, and let other threads run.
_WAITING = ("call", "call_for_texts", "set_variable", "fetch_rows", "check_servers", "query_free")


def _candidates() -> List[str]:
    named = os.environ.get(VARIABLE)
    if named:
        return [named]
    beside = Path(__file__).with_name(FILE_NAME)
    return [str(beside), FILE_NAME] if beside.exists() else [FILE_NAME]


def _load() -> ctypes.CDLL:
    tried = []
    for candidate in _candidates():
        try:
            return ctypes.CDLL(candidate)
        except OSError as error:
            tried.append(f"{candidate}: {error}")
    raise LibraryError(f"the shared library of oxaqrycln cannot be loaded; install {FILE_NAME}, or set {VARIABLE} to its "
                       "path. Tried: " + "; ".join(tried))


class Library:
    """The functions without their prefix: library.call is oxaqry_call()."""

    def __init__(self) -> None:
        waiting = _load()
        quick = ctypes.PyDLL(waiting._name, handle=waiting._handle)
        self.path = waiting._name
        try:
            abi = waiting.oxaqry_abi_version()
            waiting.oxaqry_version.restype = quick.oxaqry_last_error.restype = c_char_p
            self.version: str = waiting.oxaqry_version().decode()
        except AttributeError as error:
            raise LibraryError(f"{self.path} is no library of oxaqrycln: {error}") from None
        if abi != ABI_VERSION:
            raise LibraryError(f"{self.path} has version {abi} of the C interface (component {self.version}); this "
                               f"package needs version {ABI_VERSION}")
        self.last_error = quick.oxaqry_last_error
        for name, types in _FUNCTIONS.items():
            function = getattr(waiting if name in _WAITING else quick, "oxaqry_" + name)
            function.argtypes = types
            setattr(self, name, function)

    def __getattr__(self, name: str) -> Any:
        raise AttributeError(name)

    def error(self, code: int) -> Error:
        """What a code of the last call of this thread is raised as."""
        text = self.last_error().decode()
        if code == _E_TEXT:
            position = c_size_t()
            self.error_position(ctypes.byref(position))
            text = f"character {position.value} has no place in the archive's code page (Windows-1252)"
        elif code == _E_HANDLE:
            text = "the query or archive is closed, or the thread that made it has ended"
        elif code == _E_MEMORY:
            text = "out of memory"
        return _ERRORS.get(code, Error)(text)

    def check(self, code: int) -> None:
        if code != 0:
            raise self.error(code)


library = Library()
