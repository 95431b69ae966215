"""The hits of a search. A hit list owns its rows, which come in one block: other requests do not change them, and a hit
is made when it is asked for."""
from __future__ import annotations

from enum import Enum
from typing import Iterable, Iterator, List, NamedTuple, Optional, Sequence, Tuple, Union, overload

from . import raw
from .documents import DocumentName
from .errors import BadArgument, Error
from .text import SEPARATOR, decode, fields, number_of

_COLUMNS = ("strChannel", "strArchive", "strDocID", "strVer")
_WIDTH = 1 + len(_COLUMNS)
_FIELDS_IN_FRONT = 3  # of a line of the class: reference, document and version
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


class HitList(Sequence[Hit]):
    def __init__(self, rows: Optional[raw.Rows] = None, head: Optional[raw.Rows] = None, total: int = 0,
                 is_multi_page_image: bool = False, layout: Tuple[str, str] = ("", "")) -> None:
        self.total = total  # how many hits the query has; more than len() when a limit cut the list
        self.is_multi_page_image = is_multi_page_image  # the server can put the hits together as one image file
        self._layout = layout  # the keys and the values, separated by ","
        self._rows, self._head = rows, head
        self._text = ""
        self._at: List[int] = []  # where the texts of the rows begin, and the last one ends
        self._columns: Optional[Tuple[str, ...]] = None
        # The numbers of the rows, of which 0 has the titles.
        self._order: Sequence[int] = range(1, rows.row_count if rows else 1)

    def _open(self) -> Tuple[str, ...]:
        """Makes the texts of the rows accessible; returns the titles."""
        if self._columns is None:
            titles = ""
            if self._rows and self._rows.row_count:
                self._at = self._rows.positions()
                self._text = decode(self._rows.text)
                titles = self._text[:self._at[1]]
            self._rows = None
            self._columns = tuple(fields(titles))
        return self._columns

    @property
    def layout(self) -> List[Tuple[str, str]]:
        """Key and value of each field of the layout, in the server's order."""
        keys, values = self._layout
        return list(zip(keys.split(","), values.split(","))) if keys else []

    @property
    def flags(self) -> str:
        """The line of the answer that says what the columns hold; "" of a list without a search."""
        head = self._head
        return decode(head.text[head.positions()[-2]:]) if head and head.row_count else ""

    @property
    def columns(self) -> Tuple[str, ...]:
        """The titles of the display columns."""
        return self._open()

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

    def _places(self, order: Sequence[int]) -> Iterable[Sequence[int]]:
        """Where the texts of each row begin, and the last one ends."""
        at = self._at
        if isinstance(order, range) and order.step == 1:
            first, end = order.start * _WIDTH, order.stop * _WIDTH
            return zip(*(at[first + i:end + i:_WIDTH] for i in range(_WIDTH + 1)))
        return (at[row * _WIDTH:row * _WIDTH + _WIDTH + 1] for row in order)

    # The loop over all hits is what a page spends its time in, so each of its steps is one operation of the interpreter.
    def _hits(self, order: Sequence[int]) -> Iterator[Hit]:
        columns, text = self._open(), self._text
        # What ends the columns of a row that are between carets, as those of the titles are; "" for titles without.
        closing = "^" if text.startswith("^") else ""
        for first, channel, archive, id_, version, end in self._places(order):
            last = channel - 1
            if text[last] == closing:
                values = text[first + 1:last].split(SEPARATOR)
            else:
                values = fields(text[first:channel])
            yield _NEW(Hit, (text[channel:archive], text[archive:id_], text[id_:version], text[version:end], values,
                             columns))

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
        ends = HitList(None, self._head)
        ends._columns, ends._text, ends._at = self.columns, self._text, self._at
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
