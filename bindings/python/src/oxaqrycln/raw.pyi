# Made from component/clsQuery.h by automation/describe_interface.py --python; a test compares the two.
from datetime import datetime
from typing import Any, NamedTuple, Union

from ._query import QueryCore, Rows as Rows
from ._values import LEFT_OUT as LEFT_OUT, NULL as NULL, Byte as Byte, Integer as Integer, LeftOut as LeftOut
from ._values import Null as Null, Request as Request
from ._watch import Outcome as Outcome, Progress as Progress, Server as Server, ServerHealth as ServerHealth

Input = Union[None, bool, int, float, str, bytes, datetime, Null]
OptionalInput = Union[Input, LeftOut]
Output = Union[Input, LeftOut]  # the start value; LEFT_OUT leaves the output out

class GetUserTELOUserResult(NamedTuple):
    result: Any
    strTELOUser: Any
    strTELOPasswd: Any

class GetUserChangePasswdResult(NamedTuple):
    result: Any
    intChangePasswd: Any

class GetUserRightsResult(NamedTuple):
    result: Any
    strRights: Any

class GetUserEditRightsResult(NamedTuple):
    result: Any
    strEditRights: Any

class GetUserGroupsResult(NamedTuple):
    result: Any
    strGroups: Any

class GetUserArchivesResult(NamedTuple):
    result: Any
    strArchives: Any

class GetUserChannelsResult(NamedTuple):
    result: Any
    strChannels: Any

class GetUserDocRightsResult(NamedTuple):
    result: Any
    strDocRights: Any

class GetUserSearchRightsResult(NamedTuple):
    result: Any
    strFixedValues: Any
    strHiddenFields: Any
    strNoMatchcodeFields: Any

class GetOutlinerResult(NamedTuple):
    result: Any
    strOutliner: Any

class GetOutlinerContentNextResult(NamedTuple):
    result: str
    lngID: Any
    intLevel: Any
    strFieldID: Any
    strDescription: Any
    strDataType: Any
    blnExpand: Any
    lngChildren: Any

class TELOGetChannelsInitResult(NamedTuple):
    result: Any
    strParamStatus: Any

class TELOGetChannelsNextResult(NamedTuple):
    result: str
    strChannelDescription: Any

class TELOGetAllArchivesInitResult(NamedTuple):
    result: Any
    strParamStatus: Any

class TELOGetQueryFormatListInitResult(NamedTuple):
    result: Any
    strParamStatus: Any

class TELOGetAllArchivesExtInitResult(NamedTuple):
    result: Any
    strParamStatus: Any

class TELOGetAllArchivesExtNextResult(NamedTuple):
    result: Any
    strChannel: Any
    strChannelDescription: Any

class TELOGetAllArchivesExtNextArchiveResult(NamedTuple):
    result: str
    strComment: Any

class TELOGetArchivePropertiesResult(NamedTuple):
    result: Any
    blnCreate: Any
    blnEdit: Any
    blnDelete: Any
    blnIndex: Any
    strParamStatus: Any

class TELOQueryArchiveInitResult(NamedTuple):
    result: Any
    strLayoutKeys: Any
    strLayoutValues: Any
    lngTotalHits: Any
    blnHitlistMultiTIFF: Any
    strParamStatus: Any

class TELOQueryArchiveNextResult(NamedTuple):
    result: str
    strChannel: Any
    strArchive: Any
    strDocID: Any
    strVer: Any

class TELOSortHitlistNextResult(NamedTuple):
    result: str
    strChannel: Any
    strArchive: Any
    strDocID: Any
    strVer: Any

class TELOGetDocumentInfoResult(NamedTuple):
    result: Any
    lngLaenge: Any
    strErstelldat: Any
    strAenderDat: Any
    strTitel: Any
    intFelderGes: Any
    intTextFelder: Any
    intBildFelder: Any
    intBlobFelder: Any
    strParamStatus: Any

class TELOGetSegmentDescriptionInitResult(NamedTuple):
    result: Any
    lngNotes: Any
    strParamStatus: Any

class TELOGetSegmentDescriptionNextResult(NamedTuple):
    result: str
    intFeldID: Any
    lngTextLaenge: Any
    intTrefferZahl: Any
    lngNCILaenge: Any
    strExt: Any
    intFeldTyp: Any
    strFeldtitel: Any
    strDateiname: Any
    intStatus: Any
    strLayoutID: Any
    lngThumbnailSize: Any

class TELOGetSegmentTextInitResult(NamedTuple):
    result: Any
    strParamStatus: Any

class TELOGetSegmentsInitResult(NamedTuple):
    result: Any
    lngNotes: Any
    strParamStatus: Any

class TELOGetSegmentsNextResult(NamedTuple):
    result: str
    strChannel: Any
    strArchive: Any
    strDocID: Any
    strVer: Any
    intFeldIndex: Any
    intFeldID: Any
    strFeldName: Any
    lngTextLaenge: Any
    intTrefferZahl: Any
    lngNCILaenge: Any
    strExt: Any
    intFeldTyp: Any
    strFeldtitel: Any
    strDateiname: Any
    intStatus: Any
    strLayoutID: Any
    lngThumbnailSize: Any

