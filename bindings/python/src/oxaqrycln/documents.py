"""What the archive gives and takes: names, documents with their segments and notes, masks, orders. Plain data."""
from __future__ import annotations

import re
from dataclasses import dataclass
from datetime import datetime
from typing import List, NamedTuple, Optional, Protocol, Tuple

from .text import date_of, number_of, request_text

# Characters that no text of an archive holds.
MARK_ON, MARK_OFF = "\x01", "\x02"


class DocumentName(NamedTuple):
    """Names a document. An empty version is the newest one."""

    channel: str
    archive: str
    id: str
    version: str = ""


class Named(Protocol):
    """What has the name of a document: a DocumentName, a Hit."""

    @property
    def channel(self) -> str: ...
    @property
    def archive(self) -> str: ...
    @property
    def id(self) -> str: ...
    @property
    def version(self) -> str: ...


def key_of(name: Named) -> DocumentName:
    """The texts of a document's name as a request takes them."""
    return DocumentName(request_text(name.channel, "the channel"), request_text(name.archive, "the archive"),
                        request_text(name.id, "the document"), request_text(name.version, "the version"))


class ArchiveEntry(NamedTuple):
    name: str
    comment: str


class Channel(NamedTuple):
    name: str
    description: str
    archives: Tuple[ArchiveEntry, ...] = ()  # filled by Archive.archives() only


class ArchiveProperties(NamedTuple):
    """What the server says may be done in an archive, whatever the rights of the web user."""

    can_create: bool
    can_edit: bool
    can_delete: bool
    can_index: bool
    fifth: str  # whose meaning the server alone knows


class MaskField(NamedTuple):
    tab_index: int
    width: int
    align: str
    name: str
    is_mandatory: bool
    initial_text: str
    is_list_only: bool
    list: str


class Mask(NamedTuple):
    name: str
    fields: Tuple[MaskField, ...]


class Content(NamedTuple):
    """Which content of a document is fetched: made by one of its four methods."""

    method: str
    argument: str

    @classmethod
    def of_segment(cls, index: int) -> Content:
        return cls("TELOGetSegmentData", str(int(index)))

    @classmethod
    def first_file(cls, extension: str = "") -> Content:
        """The first stored file, of an extension when one is given."""
        return cls("TELOGetSegmentFirstBLOB", extension)

    @classmethod
    def printable(cls, field_id: str) -> Content:
        """A file to print, from a query server with the print flag."""
        return cls("TELOGetSegmentPrintfile", field_id)

    @classmethod
    def pages(cls, pages: str) -> Content:
        """One image file of several pages, "1;4-6"."""
        return cls("TELOGetSegmentMultiTIF", pages)


class FieldContent(NamedTuple):
    """The contents of one field of a new document or version. A line that begins with "@" gets a blank in front, because
    the server would take it for the end of the field."""

    type: int
    id: int
    text: str  # of an image or file field the name of a file in the blob directory


class Mark(NamedTuple):
    """A hit of the query in a text: its first character, counted from 0, and its length."""

    start: int
    length: int


class TextPiece(NamedTuple):
    """A part of a text between the edges of its marks."""

    text: str
    is_marked: bool


class MarkedText(NamedTuple):
    text: str  # its lines end with "\n"
    marks: Tuple[Mark, ...] = ()

    def pieces(self) -> List[TextPiece]:
        """The whole text in pieces, for a page that encodes each of them and puts a tag around those that are marked."""
        edges = [0, *(edge for mark in self.marks for edge in (mark.start, mark.start + mark.length)), len(self.text)]
        return [TextPiece(self.text[start:end], i % 2 == 1)
                for i, (start, end) in enumerate(zip(edges, edges[1:])) if end > start]


@dataclass(frozen=True)
class Segment:
    index: int  # names the segment in Content.of_segment()
    field_id: int
    name: str
    title: str
    type: int  # as the server numbers them
    text: MarkedText
    hit_count: int
    text_length: int  # in characters
    content_length: int  # of the stored content in bytes; 0 without any
    extension: str
    file_name: str
    status: int
    layout: str
    thumbnail_size: int


class Note(NamedTuple):
    author: str  # "" when the server's header cannot be told from the text, which then begins with it
    time: Optional[datetime]
    text: str  # its lines end with "\n"


class Document(NamedTuple):
    name: DocumentName  # with the version that was found
    length: int
    created: Optional[datetime]  # None when the server writes no such date
    changed: Optional[datetime]
    title: str
    field_count: int
    text_count: int
    image_count: int
    file_count: int
    segments: Tuple[Segment, ...] = ()
    notes: Tuple[Note, ...] = ()


class TransportOrder(NamedTuple):
    id: str
    status: str
    document: str  # id and version of the document that shows it
    version: str
    columns: Tuple[str, ...]  # what the server adds


class Outliner(NamedTuple):
    id: str
    name: str


class OutlinerNode(NamedTuple):
    id: int
    level: int
    content: str
    field_id: str
    description: str
    data_type: str
    is_expanded: bool
    child_count: int


def without_marks(text: str) -> MarkedText:
    """Takes the marks out of a text of the class."""
    plain: List[str] = []
    marks: List[Mark] = []
    length, start = 0, -1
    for part in re.split(f"([{MARK_ON}{MARK_OFF}])", text):
        if part == MARK_ON:
            start = length if start < 0 else start
        elif part == MARK_OFF:
            if 0 <= start < length:
                marks.append(Mark(start, length - start))
            start = -1
        else:
            plain.append(part)
            length += len(part)
    return MarkedText("".join(plain), tuple(marks))


def note_of(text: str) -> Note:
    """Of "author,date time,text": the header ends with the time, and is in the first line."""
    parts = re.split("[\r\n]", text, maxsplit=1)[0].split(",")
    at = len(parts[0])
    for part in parts[1:]:
        time = date_of(part)
        if time:
            return Note(text[:at], time, text[at + len(part) + 2:].replace("\r", ""))
        at += 1 + len(part)
    return Note("", None, text.replace("\r", ""))


SEGMENT_COLUMNS = ("strVer", "intFeldIndex", "intFeldID", "strFeldName", "strFeldtitel", "intFeldTyp", "intTrefferZahl",
                   "lngTextLaenge", "lngNCILaenge", "strExt", "strDateiname", "intStatus", "strLayoutID",
                   "lngThumbnailSize")


def segment_of(record: List[str]) -> Segment:
    """Of the text and SEGMENT_COLUMNS."""
    text, _, index, field_id, name, title, type_, hits, length, content, extension, file, status, layout, thumb = record
    return Segment(number_of(index), number_of(field_id), name, title, number_of(type_), without_marks(text),
                   number_of(hits), number_of(length), number_of(content), extension, file, number_of(status), layout,
                   number_of(thumb))
