"""The web users of a database: log-on, groups and rights. Rights fail closed: what cannot be read is an exception, never
"no restriction". Users belong to the thread that made them."""
from __future__ import annotations

from types import TracebackType
from typing import Any, List, NamedTuple, Optional, Tuple, Type

from ._access import Access, FilePath, Settings, database_records
from .errors import BadArgument, DatabaseFailed
from .text import fields, number_of, request_text, setting_text


class Account(NamedTuple):
    """An account of the archive system."""

    user: str
    password: str

    def __repr__(self) -> str:
        return f"Account(user={self.user!r})"


class EditRight(NamedTuple):
    """What a user may do in an archive."""

    archive: str
    can_create: bool
    can_edit: bool
    can_delete: bool


class DocumentCondition(NamedTuple):
    """A condition that documents must meet to be shown."""

    definition: str
    field_id: str
    comparison: str  # "=", "<", "LIKE", ...
    value: str
    type: str  # "TXT", "NUM", ...


class SearchRights(NamedTuple):
    """What restricts a user's searches in an archive."""

    fixed_values: Tuple[Tuple[str, str], ...]  # field id and the value that a search must have
    hidden_fields: Tuple[str, ...]
    fields_without_matchcode: Tuple[str, ...]


def _reference(channel: str, archive: str = "") -> str:
    """Raises DatabaseFailed for a name that would change the expression."""
    reference = f"$(#{channel})" + (f"\\{archive}" if archive else "")
    if any(character in channel for character in ";()") or ";" in archive:
        raise DatabaseFailed(f'"{reference}" cannot be part of a folder rights expression')
    return reference + ";"


def _edit_right(line: str) -> EditRight:
    """The flags stand behind the name, which may hold commas itself."""
    has = {}
    for flag in "DEN":
        has[flag] = line.endswith("," + flag)
        line = line[:-2] if has[flag] else line
    return EditRight(line, has["N"], has["E"], has["D"])


