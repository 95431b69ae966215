"""What the package raises: one exception type for each kind of failure, so that a page decides by the type and never by
a text."""
from __future__ import annotations

from datetime import timedelta
from typing import NamedTuple, Tuple


class Attempt(NamedTuple):
    """One attempt to carry a request out."""

    host: str
    port: int
    error: str  # "10061 - ...", "no answer", "cancelled", ...; "" when the server answered
    milliseconds: int

    @property
    def server(self) -> str:
        return f"{self.host},{self.port}"


class RequestReport(NamedTuple):
    """What became of a request. Empty for an error that came before any request."""

    attempts: Tuple[Attempt, ...] = ()  # in the order in which the servers were tried
    elapsed: timedelta = timedelta()
    was_sent: bool = False  # a server may have carried the request out


class Error(Exception):
    """The base of all of them, and itself an error of the component: an answer that cannot be read, a file that cannot
    be written, no memory."""

    def __init__(self, text: str, report: RequestReport = RequestReport()) -> None:
        super().__init__(text)
        self.text = text  # of Refused the server's own text
        self.report = report

    @property
    def attempts(self) -> Tuple[Attempt, ...]:
        return self.report.attempts

    @property
    def elapsed(self) -> timedelta:
        return self.report.elapsed

    @property
    def was_sent(self) -> bool:
        return self.report.was_sent


class Refused(Error):
    """The server reports that it does not carry the request out."""


class TimedOut(Error):
    """The time-out of the archive has passed."""


class ConnectionFailed(Error):
    """No server could be reached, or the connection broke."""


class AllServersBusy(Error):
    """All servers are in use by other requests of this thread, and none was tried."""


class Cancelled(Error):
    """Archive.cancel() was called, or Ctrl-C pressed, with a handler that raises nothing."""


class BadArgument(Error, ValueError):
    """A value that cannot be sent, or settings that do not fit. Raised before any request."""


class DatabaseFailed(Error):
    """The web user database cannot be opened, or refused a statement."""


class WrongThread(Error):
    """The object belongs to another thread, or to the parent process of a forked one."""


class LibraryError(ImportError):
    """The shared library of the component cannot be loaded, or does not fit this package."""
