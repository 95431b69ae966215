"""Ctrl-C during a request: Python runs its signal handlers only when the call of the library has ended, so a thread of
its own reads the signal as it arrives and cancels the request of the main thread."""
from __future__ import annotations

import os
import selectors
import signal
import socket
import threading
from threading import get_ident
from typing import Any, Callable, Optional, Protocol, Tuple


class Query(Protocol):
    def _interrupt(self) -> None: ...
    def _end_interrupt(self) -> None: ...


class _Watcher:
    """Reads the numbers of the signals that arrive while the main thread waits. One per process. Raises ValueError where
    Python takes no signals: in another interpreter than the main one, and on a thread that only seems the main one
    because it was the first to import threading. Raises RuntimeError when no thread can be started any more, at the end of
    the interpreter."""

    def __init__(self) -> None:
        self.former = signal.set_wakeup_fd(-1)  # the descriptor to which the host has signals written
        self.restore()
        self.reader, self.writer = socket.socketpair()
        self.reader.setblocking(False)
        self.writer.setblocking(False)
        self.descriptor = self.writer.fileno()
        self.arrived = selectors.DefaultSelector()
        self.arrived.register(self.reader, selectors.EVENT_READ)
        self.lock = threading.Lock()
        self.thread = get_ident()  # the main one
        self.query: Optional[Query] = None  # whose request is running
        self.is_cancelled = False
        try:
            threading.Thread(target=self._read, name="oxaqrycln-signals", daemon=True).start()
        except RuntimeError:
            self.close()
            raise

    def _read(self) -> None:
        while True:
            self.arrived.select()
            with self.lock:
                self._take()

    def _take(self) -> None:
        """Takes what has arrived, if anything. With the lock, so that nothing is on its way when another request begins."""
        try:
            numbers = self.reader.recv(64)
        except BlockingIOError:
            return
        if self.former >= 0:
            try:
                os.write(self.former, numbers)
            except OSError:
                pass  # the host has closed it
        if self.query and signal.SIGINT in numbers:
            self.is_cancelled = True
            self.query._interrupt()

    def restore(self) -> None:
        """Gives the host its descriptor back."""
        try:
            signal.set_wakeup_fd(self.former)
        except (OSError, ValueError):  # the host has closed it
            signal.set_wakeup_fd(-1)

    def close(self) -> None:
        self.arrived.close()
        self.reader.close()
        self.writer.close()

    def run(self, query: Query, function: Callable[..., int], arguments: Tuple[Any, ...]) -> int:
        if self.query:
            self._end()  # a second signal has interrupted that of the last request
        self.query = query
        try:
            self.former = signal.set_wakeup_fd(self.descriptor)
            return function(*arguments)
        finally:
            self._end()

    # Nothing is lost when a signal handler raises in the middle: whatever is left to do, the next request does first.
    def _end(self) -> None:
        self.restore()
        with self.lock:
            if self.arrived.select(0):  # too late for this request, and not meant for the next one
                self._take()
            if self.is_cancelled and self.query:
                self.query._end_interrupt()
            self.is_cancelled, self.query = False, None


_watcher: Optional[_Watcher] = None
_is_possible = True


def _start() -> Optional[_Watcher]:
    """None on another thread than the main one, and where it is impossible."""
    global _watcher, _is_possible
    if _is_possible and threading.current_thread() is threading.main_thread():
        try:
            _watcher = _Watcher()
        except (ValueError, RuntimeError):
            _is_possible = False
    return _watcher


def _forget() -> None:
    """In a forked child, which has the descriptors of the parent's watcher but not its thread."""
    global _watcher, _is_possible
    if _watcher:
        if _watcher.query:  # another thread has forked
            _watcher.restore()
        _watcher.close()
    _watcher, _is_possible = None, True


if hasattr(os, "register_at_fork"):
    os.register_at_fork(after_in_child=_forget)


def run(query: Query, function: Callable[..., int], arguments: Tuple[Any, ...]) -> int:
    """Calls a function that waits for a request of the query. Ctrl-C cancels it, when it runs on the main thread."""
    watcher = _watcher or _start()
    if watcher and watcher.thread == get_ident():
        return watcher.run(query, function, arguments)
    return function(*arguments)
