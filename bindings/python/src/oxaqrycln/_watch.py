"""The watch of a query: what became of its last request, control over the running one, and the servers of its thread."""
from __future__ import annotations

from ctypes import byref, c_int32, c_int64, c_void_p
from datetime import datetime, timedelta
from typing import List, NamedTuple, Optional, Tuple

from ._library import library
from ._values import EPOCH, Text


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


class ServerHealth(NamedTuple):
    """Whether a query server is alive."""

    host: str
    port: int
    is_alive: bool
    text: str  # the server's answer, or why there is none
    milliseconds: int


class Progress(NamedTuple):
    """Bytes of the running request; announced is the length of the answer, 0 while that is unknown."""

    sent: int
    received: int
    announced: int


class QueryWatch:
    __slots__ = "_query", "_is_cancelled", "_number", "_number_reference"
    _query: c_void_p

    def __init__(self) -> None:
        self._is_cancelled = False  # by the host
        self._number = c_int32()
        self._number_reference = byref(self._number)

    def request_number(self) -> int:
        """How many requests the query has made: the number of the last one."""
        number = c_int64()
        library.check(library.request_number(self._query, byref(number)))
        return number.value

    def outcome(self) -> Outcome:
        """What became of the last request."""
        kind, count, was_sent, elapsed, text = c_int32(), c_int32(), c_int32(), c_int64(), Text()
        library.check(library.outcome(self._query, byref(kind), byref(elapsed), byref(was_sent), byref(count)))
        library.check(library.outcome_text(self._query, *text.references))
        return Outcome(kind.value, str(text), elapsed.value, bool(was_sent.value),
                       tuple(self._attempt(i) for i in range(count.value)))

    def _attempt(self, index: int) -> Tuple[str, int, str, int]:
        host, port, error, elapsed = Text(), c_int32(), Text(), c_int64()
        library.check(library.attempt(self._query, index, *host.references, byref(port), *error.references,
                                      byref(elapsed)))
        return str(host), port.value, str(error), elapsed.value

    def handled_error(self) -> Tuple[int, str]:
        """The number and the text of the first error that the last method handled; 0 without one."""
        number = self.error_number()
        if not number:
            return 0, ""
        text = Text()
        library.check(library.handled_error(self._query, None, *text.references))
        return number, str(text)

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
        library.resume(self._query)
        if self._is_cancelled:  # also by another thread at this moment
            library.cancel(self._query)

    def servers(self) -> List[Server]:
        """The query servers of the thread; none before RemoteHosts was assigned."""
        library.check(library.server_count(self._query, self._number_reference))
        return [self._server(i) for i in range(self._number.value)]

    def _server(self, index: int) -> Server:
        host, port, prints, busy, since, session = Text(), c_int32(), c_int32(), c_int32(), c_int64(), Text()
        library.check(library.server(self._query, index, *host.references, byref(port), byref(prints), byref(busy),
                                     byref(since), *session.references))
        names = str(host), str(session)  # borrowed until the next call
        failures = c_int32()
        library.check(library.server_failures(self._query, index, byref(failures)))
        since_when = EPOCH + timedelta(seconds=since.value) if busy.value else None
        return Server(names[0], port.value, bool(prints.value), bool(busy.value), since_when, names[1], failures.value)

    def set_sick_servers(self, policy: int) -> None:
        """How the query chooses a server from now on: an oxaqry_sick_servers."""
        library.check(library.set_sick_servers(self._query, policy))