class TELOGetSegmentDataResult(NamedTuple):
    result: Any
    strFileName: Any
    lngFileLen: Any
    strParamStatus: Any

class TELOGetSegmentFirstBLOBResult(NamedTuple):
    result: Any
    strFileName: Any
    lngFileLen: Any
    strParamStatus: Any

class TELOGetSegmentPrintfileResult(NamedTuple):
    result: Any
    strFileName: Any
    lngFileLen: Any
    strParamStatus: Any

class TELOGetSegmentMultiTIFResult(NamedTuple):
    result: Any
    strFileName: Any
    lngFileLen: Any
    strParamStatus: Any

class TELOTransferBLOBResult(NamedTuple):
    result: Any
    strParamStatus: Any

class TELODeleteDocumentResult(NamedTuple):
    result: Any
    strParamStatus: Any

class CreateImportFileResult(NamedTuple):
    result: Any
    strParamStatus: Any

class TELOCreateDocumentResult(NamedTuple):
    result: Any
    strDocIDVer: Any
    strParamStatus: Any

class TELOEditDocumentResult(NamedTuple):
    result: Any
    strDocIDVer: Any
    strParamStatus: Any

class TELOUploadFileResult(NamedTuple):
    result: Any
    strParamStatus: Any

class UploadFileResult(NamedTuple):
    result: Any
    strFileNameParam: Any
    lngFileSizeParam: Any

class TELOGetNotesInitResult(NamedTuple):
    result: Any
    strParamStatus: Any

class TELOWriteNoteResult(NamedTuple):
    result: Any
    strParamStatus: Any

class TELODeleteNotesResult(NamedTuple):
    result: Any
    strParamStatus: Any

class TELOGetMasksInitResult(NamedTuple):
    result: Any
    strParamStatus: Any

class TELOGetMasksNextResult(NamedTuple):
    result: Any
    strMaskName: Any

class TELOGetMasksNextFieldResult(NamedTuple):
    result: Any
    lngTabIndex: Any
    lngWidth: Any
    strAlign: Any
    strName: Any
    blnMandatory: Any
    strInitText: Any
    blnListOnly: Any
    strList: Any

class OstranaQueryFahrauftraegeInitResult(NamedTuple):
    result: Any
    strParamStatus: Any

class OstranaQueryFahrauftraegeNextResult(NamedTuple):
    result: str
    strStatus: Any
    strDocID: Any
    strVer: Any

class OstranaGetFahrauftraegeMultiTIFFResult(NamedTuple):
    result: Any
    strFileName: Any
    lngFileLen: Any
    strParamStatus: Any

class OstranaUpdateFahrauftraegeStatusResult(NamedTuple):
    result: Any
    strParamStatus: Any

class FennikPrintHitlistPDFResult(NamedTuple):
    result: Any
    strFileName: Any
    lngFileLen: Any
    strParamStatus: Any

