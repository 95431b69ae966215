"""Ctrl-C during a request: Python runs its signal handlers only when the call of the library has ended, so a thread of
its own reads the signal as it arrives and cancels the request of the main thread."""
from __future__ import annotations

import os
import signal
import socket
import threading
from typing import Any, Callable, Optional, Protocol, Tuple

class Query(Protocol):
    def _interrupt(self) -> None: ...
    def _end_interrupt(self) -> None: ...


class _Watcher:
    """Reads the numbers of the signals that arrive while the main thread waits. One per process."""

    def __init__(self) -> None:
        self.reader, self.writer = socket.socketpair()
        self.writer.setblocking(False)
        self.descriptor = self.writer.fileno()
        self.lock = threading.Lock()
        self.query: Optional[Query] = None  # whose request is running
        self.is_cancelled = False
        self.former = -1  # the descriptor to which the host has signals written
        threading.Thread(target=self._read, name="oxaqrycln-signals", daemon=True).start()

    def _read(self) -> None:
        while True:
            numbers = self.reader.recv(64)
            with self.lock:
                if self.former >= 0:
                    try:
                        os.write(self.former, numbers)
                    except OSError:
                        pass  # the host has closed it
                if self.query and signal.SIGINT in numbers:
                    self.is_cancelled = True
                    self.query._interrupt()

    def run(self, query: Query, function: Callable[..., int], arguments: Tuple[Any, ...]) -> int:
        former = -1
        try:
            former = signal.set_wakeup_fd(self.descriptor)
            with self.lock:
                self.former, self.query = former, query
            return function(*arguments)
        finally:
            with self.lock:
                self.query = None
            try:
                signal.set_wakeup_fd(former)
            except (OSError, ValueError):  # the host has closed it
                signal.set_wakeup_fd(-1)
            if self.is_cancelled:
                self.is_cancelled = False
                query._end_interrupt()


_watcher: Optional[_Watcher] = None


def _forget() -> None:
    global _watcher
    _watcher = None  # its thread is the parent's


if hasattr(os, "register_at_fork"):
    os.register_at_fork(after_in_child=_forget)


def run(query: Query, function: Callable[..., int], arguments: Tuple[Any, ...]) -> int:
    """Calls a function that waits for a request of the query. Ctrl-C cancels it, when it runs on the main thread."""
    global _watcher
    if threading.get_ident() != threading.main_thread().ident:
        return function(*arguments)
    if _watcher is None:
        _watcher = _Watcher()
    return _watcher.run(query, function, arguments)
