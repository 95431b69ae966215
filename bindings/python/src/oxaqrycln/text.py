"""The texts of the archive: lists of fields, dates, and what may be part of a request."""
from __future__ import annotations

import codecs
import re
from datetime import datetime
from typing import List, Optional

from .errors import BadArgument

SEPARATOR = "^,^"
# Windows-1252; its five undefined bytes stand for the control characters of the same number.
CHARACTERS = "".join(chr(byte) if byte in (0x81, 0x8D, 0x8F, 0x90, 0x9D) else bytes([byte]).decode("cp1252")
                     for byte in range(256))
_BYTES = codecs.charmap_build(CHARACTERS)
_DATE = re.compile(r"(\d\d)\.(\d\d)\.(\d{4})(?: (\d\d):(\d\d)(?::(\d\d))?)?", re.ASCII)


def decode(block: bytes) -> str:
    """A text of the class, one character for each byte."""
    return block.decode("ascii") if block.isascii() else codecs.charmap_decode(block, "strict", CHARACTERS)[0]  # type: ignore[arg-type]


def setting_text(text: str, what: str) -> str:
    """A text that the component can hold; what names the value in the error. Raises BadArgument."""
    if not isinstance(text, str):
        raise BadArgument(f"{what} must be a text, not {type(text).__name__}")
    if not text.isascii():
        try:
            codecs.charmap_encode(text, "strict", _BYTES)
        except UnicodeEncodeError as error:
            raise BadArgument(f"{what}: character {error.start + 1} has no place in the archive's code page "
                              "(Windows-1252)") from None
    return text


def request_text(text: str, what: str) -> str:
    """A text as a request takes it. Raises BadArgument also for one that would end its field of the request."""
    if text == "":
        return text
    setting_text(text, what)
    if SEPARATOR in text or text.endswith("^,"):
        raise BadArgument(f'{what} holds "^,^", or ends with "^,", which separates the fields of a request')
    return text


def fields(record: str) -> List[str]:
    """The fields of a record "^a^,^b^". A record without carets is one field, "" has none."""
    if not record:
        return []
    return record[record.startswith("^"):len(record) - (record.endswith("^") and record != "^")].split(SEPARATOR)


def date_of(text: str) -> Optional[datetime]:
    """A date that a server writes, "15.11.2026" with or without a time "20:31" or "20:31:07"; None for another text."""
    found = _DATE.fullmatch(text)
    if not found:
        return None
    day, month, year, hour, minute, second = (int(part or 0) for part in found.groups())
    try:
        return datetime(year, month, day, hour, minute, second)
    except ValueError:
        return None


def number_of(text: object) -> int:
    """The whole number that a text or an output spells, 0 when it spells none."""
    try:
        if type(text) is str and text.isdecimal():
            return int(text)
        return int(float(str(text).strip().replace(",", ".") or 0))
    except (ValueError, OverflowError):
        return 0


def is_true(text: Optional[str]) -> bool:
    return (text or "").upper() not in ("", "0", "FALSE")


def with_network_line_ends(text: str) -> str:
    """A text with its line ends as CR LF, which a note has, and none behind the last line."""
    return re.sub("(?<!\r)\n", "\r\n", text.rstrip("\r\n"))