class Query(QueryCore):
    # Seconds that one request may take, all servers tried included; 0 ends it at the next second boundary.
    lngRequestTimeout: int
    # The web session; names the log file.
    strSessionID: str
    # Password of the archive account.
    strTELOPwd: str
    # Name of the archive account.
    strTELOUser: str
    # Directory of received files as this machine reaches it.
    strBlobPathLocal: str
    # The same directory as the query servers reach it.
    strBlobPathRemote: str
    # Connection string of the web user database.
    strDBConnect: str
    # Directory of the log files; "" logs nothing.
    strDebugLogPath: str
    # OLD-NEW extension rules for received files, separated by ",".
    strChangeFileExt: str
    # Default key of the encryption services.
    strDES56Key: str
    # Network address of the web user.
    strUserIP: str
    # Name of the web user.
    strUserName: str
    # When the web user logged on.
    datUserLoginTime: datetime
    def Init(self, blnParamDBInit: OptionalInput = ...) -> bool:
        """Opens the database connection unless blnParamDBInit is False, claims a connection slot and starts the timer
        that frees stale servers. To be called once, after the settings and before any other method. False on
        failure.
        """
    def OnStartPage(self, PassedScriptingContext: Input) -> None:
        """Keeps the page's scripting context and its request until OnEndPage: a shared pointer to an object of a class
        derived from ScriptingContext. Any other argument changes nothing.
        """
    def OnEndPage(self) -> None:
        """Releases the scripting context and its request.
        """
    def Encode(self, strText: Input) -> str:
        """Reversible encoding, two hexadecimal digits a character; "" on failure. Characters whose code plus 1-based
        position is 174 or more do not survive.
        """
    def Decode(self, strText: Input) -> str:
        """The inverse of Encode; "" on failure.
        """
    def DeleteFTPObjects(self, strFile: Input) -> None:
        """Deletes the files that match a path or pattern, then every directory beside them with its files. A directory
        that holds another one ends the call.
        """
    @property
    def RemoteHosts(self) -> Any:
        """Write-only property: the query servers of this thread, "host,port[,print flag[,user[,encoded password]]]"
        joined by "|". Print requests go to servers whose flag is 1 or left out only. The first assignment on a
        thread that succeeds counts, later ones have no effect.
        """
    @RemoteHosts.setter
    def RemoteHosts(self, strRemoteHosts: Input) -> None: ...
    def WriteUserToDB(self, strUser: Input, strPasswd: Input, strTELOUser: OptionalInput = ...,
            strTELOPasswd: OptionalInput = ...) -> Any:
        """Creates a user, with an account of the archive system when both of its texts are given. Returns the new
        user's ID (Long), or -1 (Integer) on failure. Names are not kept apart: several users may have one.
        """
    def GetNextDBObjectID(self, strField: Input, strTable: Input) -> Any:
        """Returns one more than the largest number in a column of a table, 1 for an empty one (Long); 0 (Long) on
        failure.
        """
    def CheckLogon(self, strUser: Input, strPasswd: OptionalInput = ...) -> Any:
        """Returns the ID of the first user of the name (Long) when strPasswd is his password, or is left out: then he
        only has to exist. Else, and on failure, 0 (Long).
        """
    def ChangePasswd(self, strUser: Input, strPasswdOld: Input, strPasswdNew: Input) -> Any:
        """Changes the password of all users of the name. Returns the ID of the first one (Integer), 0 when the old
        password is wrong, the ID is above 32767, or the database refuses the change.
        """
    def GetUserTELOUser(self, strUserID: Input, strTELOUser: Output = ...,
            strTELOPasswd: Output = ...) -> GetUserTELOUserResult:
        """Reads the user's account of the archive system. Returns 1 (Long) when there is such a user, with the outputs
        "" for one without an account; else, and on failure, 0 (Long) with the outputs untouched.
        """
    def GetUserChangePasswd(self, strUserID: Input, intChangePasswd: Output = ...) -> GetUserChangePasswdResult:
        """Reads whether the user must change his password. Returns 1 (Long) when the user has the flag set or cleared,
        which intChangePasswd receives; else, and on failure, 0 (Long), with intChangePasswd 0 (Integer).
        """
    def SetUserChangePasswd(self, strUserID: Input, intChangePasswd: Input) -> Any:
        """Says whether the user must change his password: a whole number, or a Boolean, which is stored as 1 or 0.
        Returns 1 (Long), also when there is no such user; 0 (Long) on failure.
        """
    def GetUserRights(self, strUserID: Input, strRights: Output = ...) -> GetUserRightsResult:
        """The general rights of the user and his groups, "^right^,^right^". Returns their number (Long), Empty on
        failure.
        """
    def GetUserEditRights(self, strUserID: Input, strEditRights: Output = ...) -> GetUserEditRightsResult:
        """The rights to create (N), edit (E) and delete (D) documents, a line "archive[,N][,E][,D]" with CR LF for
        each archive. Returns the number of archives (Long), or Empty on failure.
        """
    def GetUserGroups(self, strUserID: Input, strGroups: Output = ...) -> GetUserGroupsResult:
        """The groups the user is a member of, "[group],[group]". Returns their number (Long), or Empty on failure.
        """
    def GetUserArchives(self, strUserID: Input, strArchives: Output = ...) -> GetUserArchivesResult:
        """The archives the user and his groups may see, "^archive^,^archive^". Returns their number (Long), Empty on
        failure.
        """
    def GetUserChannels(self, strUserID: Input, strChannels: Output = ...) -> GetUserChannelsResult:
        """The channels the user and his groups may see, "^channel^,^channel^". Returns their number (Long), Empty on
        failure.
        """
    def GetUserDocRights(self, strUserID: Input, strChannel: Input, strArchive: Input,
            strDocRights: Output = ...) -> GetUserDocRightsResult:
        """The conditions by which documents are shown. Returns their number (Long); strDocRights receives a line
        "^definition^,^field^,^operator^,^value^,^type^" with CR LF for each, by definition and grade. A definition
        that reaches the user in several ways counts once, conditions that differ only in their grade are two.
        """
    def GetUserSearchRights(self, strUserID: Input, strChannel: Input, strArchive: Input, strFixedValues: Output = ...,
            strHiddenFields: Output = ..., strNoMatchcodeFields: Output = ...) -> GetUserSearchRightsResult:
        """The fields that searches are restricted in. Returns the number of fields in the definitions (Long), each
        counted once. strFixedValues receives a line "^field^,^value^" with CR LF for each value that a search must
        have, by field, then by character code; strHiddenFields and strNoMatchcodeFields the fields that are hidden
        and those that have no matchcode, "^field^,^field^", in ascending order. A definition applies to the
        archives that are listed for it; one without any applies nowhere.
        """
    def GetOutliner(self, strChannel: Input, strArchive: Input, strOutliner: Output = ...) -> GetOutlinerResult:
        """The outliners of an archive, whose channel and archive apply as those of the definitions above. Returns
        their number (Long), or -1 (Integer) on failure. strOutliner receives a line "^ID^,^name^" with CR LF for
        each, by name; "" on failure.
        """
    def GetOutlinerContentInit(self, lngOutlinerID: Input, lngParentID: OptionalInput = ...) -> Any:
        """Loads the children of a node, or with lngParentID left out or 0 the roots, by content. Returns their number
        (Long), 0 for an outliner or node that does not exist, or -1 (Integer) on failure; nothing is loaded then.
        The nodes outlive other requests: only this method replaces them.
        """
    def GetOutlinerContentNext(self, lngID: Output = ..., intLevel: Output = ..., strFieldID: Output = ...,
            strDescription: Output = ..., strDataType: Output = ..., blnExpand: Output = ...,
            lngChildren: Output = ...) -> GetOutlinerContentNextResult:
        """The content of the next node; "" at the end with the outputs untouched, and for a node without content.
        lngID receives the node's ID (Long), intLevel its level (Integer), strFieldID, strDescription and
        strDataType what the outliner says of that level, "" when it says nothing, blnExpand whether the node is
        expanded (Boolean) and lngChildren how many children it has in its outliner (Long).
        """
    def GetOutlinerContentReset(self) -> None:
        """Goes back to the first node.
        """
    def UpdateOutlinerContent(self, lngID: Input, blnExpand: Input) -> Any:
        """Stores for all users whether a node is expanded. Returns 1 (Long), or -1 (Integer) on failure and when there
        is no such node. Nodes that are loaded stay as they are.
        """
    def GetOutlinerSearchExpr(self, lngID: Input) -> str:
        """The query that finds the documents of a node: the conditions from the root down to the node, joined by " AND
        ". A level takes part unless its search setting is blank, Null, "False" or a spelling of the number 0. A
        condition is field:"value" for the data type "TXT" and field:value for others; a value of those is quoted,
        too, when it is empty or holds anything but letters, digits, ".", "-", "_" and "*". A double quote in a
        value becomes a blank. "" for a node that does not exist, on failure, and when no level takes part; parents
        that form a circle are a failure. A parent that does not exist, or belongs to another outliner, ends the
        walk as the root does.
        """
    def TELOGetChannelsInit(self, strParamStatus: Output = ...) -> TELOGetChannelsInitResult:
        """Asks for the channels and sorts them in ascending order, whatever their letter case. Returns their number
        (Long), or -1 (Integer) on failure.
        """
    def TELOGetChannelsNext(self, strChannelDescription: Output = ...) -> TELOGetChannelsNextResult:
        """The next channel: its line up to the first comma, "" at the end. strChannelDescription receives the text
        after the comma, "" without one.
        """
    def TELOGetAllArchivesInit(self, strParamStatus: Output = ...) -> TELOGetAllArchivesInitResult:
        """Asks for the archives and sorts them likewise. Returns their number (Long), or -1 (Integer) on failure.
        """
    def TELOGetAllArchivesNext(self) -> str:
        """The next archive, its whole line; "" at the end.
        """
    def TELOGetQueryFormatListInit(self, strChannel: Input, strArchive: Input,
            strParamStatus: Output = ...) -> TELOGetQueryFormatListInitResult:
        """Asks for the query formats of an archive. Returns their number (Long), or -1 (Integer) on failure.
        """
    def TELOGetQueryFormatListNext(self) -> str:
        """The next query format, in the server's order; "" at the end.
        """
    def TELOGetAllArchivesExtInit(self, strParamStatus: Output = ...) -> TELOGetAllArchivesExtInitResult:
        """Asks for every channel with its archives. Returns the number of channels (Long), or -1 (Integer) on failure.
        """
    def TELOGetAllArchivesExtNext(self, strChannel: Output = ...,
            strChannelDescription: Output = ...) -> TELOGetAllArchivesExtNextResult:
        """Moves to the next channel, whose name and description the outputs receive. Returns its number of archives
        (Long), or -1 (Integer) after the last channel, with the outputs "".
        """
    def TELOGetAllArchivesExtNextArchive(self, strComment: Output = ...) -> TELOGetAllArchivesExtNextArchiveResult:
        """The next archive of the current channel: its line up to the first comma, "" where the next channel begins.
        strComment receives the text after the comma, "" without one and where the next channel begins.
        """
    def TELOGetAllArchivesExtFirst(self) -> None:
        """Goes back to the first channel, without a request.
        """
    def TELOGetArchiveProperties(self, strChannel: Input, strArchive: Input, blnCreate: Output = ...,
            blnEdit: Output = ..., blnDelete: Output = ..., blnIndex: Output = ...,
            strParamStatus: Output = ...) -> TELOGetArchivePropertiesResult:
        """Asks for the properties of an archive. Returns the fifth one (String), or -1 (Integer) on failure or an
        empty answer; the outputs receive the first four as the server wrote them (String).
        """
    def TELOQueryArchiveInit(self, strQuery: Input, lngMaxLines: Input, lngQueryMax: Input, strQueryFormat: Input,
            strFolderRights: Input, strLayoutFieldID: OptionalInput = ..., strLayoutID: OptionalInput = ...,
            strLayoutKeys: Output = ..., strLayoutValues: Output = ..., lngTotalHits: Output = ...,
            blnHitlistMultiTIFF: Output = ..., strParamStatus: Output = ...) -> TELOQueryArchiveInitResult:
        """Runs a query. lngMaxLines limits the hit lines, lngQueryMax the hits; strQueryFormat is one that
        TELOGetQueryFormatListNext lists. strFolderRights restricts the search: "$(#channel);" for a channel,
        "$(#channel)\\archive;" for an archive, one after the other. "" restricts nothing: all archives are
        searched, so do not query for a user who may see none. Returns the number of rows (Long), the title row
        included; -1 (Integer) on failure, and a negative number also for an answer of fewer lines than a head has.
        lngTotalHits receives the total as text; strLayoutKeys and strLayoutValues, when both are given, the
        layout's keys and values joined by ","; blnHitlistMultiTIFF (Boolean) whether the hits can be had as one
        image file.
        """
    def TELOQueryArchiveNext(self, strChannel: Output = ..., strArchive: Output = ..., strDocID: Output = ...,
            strVer: Output = ...) -> TELOQueryArchiveNextResult:
        """The next row's display columns, "^column^,^column^"; "" at the end. The first row holds the titles. The
        outputs receive the hit's channel, archive, document id and version as text.
        """
    def TELOSortHitlistInit(self, lngCol: Input) -> Any:
        """Sorts the hits by a display column, lngCol 1 being the first; sends no request. The server says what a
        column holds, by a line in front of the title row that has a flag for each field of the rows, a decimal
        number: 0x400 is set for dates, else 0x200 for numbers; all others are texts. Texts are compared in upper
        case by their character codes, dates (dd.mm.yyyy, yyyy-mm-dd or mm/dd/yyyy) by the calendar, numbers (a
        sign, digits, a decimal comma or point) by value. What is no date or number comes before those that are, by
        its text, empty first; a row that lacks the column counts as empty. Equal ones keep their order, in both
        directions. The first sort by a column after a query, or after a sort by another one, turns the direction of
        the data round: it is ascending when the first hit is greater than the last one, else descending. Each
        further sort by the column turns the direction of the one before round. Returns the number of rows (Long),
        the title row included, and TELOSortHitlistNext begins at the title row; -1 (Integer), with nothing changed,
        for a column that the title row does not have and without a title row.
        """
    def TELOSortHitlistNext(self, strChannel: Output = ..., strArchive: Output = ..., strDocID: Output = ...,
            strVer: Output = ...) -> TELOSortHitlistNextResult:
        """The next row of the list, read as TELOQueryArchiveNext reads it, with a place of its own: at the title row
        after a query and after a sort.
        """
    def TELOSortHitlist2Init(self, strHitLines: Input, intSortCol: Input) -> Any:
        """Sorts lines that the page holds in the same way: CR LF between them, one at the end ignored; first the
        flags, then the title row, then the hits, each row with reference, document id and version in front of its
        columns. intSortCol 1 is the first display column. The lines, their read position and the direction are kept
        apart from the list of the last query, and no query touches them; the direction is remembered from one call
        to the next, also for other lines. Returns as TELOSortHitlistInit does; after -1 the lines of the call
        before are still there.
        """
    def TELOSortHitlist2Next(self) -> str:
        """The next of these lines, whole, the title row first; an empty line is "", too.
        """
    def TELODeleteFromHitlist(self, lngLine: Input) -> Any:
        """Removes a hit from the list of the last query; lngLine 1 is the first hit in its present order. Returns the
        number of hits left (Long), or -1 (Integer), with nothing changed, when there is no such hit.
        TELOSortHitlistNext goes on with the row it would have read, or the next one when that was removed. Removing
        a hit moves four bytes for each one between it and the nearer end of the list: at most two million bytes in
        a list of a million hits.
        """
    def TELOGetDocumentInfo(self, strChannel: Input, strArchive: Input, strDocID: Input, strVer: Input,
            lngLaenge: Output = ..., strErstelldat: Output = ..., strAenderDat: Output = ..., strTitel: Output = ...,
            intFelderGes: Output = ..., intTextFelder: Output = ..., intBildFelder: Output = ...,
            intBlobFelder: Output = ..., strParamStatus: Output = ...) -> TELOGetDocumentInfoResult:
        """Information about a document. Returns the number of lines of the answer (Long), or -1 (Integer) when the
        request failed. Of the first line, when there is one: lngLaenge receives the length (Long), strErstelldat
        and strAenderDat the dates of creation and change as the server wrote them, strTitel the title, the others
        the numbers of fields in all, of text, image and stored-file fields (Integer).
        """
    def TELOGetSegmentDescriptionInit(self, strChannel: Input, strArchive: Input, strDocID: Input, strVer: Input,
            strParamThumbnailPath: OptionalInput = ..., lngNotes: Output = ...,
            strParamStatus: Output = ...) -> TELOGetSegmentDescriptionInitResult:
        """Asks for the descriptions of a document's segments. Returns their number (Long), or -1 (Integer) on failure.
        lngNotes receives the number of the document's notes as text; strParamThumbnailPath is handed to the server.
        """
    def TELOGetSegmentDescriptionNext(self, intFeldID: Output = ..., lngTextLaenge: Output = ...,
            intTrefferZahl: Output = ..., lngNCILaenge: Output = ..., strExt: Output = ..., intFeldTyp: Output = ...,
            strFeldtitel: Output = ..., strDateiname: Output = ..., intStatus: Output = ..., strLayoutID: Output = ...,
            lngThumbnailSize: Output = ...) -> TELOGetSegmentDescriptionNextResult:
        """The next segment's name, "" at the end. All outputs are text, whatever their names say.
        """
    def TELOGetSegmentTextInit(self, strChannel: Input, strArchive: Input, strDocID: Input, strVer: Input,
            strQuery: OptionalInput = ..., strMarkOn: OptionalInput = ..., strMarkOff: OptionalInput = ...,
            strCRLF: OptionalInput = ..., strBlank: OptionalInput = ...,
            strParamStatus: Output = ...) -> TELOGetSegmentTextInitResult:
        """Asks for a document's texts, with strMarkOn before and strMarkOff after each hit of strQuery and strBlank
        for its blanks. strCRLF separates the lines of a text, CR LF when left out. Returns the number of texts
        (Long), or -1 (Integer) on failure; they outlive other requests until the next TELOGetSegmentTextInit or
        TELOGetNotesInit.
        """
    def TELOGetSegmentTextNext(self) -> str:
        """The next text; "" at the end, and also for an empty one.
        """
    def TELOGetSegmentsInit(self, strChannel: Input, strArchive: Input, strDocID: Input, strVer: Input,
            strQuery: OptionalInput = ..., strMarkOn: OptionalInput = ..., strMarkOff: OptionalInput = ...,
            strParamCRLF: OptionalInput = ..., strBlank: OptionalInput = ..., strThumbnailPath: OptionalInput = ...,
            blnIncludeERF: OptionalInput = ..., lngNotes: Output = ...,
            strParamStatus: Output = ...) -> TELOGetSegmentsInitResult:
        """Asks for a document's segments with their descriptions and texts; the inputs are those of
        TELOGetSegmentTextInit and TELOGetSegmentDescriptionInit, and blnIncludeERF, which only True switches on.
        Returns the number of segments (Long), or -1 (Integer) on failure; lngNotes receives the number of notes
        (Long).
        """
    def TELOGetSegmentsNext(self, strChannel: Output = ..., strArchive: Output = ..., strDocID: Output = ...,
            strVer: Output = ..., intFeldIndex: Output = ..., intFeldID: Output = ..., strFeldName: Output = ...,
            lngTextLaenge: Output = ..., intTrefferZahl: Output = ..., lngNCILaenge: Output = ..., strExt: Output = ...,
            intFeldTyp: Output = ..., strFeldtitel: Output = ..., strDateiname: Output = ..., intStatus: Output = ...,
            strLayoutID: Output = ..., lngThumbnailSize: Output = ...) -> TELOGetSegmentsNextResult:
        """The next segment's text, its lines joined by the strParamCRLF of TELOGetSegmentsInit; "" at the end, and
        also for an empty one. Outputs named int... receive an Integer, lng... a Long, str... a text.
        """
    def TELOGetSegmentData(self, strChannel: Input, strArchive: Input, strDocID: Input, strVer: Input,
            intFieldIndex: Input, strFileName: Output = ..., lngFileLen: Output = ...,
            strParamStatus: Output = ...) -> TELOGetSegmentDataResult:
        """The content of a segment, as a file. Returns 1 (Long), or -1 (Integer) on failure.
        """
    def TELOGetSegmentFirstBLOB(self, strChannel: Input, strArchive: Input, strDocID: Input, strVer: Input,
            strParamFileExt: OptionalInput = ..., strFileName: Output = ..., lngFileLen: Output = ...,
            strParamStatus: Output = ...) -> TELOGetSegmentFirstBLOBResult:
        """The first stored file, of an extension when one is given. Returns 1 (Long), or -1 (Integer) on failure.
        """
    def TELOGetSegmentPrintfile(self, strChannel: Input, strArchive: Input, strDocID: Input, strVer: Input,
            strFieldID: Input, strFileName: Output = ..., lngFileLen: Output = ...,
            strParamStatus: Output = ...) -> TELOGetSegmentPrintfileResult:
        """A file to print; asks query servers with the print flag only. Returns 1 (Long), or -1 (Integer) on failure.
        """
    def TELOGetSegmentMultiTIF(self, strChannel: Input, strArchive: Input, strDocID: Input, strVer: Input,
            strPages: Input, strFileName: Output = ..., lngFileLen: Output = ...,
            strParamStatus: Output = ...) -> TELOGetSegmentMultiTIFResult:
        """An image file of several pages, "1;4-6". Returns 1 (Long), or -1 (Integer) on failure. Without a file in the
        answer the outputs become "" and 0 (Long). A list of more than a million pages fails without a request.
        """
    def TELOTransferBLOB(self, strFile: Input, lngFileLen: Input,
            strParamStatus: Output = ...) -> TELOTransferBLOBResult:
        """Receives a file of the remote blob directory over the connection into strBlobPathLocal; only the last part
        of strFile counts. lngFileLen is its length in bytes, 0 to 2147483647. Returns 1 (Long), or -1 (Integer) on
        failure, also for a file of another length; nothing of the file is left then, and an older one of that name
        stays.
        """
    def TELODeleteDocument(self, strChannel: Input, strArchive: Input, strDocID: Input, strVer: Input,
            strParamStatus: Output = ...) -> TELODeleteDocumentResult:
        """Deletes a document or one of its versions. Returns 1 (Long), or -1 (Integer) on failure.
        """
    def CreateImportFile(self, strImportFile: Input, strChannel: Input, strArchive: Input, strTitle: Input,
            strParamFieldTypes: Input, strParamFieldIDs: Input, strFieldContents: Input,
            strCharSet: OptionalInput = ..., strParamStatus: Output = ...) -> CreateImportFileResult:
        """Writes the description of a document to a file, after the content of an older file of that name. The lists
        of field types and ids are separated by ","; the contents are written as they are; strCharSet names their
        character set. No line of a field's text may begin with "@": it would begin another field, or a document in
        any archive. Returns 1 (Long), or -1 (Integer) on failure; sends no request, strParamStatus becomes "" on
        success.
        """
    def TELOCreateDocument(self, strImportFile: Input, strDocIDVer: Output = ...,
            strParamStatus: Output = ...) -> TELOCreateDocumentResult:
        """Has the server create a document from an import file, named as the server reaches it. Returns the number of
        lines of the answer (Long), or -1 (Integer) on failure; strDocIDVer receives the document's id and version,
        as text.
        """
    def TELOEditDocument(self, strImportFile: Input, strDocIDVer: Input,
            strParamStatus: Output = ...) -> TELOEditDocumentResult:
        """The same for a new version of the document that strDocIDVer names, which receives the new id and version.
        Returns the number of lines of the answer (Long), or -1 (Integer) on failure.
        """
    def TELOUploadFile(self, strFile: Input, strParamStatus: Output = ...) -> TELOUploadFileResult:
        """Sends a file of strBlobPathLocal to the query server, into its blob directory; only the last part of strFile
        counts. Returns 1 (Long), or -1 (Integer) on failure. The records that the ...Next methods read stay as they
        are.
        """
    def UploadFile(self, strSubDir: OptionalInput = ..., strFileNameParam: Output = ...,
            lngFileSizeParam: Output = ...) -> UploadFileResult:
        """Takes the first file out of the form in the body of the page's request (see OnStartPage) and stores it in
        strBlobPathLocal under the last part of its name, with strSubDir and "_" in front when given. Returns 1 when
        a file was stored, 0 when the form held none (Long), -1 (Integer) on failure. Of a file that was stored,
        strFileNameParam receives the name, lngFileSizeParam the size in bytes (Long).
        """
    def TELOGetNotesInit(self, strChannel: Input, strArchive: Input, strDocID: Input, strVer: Input,
            strParamStatus: Output = ...) -> TELOGetNotesInitResult:
        """Asks for a document's notes. Returns their number (Long), or -1 (Integer) on failure. They take the place of
        the texts of TELOGetSegmentTextInit, and outlive other requests as these do.
        """
    def TELOGetNotesNext(self) -> str:
        """The next note: its header, "," and its text with CR LF between lines; "" at the end.
        """
    def TELOWriteNote(self, strChannel: Input, strArchive: Input, strDocID: Input, strVer: Input, strNote: Input,
            strParamCRLF: OptionalInput = ..., strParamStatus: Output = ...) -> TELOWriteNoteResult:
        """Attaches the first 8000 characters of a note. strParamCRLF is the text that means a line break, CR LF when
        left out. Returns 1 (Long), or -1 (Integer) on failure.
        """
    def TELODeleteNotes(self, strChannel: Input, strArchive: Input, strDocID: Input, strVer: Input,
            strParamStatus: Output = ...) -> TELODeleteNotesResult:
        """Deletes all notes of a document. Returns 1 (Long), or -1 (Integer) on failure.
        """
    def TELOGetMasksInit(self, strChannel: Input, strArchive: Input,
            strParamStatus: Output = ...) -> TELOGetMasksInitResult:
        """Asks for the masks of an archive. Returns their number (Long), or -1 (Integer) on failure.
        """
    def TELOGetMasksNext(self, strMaskName: Output = ...) -> TELOGetMasksNextResult:
        """Moves to the next mask, whose name strMaskName receives. Returns the number of its fields (Long), or -1
        (Integer) after the last mask, with strMaskName "".
        """
    def TELOGetMasksNextField(self, lngTabIndex: Output = ..., lngWidth: Output = ..., strAlign: Output = ...,
            strName: Output = ..., blnMandatory: Output = ..., strInitText: Output = ..., blnListOnly: Output = ...,
            strList: Output = ...) -> TELOGetMasksNextFieldResult:
        """The next field of the mask, its properties as the server wrote them. Returns how many follow it in the mask
        (Long), or -1 (Integer) when there was none, with the outputs untouched.
        """
    def TELOGetMasksFirst(self) -> None:
        """Goes back to the first mask, without a request.
        """
    def EncryptBase64(self, strString: Input, strParamKey: OptionalInput = ...) -> str:
        """Encrypts a text, with the result in Base64; "" on failure.
        """
    def Encrypt(self, strString: Input, strParamKey: OptionalInput = ...) -> str:
        """Encrypts a text; "" on failure.
        """
    def Decrypt(self, strString: Input, strParamKey: OptionalInput = ...) -> str:
        """The inverse of Encrypt; "" on failure, also for a text that was encrypted with another key.
        """
    def DecryptBase64(self, strString: Input, strParamKey: OptionalInput = ...) -> str:
        """The inverse of EncryptBase64; "" on failure, also for a text that was encrypted with another key.
        """
    def DecodeBase64(self, strString: Input) -> str:
        """The bytes of a Base64 text; "" on failure.
        """
    def EncodeBase64(self, strString: Input) -> str:
        """The bytes of a text in Base64; "" on failure.
        """
    def OstranaQueryFahrauftraegeInit(self, strQuery: Input, lngMaxLines: Input,
            strParamStatus: Output = ...) -> OstranaQueryFahrauftraegeInitResult:
        """Asks for the transport orders that a query of the server's own language finds, lngMaxLines at most.
        """
    def OstranaQueryFahrauftraegeNext(self, strStatus: Output = ..., strDocID: Output = ...,
            strVer: Output = ...) -> OstranaQueryFahrauftraegeNextResult:
        """The next order: its id and the columns that the server adds, "^id^,^column^". The outputs receive its
        status, and the id and version of its document, as text. A line with fewer than four fields is an error: "",
        the outputs untouched, and the next call reads the same line again.
        """
    def OstranaGetFahrauftraegeMultiTIFF(self, strOrderIDs: Input, strFileName: Output = ..., lngFileLen: Output = ...,
            strParamStatus: Output = ...) -> OstranaGetFahrauftraegeMultiTIFFResult:
        """The page images of orders as one image file in the blob directory; result and outputs as those of
        TELOGetSegmentMultiTIF. The list of order ids is handed to the server as it is.
        """
    def OstranaUpdateFahrauftraegeStatus(self, strOrderID: Input, strStatus: Input,
            strParamStatus: Output = ...) -> OstranaUpdateFahrauftraegeStatusResult:
        """Gives an order another status. Returns Long 1.
        """
    def FennikPrintHitlistPDF(self, strTitle: Input, strFileName: Output = ..., lngFileLen: Output = ...,
            strParamStatus: Output = ...) -> FennikPrintHitlistPDFResult:
        """Has the server print the hit list of the last query, title row included, to a PDF file in the blob
        directory; result and outputs as those of TELOGetSegmentData. Without a title row to print it fails without
        a request, and strParamStatus is untouched. A title that holds "^,^" breaks the request.
        """
    def WriteLog(self, strLogLine: Input, bytLogType: OptionalInput = ...) -> None:
        """Writes one line to the session's log. bytLogType is 1 for information (also when left out), 2 for a warning,
        3 for an error, 4 for debugging; any other value counts as 1. A line that cannot be written is lost.
        """
    def LiveCheck(self) -> str:
        """Asks a query server whether it is alive: the first line of its answer, or the error text of a request that
        failed; "" when there is neither.
        """
    def HelloWorld(self) -> str:
        """Returns "Hello World!": shows that the component can be created and called.
        """
    def DirectQuery(self, strQueryString: Input) -> str:
        """Sends a complete command part ("^Command^,^parameter^") as it is: all lines of the answer, joined by CR LF,
        or the error text of a request that failed; "" when there is neither.
        """
    def WriteTest(self) -> None:
        """Writes WriteTest.txt in strBlobPathLocal, in place of a file of that name, and deletes it, also when it
        could not be written whole; whether that worked shows only in the log.
        """
