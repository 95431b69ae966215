"""Document archive queries and web users for server-side pages; see docs/python.md."""
from . import _library
from .archive import Archive
from .documents import (ArchiveEntry, Channel, Content, Document, DocumentName, FieldContent, Mark, MarkedText, Mask,
                        MaskField, Note, Outliner, OutlinerNode, ArchiveProperties, Segment, TextPiece,
                        TransportOrder)
from .errors import (AllServersBusy, Attempt, BadArgument, Cancelled, ConnectionFailed, DatabaseFailed, Error,
                     LibraryError, Refused, RequestReport, TimedOut, WrongThread)
from .hits import ColumnKind, Hit, HitList
from .pool import ArchivePool
from .raw import Progress, Server, ServerHealth
from .users import Account, DocumentCondition, EditRight, SearchRights, Users

__version__ = _library.library.version

__all__ = ["Account", "AllServersBusy", "Archive", "ArchiveEntry", "ArchivePool", "Attempt", "BadArgument", "Cancelled",
           "Channel", "ColumnKind", "ConnectionFailed", "Content", "DatabaseFailed", "Document", "DocumentCondition",
           "DocumentName", "EditRight", "Error", "FieldContent", "Hit", "HitList", "LibraryError", "Mark", "MarkedText",
           "Mask", "MaskField", "Note", "Outliner", "OutlinerNode", "Progress", "ArchiveProperties", "Refused", "RequestReport",
           "SearchRights", "Segment", "Server", "ServerHealth", "TextPiece", "TimedOut", "TransportOrder", "Users",
           "WrongThread"]
