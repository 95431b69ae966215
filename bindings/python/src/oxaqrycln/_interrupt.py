"""Ctrl-C during a request: Python runs its signal handlers only when the call of the library has ended, so a thread of
its own reads the signal as it arrives and cancels the request of the main thread."""
from __future__ import annotations

import os
import signal
import socket
import threading
from typing import Callable, Optional

Action = Callable[[], None]


class _Watcher:
    """Reads the numbers of the signals that arrive while the main thread waits. One per process."""

    def __init__(self) -> None:
        self.reader, self.writer = socket.socketpair()
        self.writer.setblocking(False)
        self.lock = threading.Lock()
        self.cancel: Optional[Action] = None  # of the running request
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
                if self.cancel and signal.SIGINT in numbers:
                    self.is_cancelled = True
                    self.cancel()

    def run(self, call: Callable[[], int], cancel: Action, resume: Action) -> int:
        former = signal.set_wakeup_fd(self.writer.fileno(), warn_on_full_buffer=False)
        with self.lock:
            self.former, self.cancel = former, cancel
        try:
            return call()
        finally:
            with self.lock:
                self.cancel = None
                was_cancelled, self.is_cancelled = self.is_cancelled, False
            try:
                signal.set_wakeup_fd(former)
            except (OSError, ValueError):  # the host has closed it
                signal.set_wakeup_fd(-1)
            if was_cancelled:
                resume()


_watcher: Optional[_Watcher] = None


def _forget() -> None:
    global _watcher
    _watcher = None  # its thread is the parent's


if hasattr(os, "register_at_fork"):
    os.register_at_fork(after_in_child=_forget)


def run(call: Callable[[], int], cancel: Action, resume: Action) -> int:
    """Runs the call; when it runs on the main thread and Ctrl-C comes, cancel() is called, and resume() at its end."""
    global _watcher
    if threading.current_thread() is not threading.main_thread():
        return call()
    if _watcher is None:
        _watcher = _Watcher()
    try:
        return _watcher.run(call, cancel, resume)
    except ValueError:  # not the main interpreter, which alone handles signals
        return call()
