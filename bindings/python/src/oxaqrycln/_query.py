"""The core of raw.Query: a query of the library with its values, calls, lists and watch.

A method's argument number i always travels in value number i, so that the array of a call is made once."""
from __future__ import annotations

import ctypes
from array import array
from collections import namedtuple
from ctypes import byref, c_double, c_int32, c_int64, c_size_t, c_uint32, c_void_p, string_at
from datetime import datetime, timedelta
from typing import Any, Callable, Dict, List, NamedTuple, Optional, Sequence, Tuple, Type

from . import _interrupt
from . import _library as lib
from ._library import library
from .errors import BadArgument, Error

_EPOCH = datetime(1899, 12, 30)
_MOST_ARGUMENTS = 24
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
    result: Callable[..., Any]  # makes what the call returns, of the result and the outputs

    def arguments(self, given: Tuple[Any, ...], named: Dict[str, Any]) -> List[Any]:
        """One for each parameter. Raises TypeError as a call of a Python function does."""
        if len(given) > len(self.parameters):
            raise TypeError(f"{self.name}() takes {len(self.parameters)} arguments, but {len(given)} were given")
        arguments = list(given)
        for name, kind in self.parameters[len(given):]:
            if name in named:
                arguments.append(named.pop(name))
            elif kind in (IN, IN_OUT):
                raise TypeError(f"{self.name}() needs the argument {name}")
            else:
                arguments.append(None if kind == OPTIONAL_OUT else LEFT_OUT)
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
        self._array = (c_void_p * _MOST_ARGUMENTS)()
        self._result = self._value(0)
        self._number, self._text = c_int32(), _Text()
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
        library.value_kind(handle, byref(self._number))
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
        library.check(library.value_get_long(handle, byref(self._number)))
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
        if self._is_running:  # a signal handler may have come here
            raise Error(f"{method.name}: another call of the query is running")
        self._is_running = True
        try:
            self._value(len(arguments))
            for i, argument in enumerate(arguments):
                if argument is LEFT_OUT:
                    self._array[i] = None
                else:
                    value = self._values[i + 1]
                    self._array[i] = value.value
                    self._assign(value, argument)
            if method.waits:
                code = _interrupt.run(lambda: self._run(method, len(arguments)), self._interrupt, self._resume_interrupted)
            else:
                code = self._run(method, len(arguments))
            if code:
                raise library.error(code)
            result = self._read(self._result) if method.type else None
            if not method.outputs:
                return result
            return method.result(result, *[None if arguments[i] is LEFT_OUT else self._read(self._values[i + 1])
                                           for i in method.outputs])
        finally:
            self._is_running = False

    def _run(self, method: Method, count: int) -> int:
        return int(library.call(self._query, method.number, self._array, count, self._result))

    def fetch_rows(self, method: str, columns: Sequence[str] = (), *, max: int, every_row: bool = False) -> Rows:
        """Calls a method that reads the next record until the list ends, or max rows are read, in one crossing. A row is
        its result and the outputs that columns names. every_row: only max ends the list, for methods that also return
        "" for an empty text. handled_error() tells whether a record could not be read."""
        entry: Method = getattr(type(self), method).method
        names = [parameter.name for parameter in entry.parameters]
        for column in columns:
            if column not in names:
                raise TypeError(f"{method}() has no output {column}")
        positions = (c_int32 * len(columns))(*(names.index(column) for column in columns))
        handle = c_void_p()
        library.check(library.fetch_rows(self._query, entry.number, max, positions, len(columns),
                                         lib.EVERY_ROW if every_row else lib.UNTIL_END, lib.WINDOWS_1252, byref(handle)))
        try:
            rows, width, block, offsets = c_int32(), c_int32(), c_void_p(), ctypes.POINTER(c_uint32)()
            library.check(library.rows_read(handle, byref(rows), byref(width), byref(block), byref(offsets)))
            count = rows.value * width.value
            return Rows(rows.value, width.value, string_at(block.value or 0, offsets[count]),
                        string_at(offsets, 4 * (count + 1)))
        finally:
            library.rows_free(handle)

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
        library.check(library.handled_error(self._query, byref(self._number), *self._text.references))
        return self._number.value, str(self._text)

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

    def _resume_interrupted(self) -> None:
        if not self._is_cancelled:
            library.resume(self._query)

    def servers(self) -> List[Server]:
        """The query servers of the thread; none before RemoteHosts was assigned."""
        library.check(library.server_count(self._query, byref(self._number)))
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
