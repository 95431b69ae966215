"""The hits of a search. A hit list owns its rows: other requests do not change them. They come in one block, when the
first one is asked for, and a hit is made when it is asked for."""
from __future__ import annotations

from copy import copy
from enum import Enum
from typing import Any, Dict, Iterable, Iterator, List, NamedTuple, Optional, Sequence, Tuple, Union, overload

from . import raw
from ._access import Access
from .documents import DocumentName
from .errors import BadArgument, Error
from .text import SEPARATOR, decode, fields, number_of

# Lines of the answer: the flags of the columns are in the last one of the head, then come the titles and the hits.
_HEAD_LINES = 4
_FIELDS_IN_FRONT = 3  # of a row: reference, document and version
_NEW = tuple.__new__


class ColumnKind(Enum):
    """What a column holds, as the server says. Dates and numbers come as the server writes them."""

    TEXT = "text"
    DATE = "date"
    NUMBER = "number"


class Hit(NamedTuple):
    channel: str
    archive: str
    id: str
    version: str
    values: List[str]  # of the display columns; a row may have fewer than there are columns
    columns: Tuple[str, ...]  # the titles of the list

    @property
    def document(self) -> DocumentName:
        return DocumentName(self.channel, self.archive, self.id, self.version)

    def value(self, column: Union[int, str]) -> str:
        """The value of a column: its number from 0, or its title. "" when the row lacks it."""
        number = column if isinstance(column, int) else column_number(self.columns, column)
        return self.values[number] if 0 <= number < len(self.values) else ""


def column_number(columns: Sequence[str], title: str) -> int:
    """The position, counted from 0, of the column of a title, whatever its letter case; "1" is the first column when none
    has that title. Raises BadArgument, which lists the columns, when there is none or several."""
    found = [i for i, column in enumerate(columns) if column.upper() == title.upper()]
    if not found:
        found = [i for i in range(len(columns)) if str(i + 1) == title]
    if len(found) == 1:
        return found[0]
    what = f'there are several columns "{title}": give the number of one' if found else f'there is no column "{title}"'
    listed = ", ".join(f"{i} {column}" for i, column in enumerate(columns, 1))
    raise BadArgument(what + (f"; the columns are {listed}" if listed else ""))


def _line(number: int, values: Sequence[str]) -> str:
    """The columns as those of a line of the class, with a number in the place of the hit's reference."""
    return "^" + SEPARATOR.join([str(number), "0", "0", *values]) + "^\r\n"


def _names_of(reference: str) -> Tuple[str, str]:
    """The channel and the archive of "$(#channel)\\archive". Raises ValueError."""
    middle = reference.index(")\\", len("$(#"))
    return reference[len("$(#"):middle], reference[middle + 2:]


