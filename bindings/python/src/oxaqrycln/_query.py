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
from typing import Any, Callable, Dict, List, NamedTuple, Optional, Sequence, Tuple, Type

from . import _interrupt
from . import _library as lib
from ._library import library
from .errors import BadArgument, Error

_EPOCH = datetime(1899, 12, 30)
_MOST_ARGUMENTS = 24
_MOST_TEXTS = _MOST_ARGUMENTS + 1
_POINTER = ctypes.sizeof(c_void_p)
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


class Outcome(NamedTuple):
    """The last request: kind is an oxaqry_outcome_kind."""

    kind: int
    text: str
    milliseconds: int
    was_sent: bool
    attempts: Tuple[Tuple[str, int, str, int], ...]  # host, port, error, milliseconds


NO_REQUEST, SUCCEEDED, REFUSED, TIMED_OUT, CONNECTION_FAILED, ALL_BUSY, CANCELLED, FAILED = range(8)


class Server(NamedTuple):
    """A query server of the thread."""

    host: str
    port: int
    takes_print_requests: bool
    is_busy: bool
    since: Optional[datetime]  # None while it is not busy
    session: str
    failures: int  # of its last connects and requests, in a row


class Progress(NamedTuple):
    """Bytes of the running request; announced is the length of the answer, 0 while that is unknown."""

    sent: int
    received: int
    announced: int


class _Text:
    """Where the library writes a text: a pointer and a number of bytes."""

    def __init__(self) -> None:
        self.pointer, self.length = c_void_p(), c_size_t()
        self.references = byref(self.pointer), byref(self.length)

    def bytes(self) -> bytes:
        return string_at(self.pointer.value or 0, self.length.value) if self.length.value else b""

    def __str__(self) -> str:
        return self.bytes().decode()


class _Texts:
    """The same for several texts."""

    def __init__(self) -> None:
        self.pointers, self.lengths = (c_void_p * _MOST_TEXTS)(), (c_size_t * _MOST_TEXTS)()


class _RowsRead:
    """Where the library writes a list."""

    def __init__(self) -> None:
        self.handle, self.count, self.width = c_void_p(), c_int32(), c_int32()
        self.block, self.offsets = c_void_p(), ctypes.POINTER(c_uint32)()
        self.handle_reference = byref(self.handle)
        self.references = byref(self.count), byref(self.width), byref(self.block), byref(self.offsets)


@lru_cache(maxsize=None)
def _plan(method: Method, columns: Tuple[str, ...]) -> Tuple[int, Any]:
    """The number of the method, and the positions of its outputs."""
    names = [parameter.name for parameter in method.parameters]
    for column in columns:
        if column not in names:
            raise TypeError(f"{method.name}() has no output {column}")
    return method.number, (c_int32 * len(columns))(*(names.index(column) for column in columns))


