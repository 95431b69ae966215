"""A query with its settings, and the one place where failures of the class become exceptions."""
from __future__ import annotations

import itertools
import os
import threading
from dataclasses import dataclass, field
from datetime import datetime, timedelta
from pathlib import Path
from typing import Any, Callable, Dict, Iterator, List, NoReturn, Optional, Sequence, Type, Union

from . import _watch as watch
from . import raw
from ._library import TRIED_LAST
from .errors import (AllServersBusy, Attempt, BadArgument, Cancelled, ConnectionFailed, DatabaseFailed, Error, Refused,
                     RequestReport, TimedOut)
from .text import decode, fields, number_of, request_text, setting_text

FilePath = Union[str, "os.PathLike[str]"]

_INVALID_CALL, _OUT_OF_MEMORY, _OBJECT_NOT_SET = 5, 7, 91
_FAILURES: Dict[int, Type[Error]] = {
    watch.REFUSED: Refused, watch.TIMED_OUT: TimedOut, watch.CONNECTION_FAILED: ConnectionFailed,
    watch.ALL_BUSY: AllServersBusy, watch.CANCELLED: Cancelled}
# What an attempt without an error of its own came to; only the last one ends as the request does.
_ATTEMPTS = {watch.SUCCEEDED: "", watch.REFUSED: "", watch.CANCELLED: "cancelled", watch.FAILED: "failed"}

_thread_numbers = itertools.count()
_thread = threading.local()


@dataclass(frozen=True)
class Settings:
    """How a page reaches the archive and the web users. Those that may hold a password are not shown."""

    hosts: str = field(default="", repr=False)  # "host,port[,print flag[,user[,encoded password]]]", joined by "|"
    user: str = ""  # account of the archive system
    password: str = field(default="", repr=False)
    timeout: int = 30  # seconds for one request, with all servers that are tried
    session: str = ""  # names the log file, "" for "client"
    log_dir: FilePath = ""  # "" logs nothing
    blob_local: FilePath = ""  # directory of received files as this machine reaches it
    blob_remote: str = ""  # the same one as the query servers reach it; "" for the local path
    database: str = field(default="", repr=False)  # connection string of the web user database; "" for none
    changed_extensions: str = ""  # "OLD-NEW" rules for the extensions of received files, separated by ","
    web_user: str = ""  # as the log names him
    web_user_address: str = ""
    web_user_logon: Optional[datetime] = None
    # Starts the list of servers at a place of each process's and thread's own, so that workers share them out.
    spread: bool = True


def _spread(hosts: str) -> str:
    """The list from another server on, the same one whenever this thread asks."""
    if not hasattr(_thread, "number"):
        _thread.number = next(_thread_numbers)
    entries = hosts.split("|")
    start = (os.getpid() + _thread.number) % len(entries)
    return "|".join(entries[start:] + entries[:start])


def _address(entry: str) -> str:
    host, port = entry.split(",")[:2]
    return f"{host},{number_of(port)}"


