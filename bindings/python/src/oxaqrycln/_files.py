"""The methods of an archive that move files: fetched contents, transfers, uploads, and what stands in import files. They
need the setting blob_local."""
from __future__ import annotations

import os
import re
import shutil
import tempfile
import threading
import uuid
from contextlib import contextmanager
from pathlib import Path
from typing import Any, BinaryIO, Callable, Iterator, Optional, Sequence, Union

from . import raw
from ._access import Access, FilePath, Settings, blob_directory, path_text
from .documents import Content, DocumentName, FieldContent, Named, key_of
from .errors import BadArgument, Error
from .text import request_text, setting_text

OnProgress = Callable[[raw.Progress], None]

_LARGEST = 0x7FFFFFFF
_PROGRESS_INTERVAL = 0.1  # seconds
_FIELD = re.compile(r"\s*\d+\s*:\s*\d+\s*", re.ASCII)


@contextmanager
def _reported(query: raw.Query, progress: Optional[OnProgress]) -> Iterator[None]:
    """Calls progress about ten times a second, on a thread of its own, and once at the end."""
    if not progress:
        yield
        return
    call = progress
    ended = threading.Event()

    def report() -> None:
        while not ended.wait(_PROGRESS_INTERVAL):
            call(query.progress())

    thread = threading.Thread(target=report, name="oxaqrycln-progress")
    thread.start()
    try:
        yield
    finally:
        ended.set()
        thread.join()
    call(query.progress())


def line_text(text: str, what: str) -> str:
    """A text that stays on its line of the import file."""
    if any(character < " " for character in text):
        raise BadArgument(f"{what} holds a line end or another control character")
    return request_text(text, what)


def title_text(title: str) -> str:
    """The title shares its line with the list of fields, "title,type:id"."""
    line_text(title, "the title")
    if any(map(_FIELD.fullmatch, title.split(",")[1:])):
        raise BadArgument('the title holds what the archive takes for a field: ",1:11"')
    return title


def content_text(field: FieldContent) -> str:
    """The contents of a field: no line of it can be taken for the end of the field."""
    return re.sub("(^|[\r\n])@", r"\1 @", setting_text(field.text, f"field {field.id}"))


