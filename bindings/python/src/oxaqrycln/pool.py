"""An archive for each thread that asks, so that the workers of a web server need one object."""
from __future__ import annotations

import os
import threading
from typing import Any

from .archive import Archive


class ArchivePool:
    """The settings are those of Archive. May be made before a fork; a child process gets archives of its own."""

    def __init__(self, **settings: Any) -> None:
        self._settings = settings
        self._thread = threading.local()

    def archive(self) -> Archive:
        """The archive of the calling thread, which the pool closes with the thread."""
        if getattr(self._thread, "process", None) != os.getpid():
            self._thread.archive = Archive(**self._settings)
            self._thread.process = os.getpid()
        archive: Archive = self._thread.archive
        return archive