class HitList(Sequence[Hit]):
    """The rows stay in the archive until one of them or a column is asked for, or until the archive is next used or
    closed; a list that is dropped before costs nothing. len(), total, layout and is_multi_page_image are known at once.
    Raises Error when the rows cannot be read, or a hit that is asked for is malformed in the answer.

    A list that is read belongs to whoever holds it. One that is not can be read on the thread of the archive only; on
    others it raises WrongThread."""

    def __init__(self, access: Optional[Access] = None, row_count: int = 0, total: int = 0,
                 is_multi_page_image: bool = False, layout: Tuple[str, str] = ("", "")) -> None:
        self.total = total  # how many hits the query has; more than len() when a limit cut the list
        self.is_multi_page_image = is_multi_page_image  # the server can put the hits together as one image file
        self._layout = layout  # the keys and the values, separated by ","
        self._access = access  # None when the rows are read
        self._failure: Optional[Exception] = None  # why they could not be read
        self._text = ""
        self._at: List[int] = []  # where the lines begin, and the last one ends
        self._known: Dict[str, Tuple[str, str]] = {}  # channel and archive of each reference that was read
        self._columns: Tuple[str, ...] = ()
        self._line_count = _HEAD_LINES + row_count
        self._order: Sequence[int] = range(_HEAD_LINES + 1, self._line_count)  # lines of the hits
        if access:
            access.query.read_later(self)

    def read(self) -> HitList:
        """Reads the rows, unless that has been done, so that any thread can use the list. Returns the list itself."""
        if self._access:
            self._access.query.read_unread()
        if self._failure:
            raise self._failure.with_traceback(None)
        return self

    def take_records(self) -> None:
        """For the query. The rows are read as lines, because only those that are asked for are split; from the first line
        on, for the one with the flags of the columns."""
        access = self._access
        if access:
            try:
                access.query.TELOGetAllArchivesExtFirst()
                lines = access.rows("TELOGetAllArchivesNext", [], self._line_count, "line")
                self._at, self._text = lines.positions(), decode(lines.text)
                self._columns = tuple(fields(self._line(_HEAD_LINES))[_FIELDS_IN_FRONT:])
            except Exception as error:  # of whoever asks for the rows
                self._failure = error.with_traceback(None)
            self._access = None

    def __getstate__(self) -> Dict[str, Any]:
        """A copy owns its rows, too."""
        return self.read().__dict__

    def _line(self, number: int) -> str:
        """"" when there is none."""
        return self._text[self._at[number]:self._at[number + 1]] if number + 1 < len(self._at) else ""

    @property
    def columns(self) -> Tuple[str, ...]:
        """The titles of the display columns."""
        return self.read()._columns

    @property
    def layout(self) -> List[Tuple[str, str]]:
        """Key and value of each field of the layout, in the server's order."""
        keys, values = self._layout
        return list(zip(keys.split(","), values.split(","))) if keys else []

    @property
    def flags(self) -> str:
        """The line of the answer that says what the columns hold; "" of a list without a search."""
        return self.read()._line(_HEAD_LINES - 1)

    def column(self, title: str) -> int:
        """The position of a column, as column_number() finds it."""
        return column_number(self.columns, title)

    def kind_of(self, column: int) -> ColumnKind:
        """Of a column, counted from 0."""
        self._check_column(column)
        flags = fields(self.flags)[column + _FIELDS_IN_FRONT:]
        number = number_of(flags[0]) if flags else 0
        return ColumnKind.DATE if number & 0x400 else ColumnKind.NUMBER if number & 0x200 else ColumnKind.TEXT

    def _check_column(self, column: int) -> None:
        if not 0 <= column < len(self.columns):
            raise BadArgument(f"there is no column {column}")

    def __len__(self) -> int:
        return len(self._order)

    @overload
    def __getitem__(self, position: int) -> Hit: ...
    @overload
    def __getitem__(self, position: slice) -> List[Hit]: ...

    def __getitem__(self, position: Union[int, slice]) -> Union[Hit, List[Hit]]:
        if isinstance(position, slice):
            return list(self._hits(self._order[position]))
        return next(self._hits((self._order[position],)))

    def __iter__(self) -> Iterator[Hit]:
        return self._hits(self._order)

    def _places(self, order: Sequence[int]) -> Iterable[Tuple[int, int]]:
        """Where each line begins and ends."""
        at = self._at
        if isinstance(order, range) and order.step == 1:
            return zip(at[order.start:order.stop], at[order.start + 1:])
        return ((at[line], at[line + 1]) for line in order)

    # The loop over all hits is what a page spends its time in, so each of its steps is one operation of the interpreter.
    def _hits(self, order: Sequence[int]) -> Iterator[Hit]:
        columns, text, known = self.columns, self._text, self._known
        for start, end in self._places(order):
            try:
                reference, id_, version, values = text[start + 1:end - 1].split(SEPARATOR, _FIELDS_IN_FRONT)
                channel, archive = known[reference]
            except (KeyError, ValueError):
                yield self._unusual_hit(text[start:end])
                continue
            if text[end - 1] == "^":
                yield _NEW(Hit, (channel, archive, id_, version, values.split(SEPARATOR), columns))
            else:
                yield self._unusual_hit(text[start:end])

    def _unusual_hit(self, line: str) -> Hit:
        """Of a reference that is not known yet, of a line without a caret at its end, or without values."""
        try:
            reference, id_, version, *values = fields(line)
            self._known[reference] = names = _names_of(reference)
        except ValueError:
            raise Error(f"a hit of the answer is malformed: {line!r}") from None
        return Hit(*names, id_, version, values, self.columns)

    def sort(self, column: int, descending: bool = False) -> None:
        """Sorts by a column, counted from 0, as its kind asks for; equal hits keep their order. Makes no request. Raises
        BadArgument for a column that does not exist."""
        self._check_column(column)
        head = self.flags + "\r\n" + _line(0, self.columns)
        lines = head + "".join(_line(i, hit.values) for i, hit in enumerate(self))
        # The first sort of a query turns the order of the data round; without any hits that leaves it descending, and
        # each further sort turns it again.
        sorter = raw.Query()
        try:
            sorter.TELOSortHitlist2Init(head, column + 1)
            for _ in range(2 if descending else 1):
                row_count = sorter.TELOSortHitlist2Init(lines, column + 1)
            if row_count != len(self) + 1:
                raise Error("the hit list cannot be sorted")
            rows = sorter.fetch_rows("TELOSortHitlist2Next", max=row_count, every_row=True)
        finally:
            sorter.close()
        text, at = decode(rows.text), rows.positions()
        numbers = (fields(text[start:end])[0] for start, end in zip(at[1:], at[2:]))
        self._order = [self._order[int(number)] for number in numbers]

    def begins_greater(self, column: int) -> bool:
        """Whether the first hit comes behind the last one in ascending order."""
        if len(self) < 2:
            return False
        ends = copy(self)
        ends._order = [self._order[0], self._order[-1]]
        ends.sort(column)
        return ends._order[0] == self._order[-1]

    def remove(self, position: int) -> None:
        """Removes a hit, counted from 0. Raises BadArgument when there is none."""
        if not 0 <= position < len(self):
            raise BadArgument(f"there is no hit {position}")
        order = list(self._order)
        del order[position]
        self._order = order