class Access:
    """Belongs to the thread that made it. Opens the database when the settings name one. Without hosts no request can be
    made. Raises BadArgument, DatabaseFailed, Error."""

    def __init__(self, settings: Settings) -> None:
        if not 1 <= settings.timeout <= 86400:
            raise BadArgument("the time-out must be from 1 second to a day")
        self.on_request: Optional[Callable[[RequestReport], None]] = None
        self._reported = 0  # the number of the last request that on_request was told
        query = self.query = raw.Query()
        query.lngRequestTimeout = settings.timeout
        query.strTELOUser = request_text(settings.user, "the user")
        query.strTELOPwd = setting_text(settings.password, "the password")
        query.strSessionID = request_text(settings.session or "client", "the session")
        query.strBlobPathLocal = setting_text(os.fspath(settings.blob_local), "the local blob directory")
        query.strBlobPathRemote = setting_text(settings.blob_remote or query.strBlobPathLocal,
                                               "the remote blob directory")
        query.strChangeFileExt = setting_text(settings.changed_extensions, "the changed extensions")
        query.strUserName = setting_text(settings.web_user, "the web user")
        query.strUserIP = setting_text(settings.web_user_address, "the address of the web user")
        if settings.web_user_logon:
            query.datUserLoginTime = settings.web_user_logon
        query.strDBConnect = setting_text(settings.database, "the database")
        log = setting_text(os.fspath(settings.log_dir), "the log directory")
        hosts = setting_text(settings.hosts, "the list of query servers")
        if hosts:
            self._use_servers(_spread(hosts) if settings.spread else hosts)
        self._initialise(log)

    def _use_servers(self, hosts: str) -> None:
        is_first = not self.query.servers()
        self.query.RemoteHosts = hosts
        number, text = self.query.handled_error()
        if number:
            raise BadArgument(f"the list of query servers is not valid: {number} - {text}")
        # The servers of a thread are those that its first query named.
        used = sorted(f"{server.host},{server.port}" for server in self.query.servers())
        if not is_first and used != sorted(map(_address, hosts.split("|"))):
            raise BadArgument("this thread already uses other query servers: an archive with these needs another thread")
        self.query.set_sick_servers(TRIED_LAST)

    # Init would write the connection string, which may hold a password, into the log.
    def _initialise(self, log: str) -> None:
        query = self.query
        has_database = bool(query.strDBConnect)
        if not has_database:
            query.strDebugLogPath = log
        if not query.Init(has_database):
            number, text = query.handled_error()
            if has_database:
                raise DatabaseFailed(f"the web user database cannot be opened: {number} - {text}")
            raise Error(f"the component cannot be initialised: {number} - {text}")
        query.strDebugLogPath = log

    # ---- What became of a call ----

    def count(self, result: Any, status: Optional[str]) -> int:
        """Of a method that makes a request: its count. Raises what the failure was."""
        if self.on_request:
            self._report_request(self.on_request)
        count = 0 if isinstance(result, str) else int(result)  # the archive properties are a text
        if count < 0 and not status:  # only a failed request writes the status
            self._raise_own_failure()
        if count < 0:
            self._raise_failure(status or "")
        if self.query.error_number() == _OUT_OF_MEMORY:
            raise Error("out of memory: the answer is not complete")
        return count

    def answer(self, result: str) -> str:
        """The same for a method that returns the text of an answer or of an error."""
        if self.on_request:
            self._report_request(self.on_request)
        if self.query.outcome().kind != watch.SUCCEEDED:
            self._raise_failure(result)
        return result

    def _report_request(self, on_request: Callable[[RequestReport], None]) -> None:
        """When there was a new one: a method may fail before it makes one."""
        number = self.query.request_number()
        if number != self._reported:
            self._reported = number
            on_request(self.report())

    def check_own(self, what: str) -> None:
        """Of a method that makes no request: raises an Error when it failed."""
        number, text = self.query.handled_error()
        if number:
            raise Error(f"{what}: {number} - {text}")

    def check_database(self) -> None:
        """Of a method on the database."""
        number, text = self.query.handled_error()
        if number == _OBJECT_NOT_SET:
            raise BadArgument("the settings name no web user database")
        if number == _INVALID_CALL:  # a text that must not be part of a statement
            raise BadArgument(f"{number} - {text}")
        if number:
            raise DatabaseFailed(f"{number} - {text}")

    def report(self) -> RequestReport:
        """Of the last request."""
        outcome = self.query.outcome()
        missing = _ATTEMPTS.get(outcome.kind, "no answer")
        return RequestReport(tuple(Attempt(host, port, error or missing, elapsed)
                                   for host, port, error, elapsed in outcome.attempts),
                             timedelta(milliseconds=outcome.milliseconds), outcome.was_sent)

    def _raise_failure(self, text: str) -> NoReturn:
        raise _FAILURES.get(self.query.outcome().kind, Error)(text, self.report())

    def _raise_own_failure(self) -> NoReturn:
        number, text = self.query.handled_error()
        raise Error(f"{number} - {text}" if number else "the answer of the query server is empty")

    # ---- Lists ----

    def rows(self, method: str, columns: Sequence[str], count: int, what: str) -> raw.Rows:
        """The records of an answer in one crossing. Raises Error when one cannot be read."""
        rows = self.query.fetch_rows(method, columns, max=count, every_row=True)
        if rows.row_count < count:
            number, text = self.query.handled_error()
            raise Error(f"{what} {rows.row_count + 1} of the answer is malformed: {number} - {text}")
        return rows

    def records(self, method: str, columns: Sequence[str], count: int, what: str) -> Iterator[List[str]]:
        """The same, each record as its texts: the result, then the columns."""
        rows = self.rows(method, columns, count, what)
        text, positions, width = decode(rows.text), rows.positions(), rows.column_count
        for first in range(0, rows.row_count * width, width):
            yield [text[positions[i]:positions[i + 1]] for i in range(first, first + width)]


def database_records(text: Optional[str], field_count: int) -> List[List[str]]:
    """The lines of a list from the database, each a record of that many fields. Raises DatabaseFailed for another
    one."""
    records = [fields(line.strip("\r")) for line in (text or "").split("\n") if line.strip("\r")]
    if any(len(record) != field_count for record in records):
        raise DatabaseFailed('a list of the database is malformed: a value holds "^,^" or a line end')
    return records


def blob_directory(settings: Settings) -> Path:
    """As this machine reaches it. Raises BadArgument when the settings name none."""
    directory = os.fspath(settings.blob_local)
    if not directory:
        raise BadArgument("the settings name no local blob directory")
    return Path(directory.replace("\\", "/"))


def path_text(path: FilePath) -> str:
    """A path as the class takes it, which separates its parts with "/" and "\\". Raises BadArgument."""
    text = os.fspath(path)
    if os.sep == "/" and "\\" in text:
        raise BadArgument(f'the path "{text}" holds a "\\"')
    return request_text(text, f'the path "{text}"')