def _handle(make: Callable[[Any], int]) -> c_void_p:
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
    return int(library.value_set_date(handle, (value - _EPOCH) // _SECOND))


_SETTERS: Dict[type, Callable[[c_void_p, Any], Any]] = {
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


class QueryCore:
    """Belongs to the thread that made it. May be dropped on any thread."""

    def __init__(self) -> None:
        self._query = _handle(library.query_new)
        self._values: List[c_void_p] = []
        self._handles: List[Optional[int]] = []
        self._array = (c_void_p * _MOST_ARGUMENTS)()
        self._result = self._value(0)
        self._number, self._text, self._texts, self._rows = c_int32(), _Text(), _Texts(), _RowsRead()
        self._number_reference = byref(self._number)
        self._held: List[Any] = [LEFT_OUT] * _MOST_TEXTS  # what the values hold as inputs of call_for_texts()
        self._is_running = self._is_cancelled = False

    def close(self) -> None:
        """Closes what the query has open and gives its query server back. Leaves a query of the parent process alone."""
        if self._is_running:
            raise Error("a call of the query is running")
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
            self._values.append(_handle(library.value_new))
            self._handles.append(self._values[-1].value)
        return self._values[number]

    def _assign(self, handle: c_void_p, value: Any) -> None:
        setter = _SETTERS.get(type(value))
        if setter is None:
            setter = next((each for kind, each in _SETTERS.items() if isinstance(value, kind)), None)
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
        return _EPOCH + timedelta(seconds=seconds.value)

    def _read_bytes(self, handle: c_void_p) -> bytes:
        library.check(library.value_get_bytes(handle, *self._text.references))
        return self._text.bytes()

    # ---- Members ----

    def _get(self, number: int) -> Any:
        library.check(library.get_variable(self._query, number, self._result))
        return self._read(self._result)

    def _set(self, number: int, value: Any) -> None:
        self._assign(self._result, value)
        library.check(library.set_variable(self._query, number, self._result))

    def _call(self, method: Method, given: Tuple[Any, ...], named: Dict[str, Any]) -> Any:
        arguments = method.arguments(given, named)
        self._enter(method)
        try:
            self._value(len(arguments))
            for i, argument in enumerate(arguments):
                if argument is LEFT_OUT:
                    self._array[i] = None
                else:
                    value = self._values[i + 1]
                    self._array[i] = self._handles[i + 1]
                    self._held[i] = LEFT_OUT
                    self._assign(value, argument)
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
        self._enter(method)
        try:
            self._value(count)
            self._array[:count] = self._handles[1:count + 1]  # type: ignore[assignment]
            first = len(inputs) - 1
            for i, given in enumerate(inputs):
                if given != self._held[i]:  # most inputs are those of the call before
                    self._held[i] = LEFT_OUT
                    self._assign(self._values[i + 1], given)
                    self._held[i] = given
            self._held[first + 1:count] = [LEFT_OUT] * (count - first - 1)
            library.value_set_empty(self._values[count])
            self._run(method, count)
            self._array[first] = self._handles[0]
            texts = self._texts
            library.check(library.value_get_texts(byref(self._array, first * _POINTER), count - first, lib.UTF8,
                                                  texts.pointers, texts.lengths))
            return [string_at(texts.pointers[i] or 0, texts.lengths[i]).decode() if texts.lengths[i] else ""
                    for i in range(count - first)]
        finally:
            self._is_running = False

    def _enter(self, method: Method) -> None:
        if self._is_running:  # a signal handler may have come here
            raise Error(f"{method.name}: another call of the query is running")
        self._is_running = True

    def _run(self, method: Method, count: int) -> None:
        arguments = self._query, method.number, self._array, count, self._result
        code = _interrupt.run(self, library.call, arguments) if method.waits else library.call(*arguments)
        if code:
            raise library.error(code)

    def fetch_rows(self, method: str, columns: Sequence[str] = (), *, max: int, every_row: bool = False) -> Rows:
        """Calls a method that reads the next record until the list ends, or max rows are read, in one crossing. A row is
        its result and the outputs that columns names. every_row: only max ends the list, for methods that also return
        "" for an empty text. handled_error() tells whether a record could not be read."""
        number, positions = _plan(getattr(type(self), method).method, tuple(columns))
        rows = self._rows
        library.check(library.fetch_rows(self._query, number, max, positions, len(positions),
                                         lib.EVERY_ROW if every_row else lib.UNTIL_END, lib.WINDOWS_1252,
                                         rows.handle_reference))
        try:
            library.check(library.rows_read(rows.handle, *rows.references))
            count = rows.count.value * rows.width.value
            offsets = string_at(rows.offsets, 4 * (count + 1))
            length = int.from_bytes(offsets[-4:], sys.byteorder)
            return Rows(rows.count.value, rows.width.value, string_at(rows.block.value or 0, length), offsets)
        finally:
            library.rows_free(rows.handle)

    # ---- The watch ----

    def outcome(self) -> Outcome:
        """What became of the last request."""
        kind, count, was_sent, elapsed, text = c_int32(), c_int32(), c_int32(), c_int64(), _Text()
        library.check(library.outcome(self._query, byref(kind), byref(elapsed), byref(was_sent), byref(count)))
        library.check(library.outcome_text(self._query, *text.references))
        return Outcome(kind.value, str(text), elapsed.value, bool(was_sent.value),
                       tuple(self._attempt(i) for i in range(count.value)))

    def _attempt(self, index: int) -> Tuple[str, int, str, int]:
        host, port, error, elapsed = _Text(), c_int32(), _Text(), c_int64()
        library.check(library.attempt(self._query, index, *host.references, byref(port), *error.references,
                                      byref(elapsed)))
        return str(host), port.value, str(error), elapsed.value

    def handled_error(self) -> Tuple[int, str]:
        """The number and the text of the first error that the last method handled; 0 without one."""
        number = self.error_number()
        if not number:
            return 0, ""
        library.check(library.handled_error(self._query, None, *self._text.references))
        return number, str(self._text)

    def error_number(self) -> int:
        """The number alone."""
        code = library.handled_error(self._query, self._number_reference, None, None)
        if code:
            raise library.error(code)
        return self._number.value

    def progress(self) -> Progress:
        """From any thread."""
        sent, received, announced = c_int64(), c_int64(), c_int64()
        library.check(library.progress(self._query, byref(sent), byref(received), byref(announced)))
        return Progress(sent.value, received.value, announced.value)

    def cancel(self) -> None:
        """Ends the running request, and each later one at once, until resume(). From any thread."""
        self._is_cancelled = True
        library.check(library.cancel(self._query))

    def resume(self) -> None:
        self._is_cancelled = False
        library.check(library.resume(self._query))

    def _interrupt(self) -> None:
        library.cancel(self._query)

    def _end_interrupt(self) -> None:
        if not self._is_cancelled:
            library.resume(self._query)

    def servers(self) -> List[Server]:
        """The query servers of the thread; none before RemoteHosts was assigned."""
        library.check(library.server_count(self._query, self._number_reference))
        return [self._server(i) for i in range(self._number.value)]

    def _server(self, index: int) -> Server:
        host, port, prints, busy, since, session = _Text(), c_int32(), c_int32(), c_int32(), c_int64(), _Text()
        library.check(library.server(self._query, index, *host.references, byref(port), byref(prints), byref(busy),
                                     byref(since), *session.references))
        names = str(host), str(session)  # borrowed until the next call
        failures = c_int32()
        library.check(library.server_failures(self._query, index, byref(failures)))
        since_when = _EPOCH + timedelta(seconds=since.value) if busy.value else None
        return Server(names[0], port.value, bool(prints.value), bool(busy.value), since_when, names[1], failures.value)

    def set_sick_servers(self, policy: int) -> None:
        """How the query chooses a server from now on: an oxaqry_sick_servers."""
        library.check(library.set_sick_servers(self._query, policy))


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
