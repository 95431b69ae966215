"""The core of raw.Query: a query of the library with its values, calls, lists and watch.

A method's argument number i always travels in value number i, so that the array of a call is made once."""
from __future__ import annotations

import ctypes
import sys
from array import array
from collections import namedtuple
from ctypes import byref, c_double, c_int32, c_int64, c_size_t, c_uint32, c_void_p, string_at
from datetime import datetime, timedelta
from functools import lru_cache
from threading import get_ident
from typing import Any, Callable, Dict, List, NamedTuple, Optional, Protocol, Sequence, Tuple, Type
from weakref import ReferenceType

from . import _interrupt
from . import _library as lib
from ._library import library
from ._values import EPOCH, LEFT_OUT, NULL, SETTERS, Byte, Integer, Text, new_handle
from ._watch import QueryWatch, ServerHealth
from .errors import BadArgument, Error, WrongThread

_MOST_ARGUMENTS = 24
_MOST_TEXTS = _MOST_ARGUMENTS + 1
_MOST_ROWS = 0x7FFFFFFF
_NOTHING_HELD: List[Any] = [LEFT_OUT] * _MOST_TEXTS


class Parameter(NamedTuple):
    name: str
    kind: int  # IN, OPTIONAL_IN, OPTIONAL_OUT or IN_OUT


IN, OPTIONAL_IN, OPTIONAL_OUT, IN_OUT = range(4)


class Method(NamedTuple):
    name: str
    number: int
    parameters: Tuple[Parameter, ...]
    type: int  # of the result, 0 without one
    waits: bool  # it makes a request
    outputs: Tuple[int, ...]  # positions among the parameters
    required: int  # how many parameters must be given
    defaults: Tuple[Any, ...]  # of all parameters
    result: Any  # the named tuple of the result and the outputs; None without outputs

    def arguments(self, given: Tuple[Any, ...], named: Dict[str, Any]) -> List[Any]:
        """One for each parameter. Raises TypeError as a call of a Python function does."""
        if not named and self.required <= len(given) <= len(self.parameters):
            return [*given, *self.defaults[len(given):]]
        if len(given) > len(self.parameters):
            raise TypeError(f"{self.name}() takes {len(self.parameters)} arguments, but {len(given)} were given")
        arguments = list(given)
        for i, (name, _) in enumerate(self.parameters[len(given):], len(given)):
            if name not in named and i < self.required:
                raise TypeError(f"{self.name}() needs the argument {name}")
            arguments.append(named.pop(name, self.defaults[i]))
        if named:
            raise TypeError(f"{self.name}() has no further argument {next(iter(named))}")
        return arguments


class Rows(NamedTuple):
    """A list of the class in one block: the text number row * columns + column, both from 0, ends at offsets[number +
    1], where the next one begins. Offsets count characters."""

    row_count: int
    column_count: int
    text: bytes  # Windows-1252
    offsets: bytes  # 32-bit numbers

    def positions(self) -> List[int]:
        numbers = array("I")
        numbers.frombytes(self.offsets)
        return numbers.tolist()


class _Texts:
    """Where the library writes several texts."""

    def __init__(self) -> None:
        self.pointers, self.lengths = (c_void_p * _MOST_TEXTS)(), (c_size_t * _MOST_TEXTS)()


class _RowsRead:
    """Where the library writes a list."""

    def __init__(self) -> None:
        self.handle, self.count, self.width = c_void_p(), c_int32(), c_int32()
        self.block, self.offsets = c_void_p(), ctypes.POINTER(c_uint32)()
        self.references = byref(self.count), byref(self.width), byref(self.block), byref(self.offsets)


@lru_cache(maxsize=None)
def _plan(method: Method, columns: Tuple[str, ...]) -> Tuple[int, Any]:
    """The number of the method, and the positions of its outputs."""
    names = [parameter.name for parameter in method.parameters]
    for column in columns:
        if column not in names:
            raise TypeError(f"{method.name}() has no output {column}")
    return method.number, (c_int32 * len(columns))(*(names.index(column) for column in columns))


class UnreadList(Protocol):
    """A list whose records are still in the query. Keeps what goes wrong while it takes them."""

    def take_records(self) -> None: ...


