"""The archive for page authors: lists, searches, documents and files. An archive belongs to the thread that made it."""
from __future__ import annotations

from datetime import datetime
from pathlib import Path
from types import TracebackType
from typing import Any, BinaryIO, Callable, List, Optional, Type, TypeVar

from . import raw
from ._access import Access, FilePath, Settings, blob_directory, database_records
from ._files import Files
from .documents import (MARK_OFF, MARK_ON, SEGMENT_COLUMNS, ArchiveEntry, Channel, Document, Mask,
                        MaskField, Named, Note, Outliner, OutlinerNode, ArchiveProperties, TransportOrder,
                        key_of, note_of, segment_of)
from .errors import BadArgument, Error, Refused, RequestReport
from .hits import HitList
from .text import date_of, fields, is_true, number_of, request_text, setting_text, with_network_line_ends
from .users import Users

_LONGEST_NOTE = 8000
_MASK_FIELD_COLUMNS = ("lngTabIndex", "lngWidth", "strAlign", "strName", "blnMandatory", "strInitText", "blnListOnly",
                       "strList")

Self = TypeVar("Self", bound="Archive")


class Archive(Files):
    """Every method that makes a request raises Refused, TimedOut, ConnectionFailed, AllServersBusy or Cancelled, and Error
    for an answer that cannot be read; BadArgument for a value that cannot be sent, before any request. A server that
    fails is passed over by later requests of the thread while another one is free. Nothing that was sent is sent again.

    The settings are those of the class Settings. Raises BadArgument, also when the thread already uses other query
    servers; DatabaseFailed when the database cannot be opened. Connects to a server with the first request only."""

    def __init__(self, *, hosts: str = "", user: str = "", password: str = "", timeout: int = 30, session: str = "",
                 log_dir: FilePath = "", blob_local: FilePath = "", blob_remote: str = "", database: str = "",
                 changed_extensions: str = "", web_user: str = "", web_user_address: str = "",
                 web_user_logon: Optional[datetime] = None, spread: bool = True) -> None:
        self._settings = Settings(hosts, user, password, timeout, session, log_dir, blob_local, blob_remote, database,
                                  changed_extensions, web_user, web_user_address, web_user_logon, spread)
        self._access = Access(self._settings)
        self._users: Optional[Users] = None

    def __enter__(self: Self) -> Self:
        return self

    def __exit__(self, kind: Optional[Type[BaseException]], error: Optional[BaseException],
                 trace: Optional[TracebackType]) -> None:
        self.close()

    def close(self) -> None:
        """Gives back the query server and closes the database. From any thread, but not during a call. The last hit list
        is read before, if that is still to be done; on another thread it cannot be and is lost."""
        self._access.query.close()

    @property
    def is_closed(self) -> bool:
        """Whether close() was called. From any thread."""
        return self._access.query.is_closed

    @property
    def query(self) -> raw.Query:
        """The query that the archive stands on, for what only the raw level has. It ends with the archive."""
        return self._access.query

    # ---- Lists ----

    def channels(self) -> List[Channel]:
        """Sorted by name, whatever the letter case."""
        count = self._access.count(*self.query.TELOGetChannelsInit())
        return [Channel(name, description) for name, description in
                self._access.records("TELOGetChannelsNext", ["strChannelDescription"], count, "channel")]

    def archives(self) -> List[Channel]:
        """Every channel with its archives, in the server's order."""
        channels = []
        for number in range(self._access.count(*self.query.TELOGetAllArchivesExtInit())):
            archive_count, name, description = self.query.TELOGetAllArchivesExtNext()
            self._access.check_own(f"channel {number + 1} of the answer is malformed")
            records = self._access.records("TELOGetAllArchivesExtNextArchive", ["strComment"], max(archive_count, 0),
                                           "archive")
            channels.append(Channel(name, description, tuple(ArchiveEntry(*record) for record in records)))
        return channels

    def formats(self, channel: str, archive: str) -> List[str]:
        """The names of the query formats of an archive, as search() takes them."""
        count = self._access.count(*self.query.TELOGetQueryFormatListInit(
            request_text(channel, "the channel"), request_text(archive, "the archive")))
        return [record[0] for record in self._access.records("TELOGetQueryFormatListNext", [], count, "query format")]

    def properties(self, channel: str, archive: str) -> ArchiveProperties:
        """What the server says may be done in an archive."""
        fifth, create, edit, delete, index, status = self.query.TELOGetArchiveProperties(
            request_text(channel, "the channel"), request_text(archive, "the archive"))
        self._access.count(fifth, status)
        return ArchiveProperties(is_true(create), is_true(edit), is_true(delete), is_true(index), str(fifth))

    def masks(self, channel: str, archive: str) -> List[Mask]:
        """The input masks of an archive with their fields, in the server's order."""
        masks = []
        count = self._access.count(*self.query.TELOGetMasksInit(request_text(channel, "the channel"),
                                                                request_text(archive, "the archive")))
        for number in range(count):
            field_count, name = self.query.TELOGetMasksNext()
            self._access.check_own(f"mask {number + 1} of the answer is malformed")
            mask_fields = [MaskField(number_of(tab), number_of(width), align, label, is_true(mandatory), initial,
                                     is_true(list_only), list_)
                           for _, tab, width, align, label, mandatory, initial, list_only, list_ in self._access.records(
                               "TELOGetMasksNextField", _MASK_FIELD_COLUMNS, max(field_count, 0), "mask field")]
            masks.append(Mask(name, tuple(mask_fields)))
        return masks

    # ---- Searching and reading ----

    def search(self, query: str, *, max: int = 100, query_max: int = 1000, format: str = "",
               rights: Optional[str] = None, layout: str = "", layout_field: str = "", sort: str = "",
               descending: bool = False) -> HitList:
        """max: the most hits that are listed, 0 for all. query_max: a query with more hits is refused, 0 for no limit.
        format: one that formats() lists, "" for all. rights: the archives that may be searched, as
        Users.folder_rights() makes them; None does not restrict the search, and a text that allows no archive has no
        hits and makes no request. layout and layout_field: what the server takes for HitList.layout. sort: the column to
        sort by, as HitList.column() takes it; "" keeps the server's order.

        The rows are read when they are asked for; see HitList."""
        if rights is not None and not rights.strip("; "):
            return HitList()  # the server would take such an expression for no restriction
        if max < 0 or query_max < 0:
            raise BadArgument("the limits of a search are 0 or more")
        rows, keys, values, total, is_image, status = self.query.call_for_texts(
            "TELOQueryArchiveInit", request_text(query, "the query"), max, query_max, request_text(format, "the format"),
            request_text(rights or "", "the folder rights"), request_text(layout_field, "the layout field"),
            request_text(layout, "the layout"))
        count = self._access.count(int(rows), status)
        hits = HitList(self._access, count, number_of(total), is_image == "True", (keys, values))
        if sort and hits.columns:
            hits.sort(hits.column(sort), descending)
        return hits

    def describe(self, name: Named) -> Document:
        """The document without its segments and notes. Raises Refused when there is no such document."""
        key = key_of(name)
        answer = self.query.TELOGetDocumentInfo(*key)
        if self._access.count(answer.result, answer.strParamStatus) == 0:
            raise Refused("there is no such document", self._access.report())
        self._access.check_own("the information about the document cannot be read")
        return Document(key, number_of(answer.lngLaenge), date_of(answer.strErstelldat or ""),
                        date_of(answer.strAenderDat or ""), answer.strTitel or "", number_of(answer.intFelderGes),
                        number_of(answer.intTextFelder), number_of(answer.intBildFelder),
                        number_of(answer.intBlobFelder))

    def document(self, name: Named, query: str = "") -> Document:
        """query marks its hits in the texts. Raises Refused when there is no such document."""
        request_text(query, "the query")
        document = self.describe(name)
        answer = self.query.TELOGetSegmentsInit(*document.name, query, MARK_ON, MARK_OFF, "\n")
        count = self._access.count(answer.result, answer.strParamStatus)
        records = list(self._access.records("TELOGetSegmentsNext", SEGMENT_COLUMNS, count, "segment"))
        found = document.name
        if not found.version and records:
            found = found._replace(version=records[0][1])
        notes = self.notes(found) if number_of(answer.lngNotes) else []
        return document._replace(name=found, segments=tuple(map(segment_of, records)), notes=tuple(notes))

    def notes(self, name: Named) -> List[Note]:
        """The notes of a document, in the server's order."""
        count = self._access.count(*self.query.TELOGetNotesInit(*key_of(name)))
        return [note_of(record[0]) for record in self._access.records("TELOGetNotesNext", [], count, "note")]

    def print_hits(self, query: str, title: str, *, sort: str = "", descending: bool = False,
                   into: Optional[BinaryIO] = None, **options: Any) -> Optional[Path]:
        """Has the server print the hits of a search to a PDF file, with the title on each page: its path, as fetch()
        returns it. options are those of search()."""
        blob_directory(self._settings)
        request_text(title, "the title")
        hits = self.search(query, **options)
        if not hits.flags:
            return None  # the rights allow no archive
        if sort:
            # The first sort of the class's list is ascending when its first row is greater than the last one, otherwise
            # descending; each further one is the other way round.
            column = hits.column(sort)
            for _ in range(2 if hits.begins_greater(column) == descending else 1):
                self.query.TELOSortHitlistInit(column + 1)
                self._access.check_own("the hit list cannot be sorted")
        return self._fetched(lambda: self.query.FennikPrintHitlistPDF(title), into, None)

    # ---- Changing; see Files for create() and edit() ----

    def delete(self, name: Named) -> None:
        """All versions when the name has none."""
        self._access.count(*self.query.TELODeleteDocument(*key_of(name)))

    def add_note(self, name: Named, text: str) -> None:
        """A note of at most 8000 characters, a line end counted as two."""
        note = with_network_line_ends(request_text(text, "the note"))
        if len(note) > _LONGEST_NOTE:
            raise BadArgument(f"a note has at most {_LONGEST_NOTE} characters")
        self._access.count(*self.query.TELOWriteNote(*key_of(name), note))

    def delete_notes(self, name: Named) -> None:
        """All notes of the document."""
        self._access.count(*self.query.TELODeleteNotes(*key_of(name)))

    # ---- Transport orders ----

    def orders(self, query: str = "*", max: int = 0) -> List[TransportOrder]:
        """At most max orders, all for 0. The query is in the server's own query language; "*" selects every order."""
        if max < 0:
            raise BadArgument("the limit of a list is 0 or more")
        count = self._access.count(*self.query.OstranaQueryFahrauftraegeInit(request_text(query, "the query"),
                                                                            max or 0x7FFFFFFF))
        records = self._access.records("OstranaQueryFahrauftraegeNext", ["strStatus", "strDocID", "strVer"], count,
                                       "transport order")
        split = ((fields(line), status, document, version) for line, status, document, version in records)
        return [TransportOrder(parts[0], status, document, version, tuple(parts[1:]))
                for parts, status, document, version in split if parts]

    def set_order_status(self, order: str, status: str) -> None:
        """order is the id of a TransportOrder."""
        self._access.count(*self.query.OstranaUpdateFahrauftraegeStatus(request_text(order, "the order"),
                                                                       request_text(status, "the status")))

    # ---- Web users and outliners; they need the setting database and raise DatabaseFailed ----

    @property
    def users(self) -> Users:
        """The web users of the archive's database. Raises BadArgument when the settings name none."""
        if self._users is None:
            self._users = Users._of(self._access)
        return self._users

    def outline(self, channel: str, archive: str) -> List[Outliner]:
        """The outliners of an archive."""
        answer = self.query.GetOutliner(request_text(channel, "the channel"), request_text(archive, "the archive"))
        self._access.check_database()
        return [Outliner(*record) for record in database_records(answer.strOutliner, 2)]

    def nodes(self, outliner_id: str, parent: int = 0) -> List[OutlinerNode]:
        """The nodes of an outliner below a node, by its id; the roots for the parent 0."""
        count = self.query.GetOutlinerContentInit(request_text(outliner_id, "the outliner"), parent)
        self._access.check_database()
        nodes = []
        for _ in range(number_of(count)):
            node = self.query.GetOutlinerContentNext()
            self._access.check_own("a node cannot be read")
            nodes.append(OutlinerNode(number_of(node.lngID), number_of(node.intLevel), node.result, node.strFieldID or "",
                                      node.strDescription or "", node.strDataType or "", is_true(str(node.blnExpand or "")),
                                      number_of(node.lngChildren)))
        return nodes

    def node_query(self, node: int) -> str:
        """The query that finds the documents of a node; "" for one without a condition."""
        text = self.query.GetOutlinerSearchExpr(node)
        self._access.check_database()
        return str(text)

    # ---- Servers ----

    def live(self) -> str:
        """What a server answers when it is asked whether it is alive."""
        return self._access.answer(self.query.LiveCheck())

    def direct(self, command: str) -> List[str]:
        """Sends a command as it is, "^Command^,^parameter^". Returns the lines of the answer."""
        answer = self._access.answer(self.query.DirectQuery(setting_text(command, "the command")))
        return [line.strip("\r") for line in answer.split("\n")]

    def servers(self) -> List[raw.Server]:
        """The table of the thread's query servers."""
        return self.query.servers()

    def health(self) -> List[raw.ServerHealth]:
        """Asks each server of the list whether it is alive, up to 16 at once. cancel() and Ctrl-C end it."""
        return self.query.check_servers(self._settings.hosts)

    def test_blob_directory(self) -> None:
        """Writes a test file into the local blob directory and removes it. Raises Error when that fails. Makes no
        request."""
        blob_directory(self._settings)
        self.query.WriteTest()
        self._access.check_own("no file can be written into the blob directory")

    @property
    def last_request(self) -> RequestReport:
        """What became of the last request; empty before the first one."""
        return self._access.report()

    def on_request(self, call: Optional[Callable[[RequestReport], None]]) -> None:
        """Has a function called after each request but those of health(), whatever became of it; None ends that. It must
        not use the archive. What it raises, the method raises that has made the request."""
        self._access.on_request = call

    def progress(self) -> raw.Progress:
        """Of the running request, or of the last one. From any thread."""
        return self.query.progress()

    def cancel(self) -> None:
        """From any thread and in a signal handler: ends the running request, or each later one, with Cancelled, until
        resume() is called."""
        self.query.cancel()

    def resume(self) -> None:
        """From any thread: lets requests be made again after cancel()."""
        self.query.resume()