class Files:
    _settings: Settings
    _access: Access

    def fetch(self, name: Named, content: Content, into: Optional[BinaryIO] = None,
              progress: Optional[OnProgress] = None) -> Optional[Path]:
        """Has the server put a file into the blob directory: its path there, or None when there is no such content. The
        caller removes it; with into, a binary file object that it is copied to, it is removed here. Raises Error when the
        file is not there or has another length than the server says, OSError when it cannot be copied. progress is called
        about ten times a second on a thread of its own, and once at the end on the calling one; it may call cancel(), and
        must not raise."""
        method = getattr(self._access.query, content.method)
        argument = request_text(content.argument, "what is fetched")
        return self._fetched(lambda: method(*key_of(name), argument), into, progress)

    def fetch_orders(self, orders: Sequence[str], into: Optional[BinaryIO] = None) -> Optional[Path]:
        """The page images of orders as one file, as fetch() does it."""
        listed = ",".join(request_text(order, "the order") for order in orders)
        return self._fetched(lambda: self._access.query.OstranaGetFahrauftraegeMultiTIFF(listed), into, None)

    def _fetched(self, ask: Callable[[], Any], into: Optional[BinaryIO], progress: Optional[OnProgress]
                 ) -> Optional[Path]:
        directory = blob_directory(self._settings)
        with _reported(self._access.query, progress):
            answer = ask()
        self._access.count(answer.result, answer.strParamStatus)
        if not answer.strFileName:
            return None
        path = directory / str(answer.strFileName)
        what = f'the query server\'s file "{path}"'
        try:
            size = path.stat().st_size
        except OSError:
            raise Error(f"{what} is not there: the local and the remote blob directory of the settings must be the same "
                        "directory") from None
        if str(size) != str(answer.lngFileLen):
            raise Error(f"{what} has {size} bytes instead of {answer.lngFileLen}")
        if into:
            _move(path, into)
        return path

    def transfer(self, file: str, byte_count: int, into: Optional[BinaryIO] = None,
                 progress: Optional[OnProgress] = None) -> Path:
        """Receives a file of the server's blob directory over the connection into the local one, complete or not at all:
        its path there. byte_count is its length as the server knows it. into and progress are those of fetch()."""
        name = request_text(file, "the file")
        query = self._access.query
        directory = blob_directory(self._settings)
        with _reported(query, progress):
            answer = query.TELOTransferBLOB(name, byte_count)
        self._access.count(*answer)
        path = directory / re.split(r"[\\/]", name)[-1]
        if into:
            _move(path, into)
        return path

    def upload(self, file: Union[FilePath, BinaryIO], name: str = "", progress: Optional[OnProgress] = None) -> None:
        """Sends a file, wherever it is, into the server's blob directory under its own name; or what can be read from a
        binary file object, under the name. progress is that of fetch(). Raises BadArgument for a file that is not there
        or has more than 2147483647 bytes."""
        if isinstance(file, (str, os.PathLike)):
            return self._send(Path(file), progress)
        if path_text(name) != os.path.basename(name) or name in ("", ".", "..") or "\0" in name:
            raise BadArgument("a file object needs a file name without directories")
        with tempfile.TemporaryDirectory(prefix="oxaqrycln-") as directory:
            path = Path(directory, name)
            with path.open("wb") as copy:
                shutil.copyfileobj(file, copy)
            self._send(path, progress)

    def _send(self, path: Path, progress: Optional[OnProgress]) -> None:
        if not path.is_file():
            raise BadArgument(f'there is no file "{path}" to send')
        if path.stat().st_size > _LARGEST:
            raise BadArgument(f'"{path}" is larger than {_LARGEST} bytes')
        query = self._access.query
        if not query.strBlobPathRemote:
            raise BadArgument("the settings name no blob directory")
        name, directory, own = path_text(path.name), path_text(path.absolute().parent), query.strBlobPathLocal
        query.strBlobPathLocal = directory  # the class sends files of its local blob directory only
        try:
            with _reported(query, progress):
                answer = query.TELOUploadFile(name)
            self._access.count(*answer)
        finally:
            query.strBlobPathLocal = own

    # create() and edit() write an import file under a name of its own into the blob directory, and remove it.

    def create(self, channel: str, archive: str, title: str, fields: Sequence[FieldContent]) -> DocumentName:
        """A new document: its name, with the first version. Raises Error when the import file cannot be written."""
        query = self._access.query

        def ask(path: str) -> str:
            answer = query.TELOCreateDocument(path)
            self._access.count(answer.result, answer.strParamStatus)
            return str(answer.strDocIDVer or "")
        return self._import(channel, archive, title, fields, ask)

    def edit(self, name: Named, title: str, fields: Sequence[FieldContent]) -> DocumentName:
        """A new version, in place of the newest one, which the name states: its name. Raises what create() does."""
        key = key_of(name)
        query = self._access.query

        def ask(path: str) -> str:
            answer = query.TELOEditDocument(path, f"{key.id},{key.version}" if key.version else key.id)
            self._access.count(answer.result, answer.strParamStatus)
            return str(answer.strDocIDVer or "")
        return self._import(key.channel, key.archive, title, fields, ask)

    def _import(self, channel: str, archive: str, title: str, fields: Sequence[FieldContent],
                ask: Callable[[str], str]) -> DocumentName:
        contents = "".join(f"@FIELD,{int(field.id)}\r\n{content_text(field)}\r\n" for field in fields)
        types, ids = (",".join(str(int(each)) for each in numbers)
                      for numbers in ([field.type for field in fields], [field.id for field in fields]))
        line_text(channel, "the channel")
        line_text(archive, "the archive")
        title_text(title)
        query = self._access.query
        file = blob_directory(self._settings) / f"client-{uuid.uuid4().hex}.import"
        try:
            if query.CreateImportFile(path_text(file), channel, archive, title, types, ids, contents).result < 0:
                self._access.check_own("the import file cannot be written")
            id_, _, version = ask(f"{query.strBlobPathRemote}\\{file.name}").partition(",")
        finally:
            try:
                file.unlink()
            except OSError:
                pass  # it was never written
        return DocumentName(channel, archive, id_, version)


def _move(path: Path, into: BinaryIO) -> None:
    try:
        with path.open("rb") as file:
            shutil.copyfileobj(file, into)
    finally:
        path.unlink()
