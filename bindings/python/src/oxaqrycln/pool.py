"""An archive for each thread that asks, so that the workers of a web server need one object."""
from __future__ import annotations

import os
import threading
from typing import Any, Optional

from .archive import Archive


class ArchivePool:
    """The settings are those of Archive, which checks them for each thread. The pool may be made before a fork; a child
    process gets archives of its own."""

    def __init__(self, **settings: Any) -> None:
        self._settings = settings
        self._thread = threading.local()

    def archive(self) -> Archive:
        """The archive of the calling thread, which ends with the thread. A new one when the thread has closed its own.
        Raises what Archive does."""
        archive: Optional[Archive] = getattr(self._thread, "archive", None)
        if archive is None or archive.is_closed or self._thread.process != os.getpid():
            archive = self._thread.archive = Archive(**self._settings)
            self._thread.process = os.getpid()
        return archive