class QueryCore(QueryWatch):
    """Belongs to the thread that made it. May be dropped on any thread."""

    # So that the assignment to a variable whose name is misspelt is an error.
    __slots__ = ("_values", "_handles", "_array", "_arguments", "_result", "_text", "_texts", "_held", "_unread", "_thread",
                 "_is_running", "__weakref__")

    def __init__(self) -> None:
        super().__init__()
        self._query = new_handle(library.query_new)
        self._values: List[c_void_p] = []
        self._handles: List[Optional[int]] = []
        self._array = (c_void_p * _MOST_ARGUMENTS)()
        self._arguments = c_void_p(ctypes.addressof(self._array))
        self._result = self._value(0)
        self._text, self._texts = Text(), _Texts()
        self._held = _NOTHING_HELD.copy()  # what the values hold as inputs of call_for_texts()
        self._unread: Optional[ReferenceType[UnreadList]] = None
        self._thread, self._is_running = get_ident(), False

    @property
    def is_closed(self) -> bool:
        """Whether close() was called."""
        return not self._query

    def close(self) -> None:
        """Closes what the query has open and gives its query server back. Leaves a query of the parent process alone."""
        if self._is_running:
            raise Error("a call of the query is running")
        if self._unread and self._thread == get_ident():
            self.read_unread()
        query, self._query = self._query, c_void_p()
        library.query_free(query)
        for value in self._values:
            library.value_free(value)
        self._values.clear()
        self._handles.clear()

    # The library frees what is dropped on another thread when the owner next calls it. Its answer tells nothing new.
    def __del__(self, free_query: Any = library.query_free, free_value: Any = library.value_free) -> None:
        free_query(getattr(self, "_query", None))
        for value in getattr(self, "_values", ()):
            free_value(value)

    # ---- Values ----

    def _value(self, number: int) -> c_void_p:
        """The value for the argument of a number from 1, or for the result."""
        while len(self._values) <= number:
            self._values.append(new_handle(library.value_new))
            self._handles.append(self._values[-1].value)
        return self._values[number]

    def _assign(self, handle: c_void_p, value: Any) -> None:
        setter = SETTERS.get(type(value))
        if setter is None:
            setter = next((each for kind, each in SETTERS.items() if isinstance(value, kind)), None)
        if setter is None:
            raise TypeError(f"a value of the type {type(value).__name__} cannot be passed")
        code = setter(handle, value)
        if code:
            raise library.error(code)

    def _read(self, handle: c_void_p) -> Any:
        library.value_kind(handle, self._number_reference)
        kind = self._number.value
        return self._read_text(handle) if kind == lib.TEXT else _READERS[kind](self, handle)

    def _read_text(self, handle: c_void_p) -> str:
        text = self._text
        code = library.value_get_text(handle, lib.UTF8, *text.references)
        if code:
            raise library.error(code)
        length = text.length.value
        return string_at(text.pointer.value or 0, length).decode() if length else ""

    def _read_long(self, handle: c_void_p) -> int:
        library.check(library.value_get_long(handle, self._number_reference))
        return self._number.value

    def _read_double(self, handle: c_void_p) -> float:
        number = c_double()
        library.check(library.value_get_double(handle, byref(number)))
        return number.value

    def _read_date(self, handle: c_void_p) -> datetime:
        seconds = c_int64()
        library.check(library.value_get_date(handle, byref(seconds)))
        return EPOCH + timedelta(seconds=seconds.value)

    def _read_bytes(self, handle: c_void_p) -> bytes:
        library.check(library.value_get_bytes(handle, *self._text.references))
        return self._text.bytes()

    # ---- Members ----

    def _get(self, number: int) -> Any:
        self._enter()
        try:
            self._is_running = True
            library.check(library.get_variable(self._query, number, self._result))
            return self._read(self._result)
        finally:
            self._is_running = False

    def _set(self, number: int, value: Any) -> None:
        self._enter()
        try:
            self._is_running = True
            self._assign(self._result, value)
            library.check(library.set_variable(self._query, number, self._result))
        finally:
            self._is_running = False

    def _call(self, method: Method, given: Tuple[Any, ...], named: Dict[str, Any]) -> Any:
        arguments = method.arguments(given, named)
        self._enter()
        try:
            self._is_running = True
            self._value(len(arguments))
            self._array[:len(arguments)] = self._handles[1:len(arguments) + 1]  # type: ignore[assignment]
            self._held[:len(arguments)] = _NOTHING_HELD[:len(arguments)]
            for i, argument in enumerate(arguments):
                if argument is LEFT_OUT:
                    self._array[i] = None
                elif argument is None:
                    library.value_set_empty(self._values[i + 1])
                else:
                    self._assign(self._values[i + 1], argument)
            self._run(method, len(arguments))
            result = self._read(self._result) if method.type else None
            if not method.outputs:
                return result
            return method.result(result, *[None if arguments[i] is LEFT_OUT else self._read(self._values[i + 1])
                                           for i in method.outputs])
        finally:
            self._is_running = False

    def call_for_texts(self, name: str, *inputs: Any) -> List[str]:
        """Calls a method that makes a request with all its inputs. Its result and its outputs as texts, in one crossing:
        when the request failed, the last one tells why and the others are left from an earlier call."""
        method: Method = getattr(type(self), name).method
        count = len(method.parameters)
        self._enter()
        try:
            self._is_running = True
            self._value(count)
            self._array[:count] = self._handles[1:count + 1]  # type: ignore[assignment]
            for i, given in enumerate(inputs):
                if given != self._held[i]:  # most inputs are those of the call before
                    self._held[i] = LEFT_OUT
                    self._assign(self._values[i + 1], given)
                    self._held[i] = given
            self._held[len(inputs):count] = _NOTHING_HELD[len(inputs):count]
            library.value_set_empty(self._values[count])
            texts = self._texts
            code = _interrupt.run(self, library.call_for_texts, (self._query, method.number, self._arguments, count,
                                                                 self._result, lib.UTF8, texts.pointers, texts.lengths))
            if code:
                raise library.error(code)
            lengths = texts.lengths[:count + 1]
            return [string_at(texts.pointers[i] or 0, lengths[i]).decode() if lengths[i] else ""
                    for i in (0, *range(len(inputs) + 1, count + 1))]
        finally:
            self._is_running = False

    def _enter(self) -> None:
        """Before a call, which uses what the query has for calls. Marks nothing itself, so that a signal handler that
        raises cannot leave the mark."""
        if self._thread != get_ident():
            raise WrongThread("the query or archive belongs to another thread; an ArchivePool has an archive for each thread")
        if self._is_running:  # a signal handler has come here
            raise Error("another call of the query is running")
        if self._unread:
            self.read_unread()

    def _run(self, method: Method, count: int) -> None:
        arguments = self._query, method.number, self._arguments, count, self._result
        code = _interrupt.run(self, library.call, arguments) if method.waits else library.call(*arguments)
        if code:
            raise library.error(code)

    def read_later(self, records: UnreadList) -> None:
        """Has a list take its records before the next call of any kind, which may replace them, unless it is dropped
        before."""
        self._unread = ReferenceType(records)

    def read_unread(self) -> None:
        """Has it take them now."""
        if self._thread != get_ident():
            raise WrongThread("the hits are still to be read, on the thread of their archive: call read() of the hit list "
                              "there before another thread uses it")
        unread = self._unread
        records = unread() if unread else None
        try:
            self._unread = None
            if records is not None:
                records.take_records()
        except BaseException:  # of a signal handler, which has interrupted it
            self._unread = unread
            raise

    def fetch_rows(self, method: str, columns: Sequence[str] = (), *, max: int, every_row: bool = False) -> Rows:
        """Calls a method that reads the next record until the list ends, or max rows are read, in one crossing. A row is
        its result and the outputs that columns names. every_row: only max ends the list, for methods that also return
        "" for an empty text. handled_error() tells whether a record could not be read."""
        if not 0 <= max <= _MOST_ROWS:
            raise BadArgument(f"the most rows are 0 to {_MOST_ROWS}")
        number, positions = _plan(getattr(type(self), method).method, tuple(columns))
        rows = _RowsRead()
        self._enter()
        try:
            self._is_running = True
            library.check(library.fetch_rows(self._query, number, max, positions, len(positions),
                                             lib.EVERY_ROW if every_row else lib.UNTIL_END, lib.WINDOWS_1252,
                                             byref(rows.handle)))
            library.check(library.rows_read(rows.handle, *rows.references))
            count = rows.count.value * rows.width.value
            offsets = string_at(rows.offsets, 4 * (count + 1))
            length = int.from_bytes(offsets[-4:], sys.byteorder)
            return Rows(rows.count.value, rows.width.value, string_at(rows.block.value or 0, length), offsets)
        finally:
            self._is_running = False
            library.rows_free(rows.handle)

    def check_servers(self, hosts: str) -> List[ServerHealth]:
        """Asks each server of a list, which is one as RemoteHosts takes it, whether it is alive, up to 16 at once, with the
        account, session, log and time-out of the query."""
        rows, data = _RowsRead(), hosts.encode("utf-8", "surrogatepass")
        self._enter()
        try:
            self._is_running = True
            library.check(_interrupt.run(self, library.check_servers, (self._query, data, len(data), byref(rows.handle))))
            library.check(library.rows_read(rows.handle, *rows.references))
            at = rows.offsets[:rows.count.value * rows.width.value + 1]
            block = string_at(rows.block.value or 0, at[-1])
            texts = [block[start:end].decode() for start, end in zip(at, at[1:])]
            return [ServerHealth(host, int(port), is_alive == "1", text, int(milliseconds))
                    for host, port, is_alive, text, milliseconds in zip(*[iter(texts)] * rows.width.value)]
        finally:
            self._is_running = False
            library.rows_free(rows.handle)


_READERS: Dict[int, Callable[[QueryCore, c_void_p], Any]] = {
    lib.EMPTY: lambda query, value: None,
    lib.NULL: lambda query, value: NULL,
    lib.BOOLEAN: lambda query, value: bool(query._read_long(value)),
    lib.BYTE: lambda query, value: Byte(query._read_long(value)),
    lib.INTEGER: lambda query, value: Integer(query._read_long(value)),
    lib.LONG: QueryCore._read_long,
    lib.DOUBLE: QueryCore._read_double,
    lib.DATE: QueryCore._read_date,
    lib.TEXT: QueryCore._read_text,
    lib.BYTES: QueryCore._read_bytes,
}


def result_type(name: str, fields: Sequence[str]) -> Type[Any]:
    """The named tuple that a method with outputs returns."""
    return namedtuple(name, fields)