class Users:
    """Every method raises DatabaseFailed when the database does not carry a statement out or what it holds cannot be
    read. Raises BadArgument without a database, DatabaseFailed when it cannot be opened."""

    def __init__(self, *, database: str, session: str = "", log_dir: FilePath = "") -> None:
        if not database:
            raise BadArgument("the settings name no web user database")
        self._access = Access(Settings(database=database, session=session, log_dir=log_dir))

    @classmethod
    def _of(cls, access: Access) -> Users:
        """Those of an archive, whose connection they share."""
        if not access.query.strDBConnect:
            raise BadArgument("the settings name no web user database")
        users = cls.__new__(cls)
        users._access = access
        return users

    def __enter__(self) -> Users:
        return self

    def __exit__(self, kind: Optional[Type[BaseException]], error: Optional[BaseException],
                 trace: Optional[TracebackType]) -> None:
        self.close()

    def close(self) -> None:
        """Closes the database. Those of Archive.users close the archive, whose connection they share."""
        self._access.query.close()

    def _checked(self, result: Any) -> Any:
        self._access.check_database()
        return result

    def _storable(self, password: str, what: str) -> str:
        """A password that the database can hold: its encoding loses characters with high codes, from a position on that
        depends on the code."""
        query = self._access.query
        if query.Decode(query.Encode(request_text(password, what))) != password:
            raise BadArgument(f"{what} cannot be stored: use at most 47 characters, without accents")
        return password

    def log_on(self, name: str, password: str) -> Optional[int]:
        """The user's ID, or None when the name or the password is wrong."""
        try:
            user = self._checked(self._access.query.CheckLogon(setting_text(name, "the user"),
                                                               setting_text(password, "the password")))
        except BadArgument:
            return None  # texts that no user can have
        return user if user > 0 else None

    def find(self, name: str) -> Optional[int]:
        """The ID of the first user of that name."""
        user = self._checked(self._access.query.CheckLogon(request_text(name, "the user")))
        return user if user > 0 else None

    def create(self, name: str, password: str, account: Optional[Account] = None) -> int:
        """Returns the new user's ID. Raises BadArgument for a name or password that cannot be stored."""
        texts = [request_text(name, "the user"), self._storable(password, "the password")]
        if account:
            texts += [request_text(account.user, "the account"),
                      self._storable(account.password, "the account's password")]
        return int(self._checked(self._access.query.WriteUserToDB(*texts)))

    def change_password(self, name: str, old: str, new: str) -> bool:
        """False when the old password is wrong. Raises BadArgument for a password that cannot be stored."""
        return bool(self._checked(self._access.query.ChangePasswd(
            request_text(name, "the user"), request_text(old, "the password"),
            self._storable(new, "the new password"))) > 0)

    def must_change_password(self, user: int) -> bool:
        """Whether a user, by ID, has to change the password at the next log-on."""
        return number_of(self._checked(self._access.query.GetUserChangePasswd(user)).intChangePasswd) != 0

    def set_must_change_password(self, user: int, must: bool) -> None:
        self._checked(self._access.query.SetUserChangePasswd(user, must))

    def account_of(self, user: int) -> Optional[Account]:
        """The user's account of the archive system; None for a user without one."""
        answer = self._checked(self._access.query.GetUserTELOUser(user))
        return Account(answer.strTELOUser, answer.strTELOPasswd or "") if answer.strTELOUser else None

    # ---- What a user has himself and through the groups he is a member of ----

    def rights(self, user: int) -> List[int]:
        """The numbers of the rights, as the site defines them."""
        return [number_of(right) for right in fields(self._checked(self._access.query.GetUserRights(user)).strRights)]

    def groups(self, user: int) -> List[str]:
        """The names of the groups."""
        listed: str = self._checked(self._access.query.GetUserGroups(user)).strGroups
        return listed[1:-1].split("],[") if len(listed) >= 2 else []

    def channels(self, user: int) -> List[str]:
        """The names of the channels, in any order."""
        return fields(self._checked(self._access.query.GetUserChannels(user)).strChannels)

    def archives(self, user: int) -> List[str]:
        """The archives, "$(#channel)\\archive" or a name alone for every channel, in any order."""
        return fields(self._checked(self._access.query.GetUserArchives(user)).strArchives)

    def edit_rights(self, user: int) -> List[EditRight]:
        """What the user may change, an entry for each archive that is listed."""
        listed = self._checked(self._access.query.GetUserEditRights(user)).strEditRights
        return [_edit_right(line) for line in listed.split("\r\n") if line]

    def document_conditions(self, user: int, channel: str, archive: str) -> List[DocumentCondition]:
        """The conditions for documents of an archive."""
        answer = self._checked(self._access.query.GetUserDocRights(user, request_text(channel, "the channel"),
                                                                  request_text(archive, "the archive")))
        return [DocumentCondition(*record) for record in database_records(answer.strDocRights, 5)]

    def rights_to_search(self, user: int, channel: str, archive: str) -> SearchRights:
        """What restricts the user's searches in an archive."""
        answer = self._checked(self._access.query.GetUserSearchRights(user, request_text(channel, "the channel"),
                                                                     request_text(archive, "the archive")))
        values = tuple((field, value) for field, value in database_records(answer.strFixedValues, 2))
        return SearchRights(values, tuple(fields(answer.strHiddenFields)), tuple(fields(answer.strNoMatchcodeFields)))

    def folder_rights(self, user: int) -> str:
        """The expression that restricts a search to what the user may see, for Archive.search(rights=...): of each of his
        channels the archives that are listed for him there, or the whole channel when none is. "" when he may see
        nothing. An archive is listed as "$(#channel)\\archive", or by its name for every channel."""
        archives = self.archives(user)
        expression = ""
        for channel in filter(None, sorted(self.channels(user))):  # the database gives them in any order
            start = f"$(#{channel})\\"
            listed = ""
            for archive in archives:
                if archive.startswith(start):
                    listed += _reference(channel, archive[len(start):])
                elif archive and not archive.startswith("$(#"):
                    listed += _reference(channel, archive)
            expression += listed or _reference(channel)
        return expression
