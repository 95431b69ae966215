<?php

// Made from component/clsQuery.h by automation/describe_interface.py --php; a test compares the two.

declare(strict_types=1);

namespace Oxaqrycln\Raw;

/**
 * One instance serves one page request, on the thread that made it. No method lets an error out: a failure shows in
 * the result and in the session's log. An optional input that is Missing counts as left out; an output that is left
 * out (in C++: nullptr) is never written. Unless a method says otherwise:
 *
 * - an ...Init method sends one request and returns the number of records (Long), or -1 (Integer) on failure.
 * strParamStatus receives "" on success; when the request failed it receives the error text, and no other output is
 * written.
 *
 * - strParamStatus is about the request only. An error of the component itself (an argument that is refused, a file
 * that cannot be read or written, an answer that does not have the expected form) leaves it untouched and is written
 * to the session's log. So -1 with strParamStatus as the page had set it means: see the log. And -1 with
 * strParamStatus "" means that the server reported success, but its answer holds none of the data that is read.
 *
 * - a ...Next method returns the next record's text, or "" at the end with the outputs untouched.
 *
 * - every request but that of TELOUploadFile replaces the records that the ...Next methods of every family read, a
 * failed one by none; LiveCheck and calls that fetch a file or change a document are requests, too. So read a list to
 * its end first. Lists that outlive other requests say so: the rows of TELOSortHitlistNext, texts, notes, outliners.
 *
 * Settings:
 * Public variables, to be assigned before Init. All start empty; nothing else configures the component.
 *
 * Web users:
 * These methods work on the database that Init opened. IDs are whole numbers; a text with a quote and an ID that is no
 * number fail before the database sees them, and so does a text with a backslash where the database takes one as an
 * escape character. Passwords are stored encoded, not encrypted.
 *
 * User rights:
 * What a user may do himself and through the groups he is a member of. Each method writes a list to its output; on
 * failure the output holds what had been read, at first "".
 *
 * User rights:
 * Which definitions restrict what a user sees and searches in an archive: those that are given to the user himself or
 * to a group he is a member of. A definition whose channel is empty or Null applies in every channel, one whose
 * archive is empty or Null to every archive. A failure returns Empty with every output "". Texts appear in the outputs
 * as they are stored: one that holds "^,^" or a line end changes what the page reads.
 *
 * Outliners:
 * Trees of predefined search values in the database that Init opened. Names and contents are sorted in upper case by
 * character code, as the channel lists are, whatever the collation of the database; numbers in them count as text.
 *
 * Query and hit list:
 * The last query's rows are also kept as a list of their own, which can be sorted and from which hits can be deleted.
 * It outlives every other request, until a query whose answer has a head succeeds: while a page walks it with
 * TELOSortHitlistNext, it may ask for each document. TELOQueryArchiveNext always reads the rows as they came.
 *
 * Content:
 * The TELOGetSegment... methods of this group have the server put a file into the blob directory that both machines
 * reach. strFileName receives the file's bare name after strChangeFileExt has been applied to the file in
 * strBlobPathLocal, lngFileLen its length as text. An answer of one line leaves both untouched; an empty name in it
 * gives "". A name that could leave the directory, or is taken there by something other than a file, fails the call.
 *
 * Encryption:
 * Single DES with a key of 56 bits: the first 7 characters of strParamKey, or of strDES56Key when it is left out; see
 * docs/userdb.md for what it does not protect against. Cipher texts are bytes, or their Base64 form.
 *
 * @property int $lngRequestTimeout Seconds that one request may take, all servers tried included; 0 ends it at the
 * next second boundary.
 * @property string $strSessionID The web session; names the log file.
 * @property string $strTELOPwd Password of the archive account.
 * @property string $strTELOUser Name of the archive account.
 * @property string $strBlobPathLocal Directory of received files as this machine reaches it.
 * @property string $strBlobPathRemote The same directory as the query servers reach it.
 * @property string $strDBConnect Connection string of the web user database.
 * @property string $strDebugLogPath Directory of the log files; "" logs nothing.
 * @property string $strChangeFileExt OLD-NEW extension rules for received files, separated by ",".
 * @property string $strDES56Key Default key of the encryption services.
 * @property string $strUserIP Network address of the web user.
 * @property string $strUserName Name of the web user.
 * @property \DateTimeImmutable $datUserLoginTime When the web user logged on.
 * @property-write string $RemoteHosts Write-only property: the query servers of this thread, "host,port[,print
 * flag[,user[,encoded password]]]" joined by "|". Print requests go to servers whose flag is 1 or left out only. The
 * first assignment on a thread that succeeds counts, later ones have no effect.
 */
final class Query extends Instance
{
    /** The number of each member. */
    public const MEMBERS = [
        'lngRequestTimeout' => 1,
        'strSessionID' => 2,
        'strTELOPwd' => 3,
        'strTELOUser' => 4,
        'strBlobPathLocal' => 5,
        'strBlobPathRemote' => 6,
        'strDBConnect' => 7,
        'strDebugLogPath' => 8,
        'strChangeFileExt' => 9,
        'strDES56Key' => 10,
        'strUserIP' => 11,
        'strUserName' => 12,
        'datUserLoginTime' => 13,
        'Init' => 14,
        'OnStartPage' => 15,
        'OnEndPage' => 16,
        'Encode' => 17,
        'Decode' => 18,
        'DeleteFTPObjects' => 19,
        'RemoteHosts' => 20,
        'WriteUserToDB' => 21,
        'GetNextDBObjectID' => 22,
        'CheckLogon' => 23,
        'ChangePasswd' => 24,
        'GetUserTELOUser' => 25,
        'GetUserChangePasswd' => 26,
        'SetUserChangePasswd' => 27,
        'GetUserRights' => 28,
        'GetUserEditRights' => 29,
        'GetUserGroups' => 30,
        'GetUserArchives' => 31,
        'GetUserChannels' => 32,
        'GetUserDocRights' => 33,
        'GetUserSearchRights' => 34,
        'GetOutliner' => 35,
        'GetOutlinerContentInit' => 36,
        'GetOutlinerContentNext' => 37,
        'GetOutlinerContentReset' => 38,
        'UpdateOutlinerContent' => 39,
        'GetOutlinerSearchExpr' => 40,
        'TELOGetChannelsInit' => 41,
        'TELOGetChannelsNext' => 42,
        'TELOGetAllArchivesInit' => 43,
        'TELOGetAllArchivesNext' => 44,
        'TELOGetQueryFormatListInit' => 45,
        'TELOGetQueryFormatListNext' => 46,
        'TELOGetAllArchivesExtInit' => 47,
        'TELOGetAllArchivesExtNext' => 48,
        'TELOGetAllArchivesExtNextArchive' => 49,
        'TELOGetAllArchivesExtFirst' => 50,
        'TELOGetArchiveProperties' => 51,
        'TELOQueryArchiveInit' => 52,
        'TELOQueryArchiveNext' => 53,
        'TELOSortHitlistInit' => 54,
        'TELOSortHitlistNext' => 55,
        'TELOSortHitlist2Init' => 56,
        'TELOSortHitlist2Next' => 57,
        'TELODeleteFromHitlist' => 58,
        'TELOGetDocumentInfo' => 59,
        'TELOGetSegmentDescriptionInit' => 60,
        'TELOGetSegmentDescriptionNext' => 61,
        'TELOGetSegmentTextInit' => 62,
        'TELOGetSegmentTextNext' => 63,
        'TELOGetSegmentsInit' => 64,
        'TELOGetSegmentsNext' => 65,
        'TELOGetSegmentData' => 66,
        'TELOGetSegmentFirstBLOB' => 67,
        'TELOGetSegmentPrintfile' => 68,
        'TELOGetSegmentMultiTIF' => 69,
        'TELOTransferBLOB' => 70,
        'TELODeleteDocument' => 71,
        'CreateImportFile' => 72,
        'TELOCreateDocument' => 73,
        'TELOEditDocument' => 74,
        'TELOUploadFile' => 75,
        'UploadFile' => 76,
        'TELOGetNotesInit' => 77,
        'TELOGetNotesNext' => 78,
        'TELOWriteNote' => 79,
        'TELODeleteNotes' => 80,
        'TELOGetMasksInit' => 81,
        'TELOGetMasksNext' => 82,
        'TELOGetMasksNextField' => 83,
        'TELOGetMasksFirst' => 84,
        'EncryptBase64' => 85,
        'Encrypt' => 86,
        'Decrypt' => 87,
        'DecryptBase64' => 88,
        'DecodeBase64' => 89,
        'EncodeBase64' => 90,
        'OstranaQueryFahrauftraegeInit' => 91,
        'OstranaQueryFahrauftraegeNext' => 92,
        'OstranaGetFahrauftraegeMultiTIFF' => 93,
        'OstranaUpdateFahrauftraegeStatus' => 94,
        'FennikPrintHitlistPDF' => 95,
        'WriteLog' => 96,
        'LiveCheck' => 97,
        'HelloWorld' => 98,
        'DirectQuery' => 99,
        'WriteTest' => 100,
    ];

    /**
     * Init([blnParamDBInit]) -> Boolean
     *
     * Opens the database connection unless blnParamDBInit is False, claims a connection slot and starts the timer that
     * frees stale servers. To be called once, after the settings and before any other method. False on failure.
     */
    public function Init(mixed $blnParamDBInit = Argument::LeftOut): bool
    {
        return $this->invoke(14, [0 => $blnParamDBInit], []);
    }

    /**
     * OnStartPage(PassedScriptingContext)
     *
     * Keeps the page's scripting context and its request until OnEndPage: a shared pointer to an object of a class
     * derived from ScriptingContext. Any other argument changes nothing.
     */
    public function OnStartPage(mixed $PassedScriptingContext): void
    {
        $this->invoke(15, [0 => $PassedScriptingContext], []);
    }

    /**
     * OnEndPage()
     *
     * Releases the scripting context and its request.
     */
    public function OnEndPage(): void
    {
        $this->invoke(16, [], []);
    }

    /**
     * Encode(strText) -> String
     *
     * Reversible encoding, two hexadecimal digits a character; "" on failure. Characters whose code plus 1-based
     * position is 174 or more do not survive.
     */
    public function Encode(mixed $strText): string
    {
        return $this->invoke(17, [0 => $strText], []);
    }

    /**
     * Decode(strText) -> String
     *
     * The inverse of Encode; "" on failure.
     */
    public function Decode(mixed $strText): string
    {
        return $this->invoke(18, [0 => $strText], []);
    }

    /**
     * DeleteFTPObjects(strFile)
     *
     * Deletes the files that match a path or pattern, then every directory beside them with its files. A directory
     * that holds another one ends the call.
     */
    public function DeleteFTPObjects(mixed $strFile): void
    {
        $this->invoke(19, [0 => $strFile], []);
    }

    /**
     * WriteUserToDB(strUser, strPasswd, [strTELOUser], [strTELOPasswd]) -> Variant
     *
     * Creates a user, with an account of the archive system when both of its texts are given. Returns the new user's
     * ID (Long), or -1 (Integer) on failure. Names are not kept apart: several users may have one.
     */
    public function WriteUserToDB(mixed $strUser, #[\SensitiveParameter] mixed $strPasswd, mixed $strTELOUser = Argument::LeftOut, #[\SensitiveParameter] mixed $strTELOPasswd = Argument::LeftOut): mixed
    {
        return $this->invoke(21, [0 => $strUser, 1 => $strPasswd, 2 => $strTELOUser, 3 => $strTELOPasswd], []);
    }

    /**
     * GetNextDBObjectID(strField, strTable) -> Variant
     *
     * Returns one more than the largest number in a column of a table, 1 for an empty one (Long); 0 (Long) on failure.
     */
    public function GetNextDBObjectID(mixed $strField, mixed $strTable): mixed
    {
        return $this->invoke(22, [0 => $strField, 1 => $strTable], []);
    }

    /**
     * CheckLogon(strUser, [strPasswd]) -> Variant
     *
     * Returns the ID of the first user of the name (Long) when strPasswd is his password, or is left out: then he only
     * has to exist. Else, and on failure, 0 (Long).
     */
    public function CheckLogon(mixed $strUser, #[\SensitiveParameter] mixed $strPasswd = Argument::LeftOut): mixed
    {
        return $this->invoke(23, [0 => $strUser, 1 => $strPasswd], []);
    }

    /**
     * ChangePasswd(strUser, strPasswdOld, strPasswdNew) -> Variant
     *
     * Changes the password of all users of the name. Returns the ID of the first one (Integer), 0 when the old
     * password is wrong, the ID is above 32767, or the database refuses the change.
     */
    public function ChangePasswd(mixed $strUser, #[\SensitiveParameter] mixed $strPasswdOld, #[\SensitiveParameter] mixed $strPasswdNew): mixed
    {
        return $this->invoke(24, [0 => $strUser, 1 => $strPasswdOld, 2 => $strPasswdNew], []);
    }

    /**
     * GetUserTELOUser(strUserID, [out strTELOUser], [out strTELOPasswd]) -> Variant
     *
     * Reads the user's account of the archive system. Returns 1 (Long) when there is such a user, with the outputs ""
     * for one without an account; else, and on failure, 0 (Long) with the outputs untouched.
     */
    public function GetUserTELOUser(mixed $strUserID, mixed &$strTELOUser = Argument::LeftOut, #[\SensitiveParameter] mixed &$strTELOPasswd = Argument::LeftOut): mixed
    {
        return $this->invoke(25, [0 => $strUserID], [1 => &$strTELOUser, 2 => &$strTELOPasswd]);
    }

    /**
     * GetUserChangePasswd(strUserID, [out intChangePasswd]) -> Variant
     *
     * Reads whether the user must change his password. Returns 1 (Long) when the user has the flag set or cleared,
     * which intChangePasswd receives; else, and on failure, 0 (Long), with intChangePasswd 0 (Integer).
     */
    public function GetUserChangePasswd(mixed $strUserID, #[\SensitiveParameter] mixed &$intChangePasswd = Argument::LeftOut): mixed
    {
        return $this->invoke(26, [0 => $strUserID], [1 => &$intChangePasswd]);
    }

    /**
     * SetUserChangePasswd(strUserID, intChangePasswd) -> Variant
     *
     * Says whether the user must change his password: a whole number, or a Boolean, which is stored as 1 or 0. Returns
     * 1 (Long), also when there is no such user; 0 (Long) on failure.
     */
    public function SetUserChangePasswd(mixed $strUserID, #[\SensitiveParameter] mixed $intChangePasswd): mixed
    {
        return $this->invoke(27, [0 => $strUserID, 1 => $intChangePasswd], []);
    }

    /**
     * GetUserRights(strUserID, [out strRights]) -> Variant
     *
     * The general rights of the user and his groups, "^right^,^right^". Returns their number (Long), Empty on failure.
     */
    public function GetUserRights(mixed $strUserID, mixed &$strRights = Argument::LeftOut): mixed
    {
        return $this->invoke(28, [0 => $strUserID], [1 => &$strRights]);
    }

    /**
     * GetUserEditRights(strUserID, [out strEditRights]) -> Variant
     *
     * The rights to create (N), edit (E) and delete (D) documents, a line "archive[,N][,E][,D]" with CR LF for each
     * archive. Returns the number of archives (Long), or Empty on failure.
     */
    public function GetUserEditRights(mixed $strUserID, mixed &$strEditRights = Argument::LeftOut): mixed
    {
        return $this->invoke(29, [0 => $strUserID], [1 => &$strEditRights]);
    }

    /**
     * GetUserGroups(strUserID, [out strGroups]) -> Variant
     *
     * The groups the user is a member of, "[group],[group]". Returns their number (Long), or Empty on failure.
     */
    public function GetUserGroups(mixed $strUserID, mixed &$strGroups = Argument::LeftOut): mixed
    {
        return $this->invoke(30, [0 => $strUserID], [1 => &$strGroups]);
    }

    /**
     * GetUserArchives(strUserID, [out strArchives]) -> Variant
     *
     * The archives the user and his groups may see, "^archive^,^archive^". Returns their number (Long), Empty on
     * failure.
     */
    public function GetUserArchives(mixed $strUserID, mixed &$strArchives = Argument::LeftOut): mixed
    {
        return $this->invoke(31, [0 => $strUserID], [1 => &$strArchives]);
    }

    /**
     * GetUserChannels(strUserID, [out strChannels]) -> Variant
     *
     * The channels the user and his groups may see, "^channel^,^channel^". Returns their number (Long), Empty on
     * failure.
     */
    public function GetUserChannels(mixed $strUserID, mixed &$strChannels = Argument::LeftOut): mixed
    {
        return $this->invoke(32, [0 => $strUserID], [1 => &$strChannels]);
    }

    /**
     * GetUserDocRights(strUserID, strChannel, strArchive, [out strDocRights]) -> Variant
     *
     * The conditions by which documents are shown. Returns their number (Long); strDocRights receives a line
     * "^definition^,^field^,^operator^,^value^,^type^" with CR LF for each, by definition and grade. A definition that
     * reaches the user in several ways counts once, conditions that differ only in their grade are two.
     */
    public function GetUserDocRights(mixed $strUserID, mixed $strChannel, mixed $strArchive, mixed &$strDocRights = Argument::LeftOut): mixed
    {
        return $this->invoke(33, [0 => $strUserID, 1 => $strChannel, 2 => $strArchive], [3 => &$strDocRights]);
    }

    /**
     * GetUserSearchRights(strUserID, strChannel, strArchive, [out strFixedValues], [out strHiddenFields], [out
     * strNoMatchcodeFields]) -> Variant
     *
     * The fields that searches are restricted in. Returns the number of fields in the definitions (Long), each counted
     * once. strFixedValues receives a line "^field^,^value^" with CR LF for each value that a search must have, by
     * field, then by character code; strHiddenFields and strNoMatchcodeFields the fields that are hidden and those
     * that have no matchcode, "^field^,^field^", in ascending order. A definition applies to the archives that are
     * listed for it; one without any applies nowhere.
     */
    public function GetUserSearchRights(mixed $strUserID, mixed $strChannel, mixed $strArchive, mixed &$strFixedValues = Argument::LeftOut, mixed &$strHiddenFields = Argument::LeftOut, mixed &$strNoMatchcodeFields = Argument::LeftOut): mixed
    {
        return $this->invoke(34, [0 => $strUserID, 1 => $strChannel, 2 => $strArchive], [3 => &$strFixedValues, 4 => &$strHiddenFields, 5 => &$strNoMatchcodeFields]);
    }

    /**
     * GetOutliner(strChannel, strArchive, [out strOutliner]) -> Variant
     *
     * The outliners of an archive, whose channel and archive apply as those of the definitions above. Returns their
     * number (Long), or -1 (Integer) on failure. strOutliner receives a line "^ID^,^name^" with CR LF for each, by
     * name; "" on failure.
     */
    public function GetOutliner(mixed $strChannel, mixed $strArchive, mixed &$strOutliner = Argument::LeftOut): mixed
    {
        return $this->invoke(35, [0 => $strChannel, 1 => $strArchive], [2 => &$strOutliner]);
    }

    /**
     * GetOutlinerContentInit(lngOutlinerID, [lngParentID]) -> Variant
     *
     * Loads the children of a node, or with lngParentID left out or 0 the roots, by content. Returns their number
     * (Long), 0 for an outliner or node that does not exist, or -1 (Integer) on failure; nothing is loaded then. The
     * nodes outlive other requests: only this method replaces them.
     */
    public function GetOutlinerContentInit(mixed $lngOutlinerID, mixed $lngParentID = Argument::LeftOut): mixed
    {
        return $this->invoke(36, [0 => $lngOutlinerID, 1 => $lngParentID], []);
    }

    /**
     * GetOutlinerContentNext([out lngID], [out intLevel], [out strFieldID], [out strDescription], [out strDataType],
     * [out blnExpand], [out lngChildren]) -> String
     *
     * The content of the next node; "" at the end with the outputs untouched, and for a node without content. lngID
     * receives the node's ID (Long), intLevel its level (Integer), strFieldID, strDescription and strDataType what the
     * outliner says of that level, "" when it says nothing, blnExpand whether the node is expanded (Boolean) and
     * lngChildren how many children it has in its outliner (Long).
     */
    public function GetOutlinerContentNext(mixed &$lngID = Argument::LeftOut, mixed &$intLevel = Argument::LeftOut, mixed &$strFieldID = Argument::LeftOut, mixed &$strDescription = Argument::LeftOut, mixed &$strDataType = Argument::LeftOut, mixed &$blnExpand = Argument::LeftOut, mixed &$lngChildren = Argument::LeftOut): string
    {
        return $this->invoke(37, [], [0 => &$lngID, 1 => &$intLevel, 2 => &$strFieldID, 3 => &$strDescription, 4 => &$strDataType, 5 => &$blnExpand, 6 => &$lngChildren]);
    }

    /**
     * GetOutlinerContentReset()
     *
     * Goes back to the first node.
     */
    public function GetOutlinerContentReset(): void
    {
        $this->invoke(38, [], []);
    }

    /**
     * UpdateOutlinerContent(lngID, blnExpand) -> Variant
     *
     * Stores for all users whether a node is expanded. Returns 1 (Long), or -1 (Integer) on failure and when there is
     * no such node. Nodes that are loaded stay as they are.
     */
    public function UpdateOutlinerContent(mixed $lngID, mixed $blnExpand): mixed
    {
        return $this->invoke(39, [0 => $lngID, 1 => $blnExpand], []);
    }

    /**
     * GetOutlinerSearchExpr(lngID) -> String
     *
     * The query that finds the documents of a node: the conditions from the root down to the node, joined by " AND ".
     * A level takes part unless its search setting is blank, Null, "False" or a spelling of the number 0. A condition
     * is field:"value" for the data type "TXT" and field:value for others; a value of those is quoted, too, when it is
     * empty or holds anything but letters, digits, ".", "-", "_" and "*". A double quote in a value becomes a blank.
     * "" for a node that does not exist, on failure, and when no level takes part; parents that form a circle are a
     * failure. A parent that does not exist, or belongs to another outliner, ends the walk as the root does.
     */
    public function GetOutlinerSearchExpr(mixed $lngID): string
    {
        return $this->invoke(40, [0 => $lngID], []);
    }

    /**
     * TELOGetChannelsInit([out strParamStatus]) -> Variant
     *
     * Asks for the channels and sorts them in ascending order, whatever their letter case. Returns their number
     * (Long), or -1 (Integer) on failure.
     */
    public function TELOGetChannelsInit(mixed &$strParamStatus = Argument::LeftOut): mixed
    {
        return $this->invoke(41, [], [0 => &$strParamStatus]);
    }

    /**
     * TELOGetChannelsNext([out strChannelDescription]) -> String
     *
     * The next channel: its line up to the first comma, "" at the end. strChannelDescription receives the text after
     * the comma, "" without one.
     */
    public function TELOGetChannelsNext(mixed &$strChannelDescription = Argument::LeftOut): string
    {
        return $this->invoke(42, [], [0 => &$strChannelDescription]);
    }

    /**
     * TELOGetAllArchivesInit([out strParamStatus]) -> Variant
     *
     * Asks for the archives and sorts them likewise. Returns their number (Long), or -1 (Integer) on failure.
     */
    public function TELOGetAllArchivesInit(mixed &$strParamStatus = Argument::LeftOut): mixed
    {
        return $this->invoke(43, [], [0 => &$strParamStatus]);
    }

    /**
     * TELOGetAllArchivesNext() -> String
     *
     * The next archive, its whole line; "" at the end.
     */
    public function TELOGetAllArchivesNext(): string
    {
        return $this->invoke(44, [], []);
    }

    /**
     * TELOGetQueryFormatListInit(strChannel, strArchive, [out strParamStatus]) -> Variant
     *
     * Asks for the query formats of an archive. Returns their number (Long), or -1 (Integer) on failure.
     */
    public function TELOGetQueryFormatListInit(mixed $strChannel, mixed $strArchive, mixed &$strParamStatus = Argument::LeftOut): mixed
    {
        return $this->invoke(45, [0 => $strChannel, 1 => $strArchive], [2 => &$strParamStatus]);
    }

    /**
     * TELOGetQueryFormatListNext() -> String
     *
     * The next query format, in the server's order; "" at the end.
     */
    public function TELOGetQueryFormatListNext(): string
    {
        return $this->invoke(46, [], []);
    }

    /**
     * TELOGetAllArchivesExtInit([out strParamStatus]) -> Variant
     *
     * Asks for every channel with its archives. Returns the number of channels (Long), or -1 (Integer) on failure.
     */
    public function TELOGetAllArchivesExtInit(mixed &$strParamStatus = Argument::LeftOut): mixed
    {
        return $this->invoke(47, [], [0 => &$strParamStatus]);
    }

    /**
     * TELOGetAllArchivesExtNext([out strChannel], [out strChannelDescription]) -> Variant
     *
     * Moves to the next channel, whose name and description the outputs receive. Returns its number of archives
     * (Long), or -1 (Integer) after the last channel, with the outputs "".
     */
    public function TELOGetAllArchivesExtNext(mixed &$strChannel = Argument::LeftOut, mixed &$strChannelDescription = Argument::LeftOut): mixed
    {
        return $this->invoke(48, [], [0 => &$strChannel, 1 => &$strChannelDescription]);
    }

    /**
     * TELOGetAllArchivesExtNextArchive([out strComment]) -> String
     *
     * The next archive of the current channel: its line up to the first comma, "" where the next channel begins.
     * strComment receives the text after the comma, "" without one and where the next channel begins.
     */
    public function TELOGetAllArchivesExtNextArchive(mixed &$strComment = Argument::LeftOut): string
    {
        return $this->invoke(49, [], [0 => &$strComment]);
    }

    /**
     * TELOGetAllArchivesExtFirst()
     *
     * Goes back to the first channel, without a request.
     */
    public function TELOGetAllArchivesExtFirst(): void
    {
        $this->invoke(50, [], []);
    }

    /**
     * TELOGetArchiveProperties(strChannel, strArchive, [out blnCreate], [out blnEdit], [out blnDelete], [out
     * blnIndex], [out strParamStatus]) -> Variant
     *
     * Asks for the properties of an archive. Returns the fifth one (String), or -1 (Integer) on failure or an empty
     * answer; the outputs receive the first four as the server wrote them (String).
     */
    public function TELOGetArchiveProperties(mixed $strChannel, mixed $strArchive, mixed &$blnCreate = Argument::LeftOut, mixed &$blnEdit = Argument::LeftOut, mixed &$blnDelete = Argument::LeftOut, mixed &$blnIndex = Argument::LeftOut, mixed &$strParamStatus = Argument::LeftOut): mixed
    {
        return $this->invoke(51, [0 => $strChannel, 1 => $strArchive], [2 => &$blnCreate, 3 => &$blnEdit, 4 => &$blnDelete, 5 => &$blnIndex, 6 => &$strParamStatus]);
    }

    /**
     * TELOQueryArchiveInit(strQuery, lngMaxLines, lngQueryMax, strQueryFormat, strFolderRights, [strLayoutFieldID],
     * [strLayoutID], [out strLayoutKeys], [out strLayoutValues], [out lngTotalHits], [out blnHitlistMultiTIFF], [out
     * strParamStatus]) -> Variant
     *
     * Runs a query. lngMaxLines limits the hit lines, lngQueryMax the hits; strQueryFormat is one that
     * TELOGetQueryFormatListNext lists. strFolderRights restricts the search: "$(#channel);" for a channel,
     * "$(#channel)\archive;" for an archive, one after the other. "" restricts nothing: all archives are searched, so
     * do not query for a user who may see none. Returns the number of rows (Long), the title row included; -1
     * (Integer) on failure, and a negative number also for an answer of fewer lines than a head has. lngTotalHits
     * receives the total as text; strLayoutKeys and strLayoutValues, when both are given, the layout's keys and values
     * joined by ","; blnHitlistMultiTIFF (Boolean) whether the hits can be had as one image file.
     */
    public function TELOQueryArchiveInit(mixed $strQuery, mixed $lngMaxLines, mixed $lngQueryMax, mixed $strQueryFormat, mixed $strFolderRights, mixed $strLayoutFieldID = Argument::LeftOut, mixed $strLayoutID = Argument::LeftOut, #[\SensitiveParameter] mixed &$strLayoutKeys = Argument::LeftOut, mixed &$strLayoutValues = Argument::LeftOut, mixed &$lngTotalHits = Argument::LeftOut, mixed &$blnHitlistMultiTIFF = Argument::LeftOut, mixed &$strParamStatus = Argument::LeftOut): mixed
    {
        return $this->invoke(52, [0 => $strQuery, 1 => $lngMaxLines, 2 => $lngQueryMax, 3 => $strQueryFormat, 4 => $strFolderRights, 5 => $strLayoutFieldID, 6 => $strLayoutID], [7 => &$strLayoutKeys, 8 => &$strLayoutValues, 9 => &$lngTotalHits, 10 => &$blnHitlistMultiTIFF, 11 => &$strParamStatus]);
    }

    /**
     * TELOQueryArchiveNext([out strChannel], [out strArchive], [out strDocID], [out strVer]) -> String
     *
     * The next row's display columns, "^column^,^column^"; "" at the end. The first row holds the titles. The outputs
     * receive the hit's channel, archive, document id and version as text.
     */
    public function TELOQueryArchiveNext(mixed &$strChannel = Argument::LeftOut, mixed &$strArchive = Argument::LeftOut, mixed &$strDocID = Argument::LeftOut, mixed &$strVer = Argument::LeftOut): string
    {
        return $this->invoke(53, [], [0 => &$strChannel, 1 => &$strArchive, 2 => &$strDocID, 3 => &$strVer]);
    }

    /**
     * TELOSortHitlistInit(lngCol) -> Variant
     *
     * Sorts the hits by a display column, lngCol 1 being the first; sends no request. The server says what a column
     * holds, by a line in front of the title row that has a flag for each field of the rows, a decimal number: 0x400
     * is set for dates, else 0x200 for numbers; all others are texts. Texts are compared in upper case by their
     * character codes, dates (dd.mm.yyyy, yyyy-mm-dd or mm/dd/yyyy) by the calendar, numbers (a sign, digits, a
     * decimal comma or point) by value. What is no date or number comes before those that are, by its text, empty
     * first; a row that lacks the column counts as empty. Equal ones keep their order, in both directions. The first
     * sort by a column after a query, or after a sort by another one, turns the direction of the data round: it is
     * ascending when the first hit is greater than the last one, else descending. Each further sort by the column
     * turns the direction of the one before round. Returns the number of rows (Long), the title row included, and
     * TELOSortHitlistNext begins at the title row; -1 (Integer), with nothing changed, for a column that the title row
     * does not have and without a title row.
     */
    public function TELOSortHitlistInit(mixed $lngCol): mixed
    {
        return $this->invoke(54, [0 => $lngCol], []);
    }

    /**
     * TELOSortHitlistNext([out strChannel], [out strArchive], [out strDocID], [out strVer]) -> String
     *
     * The next row of the list, read as TELOQueryArchiveNext reads it, with a place of its own: at the title row after
     * a query and after a sort.
     */
    public function TELOSortHitlistNext(mixed &$strChannel = Argument::LeftOut, mixed &$strArchive = Argument::LeftOut, mixed &$strDocID = Argument::LeftOut, mixed &$strVer = Argument::LeftOut): string
    {
        return $this->invoke(55, [], [0 => &$strChannel, 1 => &$strArchive, 2 => &$strDocID, 3 => &$strVer]);
    }

    /**
     * TELOSortHitlist2Init(strHitLines, intSortCol) -> Variant
     *
     * Sorts lines that the page holds in the same way: CR LF between them, one at the end ignored; first the flags,
     * then the title row, then the hits, each row with reference, document id and version in front of its columns.
     * intSortCol 1 is the first display column. The lines, their read position and the direction are kept apart from
     * the list of the last query, and no query touches them; the direction is remembered from one call to the next,
     * also for other lines. Returns as TELOSortHitlistInit does; after -1 the lines of the call before are still
     * there.
     */
    public function TELOSortHitlist2Init(mixed $strHitLines, mixed $intSortCol): mixed
    {
        return $this->invoke(56, [0 => $strHitLines, 1 => $intSortCol], []);
    }

    /**
     * TELOSortHitlist2Next() -> String
     *
     * The next of these lines, whole, the title row first; an empty line is "", too.
     */
    public function TELOSortHitlist2Next(): string
    {
        return $this->invoke(57, [], []);
    }

    /**
     * TELODeleteFromHitlist(lngLine) -> Variant
     *
     * Removes a hit from the list of the last query; lngLine 1 is the first hit in its present order. Returns the
     * number of hits left (Long), or -1 (Integer), with nothing changed, when there is no such hit.
     * TELOSortHitlistNext goes on with the row it would have read, or the next one when that was removed. Removing a
     * hit moves four bytes for each one between it and the nearer end of the list: at most two million bytes in a list
     * of a million hits.
     */
    public function TELODeleteFromHitlist(mixed $lngLine): mixed
    {
        return $this->invoke(58, [0 => $lngLine], []);
    }

    /**
     * TELOGetDocumentInfo(strChannel, strArchive, strDocID, strVer, [out lngLaenge], [out strErstelldat], [out
     * strAenderDat], [out strTitel], [out intFelderGes], [out intTextFelder], [out intBildFelder], [out
     * intBlobFelder], [out strParamStatus]) -> Variant
     *
     * Information about a document. Returns the number of lines of the answer (Long), or -1 (Integer) when the request
     * failed. Of the first line, when there is one: lngLaenge receives the length (Long), strErstelldat and
     * strAenderDat the dates of creation and change as the server wrote them, strTitel the title, the others the
     * numbers of fields in all, of text, image and stored-file fields (Integer).
     */
    public function TELOGetDocumentInfo(mixed $strChannel, mixed $strArchive, mixed $strDocID, mixed $strVer, mixed &$lngLaenge = Argument::LeftOut, mixed &$strErstelldat = Argument::LeftOut, mixed &$strAenderDat = Argument::LeftOut, mixed &$strTitel = Argument::LeftOut, mixed &$intFelderGes = Argument::LeftOut, mixed &$intTextFelder = Argument::LeftOut, mixed &$intBildFelder = Argument::LeftOut, mixed &$intBlobFelder = Argument::LeftOut, mixed &$strParamStatus = Argument::LeftOut): mixed
    {
        return $this->invoke(59, [0 => $strChannel, 1 => $strArchive, 2 => $strDocID, 3 => $strVer], [4 => &$lngLaenge, 5 => &$strErstelldat, 6 => &$strAenderDat, 7 => &$strTitel, 8 => &$intFelderGes, 9 => &$intTextFelder, 10 => &$intBildFelder, 11 => &$intBlobFelder, 12 => &$strParamStatus]);
    }

    /**
     * TELOGetSegmentDescriptionInit(strChannel, strArchive, strDocID, strVer, [strParamThumbnailPath], [out lngNotes],
     * [out strParamStatus]) -> Variant
     *
     * Asks for the descriptions of a document's segments. Returns their number (Long), or -1 (Integer) on failure.
     * lngNotes receives the number of the document's notes as text; strParamThumbnailPath is handed to the server.
     */
    public function TELOGetSegmentDescriptionInit(mixed $strChannel, mixed $strArchive, mixed $strDocID, mixed $strVer, mixed $strParamThumbnailPath = Argument::LeftOut, mixed &$lngNotes = Argument::LeftOut, mixed &$strParamStatus = Argument::LeftOut): mixed
    {
        return $this->invoke(60, [0 => $strChannel, 1 => $strArchive, 2 => $strDocID, 3 => $strVer, 4 => $strParamThumbnailPath], [5 => &$lngNotes, 6 => &$strParamStatus]);
    }

    /**
     * TELOGetSegmentDescriptionNext([out intFeldID], [out lngTextLaenge], [out intTrefferZahl], [out lngNCILaenge],
     * [out strExt], [out intFeldTyp], [out strFeldtitel], [out strDateiname], [out intStatus], [out strLayoutID], [out
     * lngThumbnailSize]) -> String
     *
     * The next segment's name, "" at the end. All outputs are text, whatever their names say.
     */
    public function TELOGetSegmentDescriptionNext(mixed &$intFeldID = Argument::LeftOut, mixed &$lngTextLaenge = Argument::LeftOut, mixed &$intTrefferZahl = Argument::LeftOut, mixed &$lngNCILaenge = Argument::LeftOut, mixed &$strExt = Argument::LeftOut, mixed &$intFeldTyp = Argument::LeftOut, mixed &$strFeldtitel = Argument::LeftOut, mixed &$strDateiname = Argument::LeftOut, mixed &$intStatus = Argument::LeftOut, mixed &$strLayoutID = Argument::LeftOut, mixed &$lngThumbnailSize = Argument::LeftOut): string
    {
        return $this->invoke(61, [], [0 => &$intFeldID, 1 => &$lngTextLaenge, 2 => &$intTrefferZahl, 3 => &$lngNCILaenge, 4 => &$strExt, 5 => &$intFeldTyp, 6 => &$strFeldtitel, 7 => &$strDateiname, 8 => &$intStatus, 9 => &$strLayoutID, 10 => &$lngThumbnailSize]);
    }

    /**
     * TELOGetSegmentTextInit(strChannel, strArchive, strDocID, strVer, [strQuery], [strMarkOn], [strMarkOff],
     * [strCRLF], [strBlank], [out strParamStatus]) -> Variant
     *
     * Asks for a document's texts, with strMarkOn before and strMarkOff after each hit of strQuery and strBlank for
     * its blanks. strCRLF separates the lines of a text, CR LF when left out. Returns the number of texts (Long), or
     * -1 (Integer) on failure; they outlive other requests until the next TELOGetSegmentTextInit or TELOGetNotesInit.
     */
    public function TELOGetSegmentTextInit(mixed $strChannel, mixed $strArchive, mixed $strDocID, mixed $strVer, mixed $strQuery = Argument::LeftOut, mixed $strMarkOn = Argument::LeftOut, mixed $strMarkOff = Argument::LeftOut, mixed $strCRLF = Argument::LeftOut, mixed $strBlank = Argument::LeftOut, mixed &$strParamStatus = Argument::LeftOut): mixed
    {
        return $this->invoke(62, [0 => $strChannel, 1 => $strArchive, 2 => $strDocID, 3 => $strVer, 4 => $strQuery, 5 => $strMarkOn, 6 => $strMarkOff, 7 => $strCRLF, 8 => $strBlank], [9 => &$strParamStatus]);
    }

    /**
     * TELOGetSegmentTextNext() -> String
     *
     * The next text; "" at the end, and also for an empty one.
     */
    public function TELOGetSegmentTextNext(): string
    {
        return $this->invoke(63, [], []);
    }

    /**
     * TELOGetSegmentsInit(strChannel, strArchive, strDocID, strVer, [strQuery], [strMarkOn], [strMarkOff],
     * [strParamCRLF], [strBlank], [strThumbnailPath], [blnIncludeERF], [out lngNotes], [out strParamStatus]) ->
     * Variant
     *
     * Asks for a document's segments with their descriptions and texts; the inputs are those of TELOGetSegmentTextInit
     * and TELOGetSegmentDescriptionInit, and blnIncludeERF, which only True switches on. Returns the number of
     * segments (Long), or -1 (Integer) on failure; lngNotes receives the number of notes (Long).
     */
    public function TELOGetSegmentsInit(mixed $strChannel, mixed $strArchive, mixed $strDocID, mixed $strVer, mixed $strQuery = Argument::LeftOut, mixed $strMarkOn = Argument::LeftOut, mixed $strMarkOff = Argument::LeftOut, mixed $strParamCRLF = Argument::LeftOut, mixed $strBlank = Argument::LeftOut, mixed $strThumbnailPath = Argument::LeftOut, mixed $blnIncludeERF = Argument::LeftOut, mixed &$lngNotes = Argument::LeftOut, mixed &$strParamStatus = Argument::LeftOut): mixed
    {
        return $this->invoke(64, [0 => $strChannel, 1 => $strArchive, 2 => $strDocID, 3 => $strVer, 4 => $strQuery, 5 => $strMarkOn, 6 => $strMarkOff, 7 => $strParamCRLF, 8 => $strBlank, 9 => $strThumbnailPath, 10 => $blnIncludeERF], [11 => &$lngNotes, 12 => &$strParamStatus]);
    }

    /**
     * TELOGetSegmentsNext([out strChannel], [out strArchive], [out strDocID], [out strVer], [out intFeldIndex], [out
     * intFeldID], [out strFeldName], [out lngTextLaenge], [out intTrefferZahl], [out lngNCILaenge], [out strExt], [out
     * intFeldTyp], [out strFeldtitel], [out strDateiname], [out intStatus], [out strLayoutID], [out lngThumbnailSize])
     * -> String
     *
     * The next segment's text, its lines joined by the strParamCRLF of TELOGetSegmentsInit; "" at the end, and also
     * for an empty one. Outputs named int... receive an Integer, lng... a Long, str... a text.
     */
    public function TELOGetSegmentsNext(mixed &$strChannel = Argument::LeftOut, mixed &$strArchive = Argument::LeftOut, mixed &$strDocID = Argument::LeftOut, mixed &$strVer = Argument::LeftOut, mixed &$intFeldIndex = Argument::LeftOut, mixed &$intFeldID = Argument::LeftOut, mixed &$strFeldName = Argument::LeftOut, mixed &$lngTextLaenge = Argument::LeftOut, mixed &$intTrefferZahl = Argument::LeftOut, mixed &$lngNCILaenge = Argument::LeftOut, mixed &$strExt = Argument::LeftOut, mixed &$intFeldTyp = Argument::LeftOut, mixed &$strFeldtitel = Argument::LeftOut, mixed &$strDateiname = Argument::LeftOut, mixed &$intStatus = Argument::LeftOut, mixed &$strLayoutID = Argument::LeftOut, mixed &$lngThumbnailSize = Argument::LeftOut): string
    {
        return $this->invoke(65, [], [0 => &$strChannel, 1 => &$strArchive, 2 => &$strDocID, 3 => &$strVer, 4 => &$intFeldIndex, 5 => &$intFeldID, 6 => &$strFeldName, 7 => &$lngTextLaenge, 8 => &$intTrefferZahl, 9 => &$lngNCILaenge, 10 => &$strExt, 11 => &$intFeldTyp, 12 => &$strFeldtitel, 13 => &$strDateiname, 14 => &$intStatus, 15 => &$strLayoutID, 16 => &$lngThumbnailSize]);
    }

    /**
     * TELOGetSegmentData(strChannel, strArchive, strDocID, strVer, intFieldIndex, [out strFileName], [out lngFileLen],
     * [out strParamStatus]) -> Variant
     *
     * The content of a segment, as a file. Returns 1 (Long), or -1 (Integer) on failure.
     */
    public function TELOGetSegmentData(mixed $strChannel, mixed $strArchive, mixed $strDocID, mixed $strVer, mixed $intFieldIndex, mixed &$strFileName = Argument::LeftOut, mixed &$lngFileLen = Argument::LeftOut, mixed &$strParamStatus = Argument::LeftOut): mixed
    {
        return $this->invoke(66, [0 => $strChannel, 1 => $strArchive, 2 => $strDocID, 3 => $strVer, 4 => $intFieldIndex], [5 => &$strFileName, 6 => &$lngFileLen, 7 => &$strParamStatus]);
    }

    /**
     * TELOGetSegmentFirstBLOB(strChannel, strArchive, strDocID, strVer, [strParamFileExt], [out strFileName], [out
     * lngFileLen], [out strParamStatus]) -> Variant
     *
     * The first stored file, of an extension when one is given. Returns 1 (Long), or -1 (Integer) on failure.
     */
    public function TELOGetSegmentFirstBLOB(mixed $strChannel, mixed $strArchive, mixed $strDocID, mixed $strVer, mixed $strParamFileExt = Argument::LeftOut, mixed &$strFileName = Argument::LeftOut, mixed &$lngFileLen = Argument::LeftOut, mixed &$strParamStatus = Argument::LeftOut): mixed
    {
        return $this->invoke(67, [0 => $strChannel, 1 => $strArchive, 2 => $strDocID, 3 => $strVer, 4 => $strParamFileExt], [5 => &$strFileName, 6 => &$lngFileLen, 7 => &$strParamStatus]);
    }

    /**
     * TELOGetSegmentPrintfile(strChannel, strArchive, strDocID, strVer, strFieldID, [out strFileName], [out
     * lngFileLen], [out strParamStatus]) -> Variant
     *
     * A file to print; asks query servers with the print flag only. Returns 1 (Long), or -1 (Integer) on failure.
     */
    public function TELOGetSegmentPrintfile(mixed $strChannel, mixed $strArchive, mixed $strDocID, mixed $strVer, mixed $strFieldID, mixed &$strFileName = Argument::LeftOut, mixed &$lngFileLen = Argument::LeftOut, mixed &$strParamStatus = Argument::LeftOut): mixed
    {
        return $this->invoke(68, [0 => $strChannel, 1 => $strArchive, 2 => $strDocID, 3 => $strVer, 4 => $strFieldID], [5 => &$strFileName, 6 => &$lngFileLen, 7 => &$strParamStatus]);
    }

    /**
     * TELOGetSegmentMultiTIF(strChannel, strArchive, strDocID, strVer, strPages, [out strFileName], [out lngFileLen],
     * [out strParamStatus]) -> Variant
     *
     * An image file of several pages, "1;4-6". Returns 1 (Long), or -1 (Integer) on failure. Without a file in the
     * answer the outputs become "" and 0 (Long). A list of more than a million pages fails without a request.
     */
    public function TELOGetSegmentMultiTIF(mixed $strChannel, mixed $strArchive, mixed $strDocID, mixed $strVer, mixed $strPages, mixed &$strFileName = Argument::LeftOut, mixed &$lngFileLen = Argument::LeftOut, mixed &$strParamStatus = Argument::LeftOut): mixed
    {
        return $this->invoke(69, [0 => $strChannel, 1 => $strArchive, 2 => $strDocID, 3 => $strVer, 4 => $strPages], [5 => &$strFileName, 6 => &$lngFileLen, 7 => &$strParamStatus]);
    }

    /**
     * TELOTransferBLOB(strFile, lngFileLen, [out strParamStatus]) -> Variant
     *
     * Receives a file of the remote blob directory over the connection into strBlobPathLocal; only the last part of
     * strFile counts. lngFileLen is its length in bytes, 0 to 2147483647. Returns 1 (Long), or -1 (Integer) on
     * failure, also for a file of another length; nothing of the file is left then, and an older one of that name
     * stays.
     */
    public function TELOTransferBLOB(mixed $strFile, mixed $lngFileLen, mixed &$strParamStatus = Argument::LeftOut): mixed
    {
        return $this->invoke(70, [0 => $strFile, 1 => $lngFileLen], [2 => &$strParamStatus]);
    }

    /**
     * TELODeleteDocument(strChannel, strArchive, strDocID, strVer, [out strParamStatus]) -> Variant
     *
     * Deletes a document or one of its versions. Returns 1 (Long), or -1 (Integer) on failure.
     */
    public function TELODeleteDocument(mixed $strChannel, mixed $strArchive, mixed $strDocID, mixed $strVer, mixed &$strParamStatus = Argument::LeftOut): mixed
    {
        return $this->invoke(71, [0 => $strChannel, 1 => $strArchive, 2 => $strDocID, 3 => $strVer], [4 => &$strParamStatus]);
    }

    /**
     * CreateImportFile(strImportFile, strChannel, strArchive, strTitle, strParamFieldTypes, strParamFieldIDs,
     * strFieldContents, [strCharSet], [out strParamStatus]) -> Variant
     *
     * Writes the description of a document to a file, after the content of an older file of that name. The lists of
     * field types and ids are separated by ","; the contents are written as they are; strCharSet names their character
     * set. No line of a field's text may begin with "@": it would begin another field, or a document in any archive.
     * Returns 1 (Long), or -1 (Integer) on failure; sends no request, strParamStatus becomes "" on success.
     */
    public function CreateImportFile(mixed $strImportFile, mixed $strChannel, mixed $strArchive, mixed $strTitle, mixed $strParamFieldTypes, mixed $strParamFieldIDs, mixed $strFieldContents, mixed $strCharSet = Argument::LeftOut, mixed &$strParamStatus = Argument::LeftOut): mixed
    {
        return $this->invoke(72, [0 => $strImportFile, 1 => $strChannel, 2 => $strArchive, 3 => $strTitle, 4 => $strParamFieldTypes, 5 => $strParamFieldIDs, 6 => $strFieldContents, 7 => $strCharSet], [8 => &$strParamStatus]);
    }

    /**
     * TELOCreateDocument(strImportFile, [out strDocIDVer], [out strParamStatus]) -> Variant
     *
     * Has the server create a document from an import file, named as the server reaches it. Returns the number of
     * lines of the answer (Long), or -1 (Integer) on failure; strDocIDVer receives the document's id and version, as
     * text.
     */
    public function TELOCreateDocument(mixed $strImportFile, mixed &$strDocIDVer = Argument::LeftOut, mixed &$strParamStatus = Argument::LeftOut): mixed
    {
        return $this->invoke(73, [0 => $strImportFile], [1 => &$strDocIDVer, 2 => &$strParamStatus]);
    }

    /**
     * TELOEditDocument(strImportFile, inout strDocIDVer, [out strParamStatus]) -> Variant
     *
     * The same for a new version of the document that strDocIDVer names, which receives the new id and version.
     * Returns the number of lines of the answer (Long), or -1 (Integer) on failure.
     */
    public function TELOEditDocument(mixed $strImportFile, mixed &$strDocIDVer, mixed &$strParamStatus = Argument::LeftOut): mixed
    {
        return $this->invoke(74, [0 => $strImportFile], [1 => &$strDocIDVer, 2 => &$strParamStatus]);
    }

    /**
     * TELOUploadFile(strFile, [out strParamStatus]) -> Variant
     *
     * Sends a file of strBlobPathLocal to the query server, into its blob directory; only the last part of strFile
     * counts. Returns 1 (Long), or -1 (Integer) on failure. The records that the ...Next methods read stay as they
     * are.
     */
    public function TELOUploadFile(mixed $strFile, mixed &$strParamStatus = Argument::LeftOut): mixed
    {
        return $this->invoke(75, [0 => $strFile], [1 => &$strParamStatus]);
    }

    /**
     * UploadFile([strSubDir], [out strFileNameParam], [out lngFileSizeParam]) -> Variant
     *
     * Takes the first file out of the form in the body of the page's request (see OnStartPage) and stores it in
     * strBlobPathLocal under the last part of its name, with strSubDir and "_" in front when given. Returns 1 when a
     * file was stored, 0 when the form held none (Long), -1 (Integer) on failure. Of a file that was stored,
     * strFileNameParam receives the name, lngFileSizeParam the size in bytes (Long).
     */
    public function UploadFile(mixed $strSubDir = Argument::LeftOut, mixed &$strFileNameParam = Argument::LeftOut, mixed &$lngFileSizeParam = Argument::LeftOut): mixed
    {
        return $this->invoke(76, [0 => $strSubDir], [1 => &$strFileNameParam, 2 => &$lngFileSizeParam]);
    }

    /**
     * TELOGetNotesInit(strChannel, strArchive, strDocID, strVer, [out strParamStatus]) -> Variant
     *
     * Asks for a document's notes. Returns their number (Long), or -1 (Integer) on failure. They take the place of the
     * texts of TELOGetSegmentTextInit, and outlive other requests as these do.
     */
    public function TELOGetNotesInit(mixed $strChannel, mixed $strArchive, mixed $strDocID, mixed $strVer, mixed &$strParamStatus = Argument::LeftOut): mixed
    {
        return $this->invoke(77, [0 => $strChannel, 1 => $strArchive, 2 => $strDocID, 3 => $strVer], [4 => &$strParamStatus]);
    }

    /**
     * TELOGetNotesNext() -> String
     *
     * The next note: its header, "," and its text with CR LF between lines; "" at the end.
     */
    public function TELOGetNotesNext(): string
    {
        return $this->invoke(78, [], []);
    }

    /**
     * TELOWriteNote(strChannel, strArchive, strDocID, strVer, strNote, [strParamCRLF], [out strParamStatus]) ->
     * Variant
     *
     * Attaches the first 8000 characters of a note. strParamCRLF is the text that means a line break, CR LF when left
     * out. Returns 1 (Long), or -1 (Integer) on failure.
     */
    public function TELOWriteNote(mixed $strChannel, mixed $strArchive, mixed $strDocID, mixed $strVer, mixed $strNote, mixed $strParamCRLF = Argument::LeftOut, mixed &$strParamStatus = Argument::LeftOut): mixed
    {
        return $this->invoke(79, [0 => $strChannel, 1 => $strArchive, 2 => $strDocID, 3 => $strVer, 4 => $strNote, 5 => $strParamCRLF], [6 => &$strParamStatus]);
    }

    /**
     * TELODeleteNotes(strChannel, strArchive, strDocID, strVer, [out strParamStatus]) -> Variant
     *
     * Deletes all notes of a document. Returns 1 (Long), or -1 (Integer) on failure.
     */
    public function TELODeleteNotes(mixed $strChannel, mixed $strArchive, mixed $strDocID, mixed $strVer, mixed &$strParamStatus = Argument::LeftOut): mixed
    {
        return $this->invoke(80, [0 => $strChannel, 1 => $strArchive, 2 => $strDocID, 3 => $strVer], [4 => &$strParamStatus]);
    }

    /**
     * TELOGetMasksInit(strChannel, strArchive, [out strParamStatus]) -> Variant
     *
     * Asks for the masks of an archive. Returns their number (Long), or -1 (Integer) on failure.
     */
    public function TELOGetMasksInit(mixed $strChannel, mixed $strArchive, mixed &$strParamStatus = Argument::LeftOut): mixed
    {
        return $this->invoke(81, [0 => $strChannel, 1 => $strArchive], [2 => &$strParamStatus]);
    }

    /**
     * TELOGetMasksNext([out strMaskName]) -> Variant
     *
     * Moves to the next mask, whose name strMaskName receives. Returns the number of its fields (Long), or -1
     * (Integer) after the last mask, with strMaskName "".
     */
    public function TELOGetMasksNext(mixed &$strMaskName = Argument::LeftOut): mixed
    {
        return $this->invoke(82, [], [0 => &$strMaskName]);
    }

    /**
     * TELOGetMasksNextField([out lngTabIndex], [out lngWidth], [out strAlign], [out strName], [out blnMandatory], [out
     * strInitText], [out blnListOnly], [out strList]) -> Variant
     *
     * The next field of the mask, its properties as the server wrote them. Returns how many follow it in the mask
     * (Long), or -1 (Integer) when there was none, with the outputs untouched.
     */
    public function TELOGetMasksNextField(mixed &$lngTabIndex = Argument::LeftOut, mixed &$lngWidth = Argument::LeftOut, mixed &$strAlign = Argument::LeftOut, mixed &$strName = Argument::LeftOut, mixed &$blnMandatory = Argument::LeftOut, mixed &$strInitText = Argument::LeftOut, mixed &$blnListOnly = Argument::LeftOut, mixed &$strList = Argument::LeftOut): mixed
    {
        return $this->invoke(83, [], [0 => &$lngTabIndex, 1 => &$lngWidth, 2 => &$strAlign, 3 => &$strName, 4 => &$blnMandatory, 5 => &$strInitText, 6 => &$blnListOnly, 7 => &$strList]);
    }

    /**
     * TELOGetMasksFirst()
     *
     * Goes back to the first mask, without a request.
     */
    public function TELOGetMasksFirst(): void
    {
        $this->invoke(84, [], []);
    }

    /**
     * EncryptBase64(strString, [strParamKey]) -> String
     *
     * Encrypts a text, with the result in Base64; "" on failure.
     */
    public function EncryptBase64(mixed $strString, #[\SensitiveParameter] mixed $strParamKey = Argument::LeftOut): string
    {
        return $this->invoke(85, [0 => $strString, 1 => $strParamKey], []);
    }

    /**
     * Encrypt(strString, [strParamKey]) -> String
     *
     * Encrypts a text; "" on failure.
     */
    public function Encrypt(mixed $strString, #[\SensitiveParameter] mixed $strParamKey = Argument::LeftOut): string
    {
        return $this->invoke(86, [0 => $strString, 1 => $strParamKey], []);
    }

    /**
     * Decrypt(strString, [strParamKey]) -> String
     *
     * The inverse of Encrypt; "" on failure, also for a text that was encrypted with another key.
     */
    public function Decrypt(mixed $strString, #[\SensitiveParameter] mixed $strParamKey = Argument::LeftOut): string
    {
        return $this->invoke(87, [0 => $strString, 1 => $strParamKey], []);
    }

    /**
     * DecryptBase64(strString, [strParamKey]) -> String
     *
     * The inverse of EncryptBase64; "" on failure, also for a text that was encrypted with another key.
     */
    public function DecryptBase64(mixed $strString, #[\SensitiveParameter] mixed $strParamKey = Argument::LeftOut): string
    {
        return $this->invoke(88, [0 => $strString, 1 => $strParamKey], []);
    }

    /**
     * DecodeBase64(strString) -> String
     *
     * The bytes of a Base64 text; "" on failure.
     */
    public function DecodeBase64(mixed $strString): string
    {
        return $this->invoke(89, [0 => $strString], []);
    }

    /**
     * EncodeBase64(strString) -> String
     *
     * The bytes of a text in Base64; "" on failure.
     */
    public function EncodeBase64(mixed $strString): string
    {
        return $this->invoke(90, [0 => $strString], []);
    }

    /**
     * OstranaQueryFahrauftraegeInit(strQuery, lngMaxLines, [out strParamStatus]) -> Variant
     *
     * Asks for the transport orders that a query of the server's own language finds, lngMaxLines at most.
     */
    public function OstranaQueryFahrauftraegeInit(mixed $strQuery, mixed $lngMaxLines, mixed &$strParamStatus = Argument::LeftOut): mixed
    {
        return $this->invoke(91, [0 => $strQuery, 1 => $lngMaxLines], [2 => &$strParamStatus]);
    }

    /**
     * OstranaQueryFahrauftraegeNext([out strStatus], [out strDocID], [out strVer]) -> String
     *
     * The next order: its id and the columns that the server adds, "^id^,^column^". The outputs receive its status,
     * and the id and version of its document, as text. A line with fewer than four fields is an error: "", the outputs
     * untouched, and the next call reads the same line again.
     */
    public function OstranaQueryFahrauftraegeNext(mixed &$strStatus = Argument::LeftOut, mixed &$strDocID = Argument::LeftOut, mixed &$strVer = Argument::LeftOut): string
    {
        return $this->invoke(92, [], [0 => &$strStatus, 1 => &$strDocID, 2 => &$strVer]);
    }

    /**
     * OstranaGetFahrauftraegeMultiTIFF(strOrderIDs, [out strFileName], [out lngFileLen], [out strParamStatus]) ->
     * Variant
     *
     * The page images of orders as one image file in the blob directory; result and outputs as those of
     * TELOGetSegmentMultiTIF. The list of order ids is handed to the server as it is.
     */
    public function OstranaGetFahrauftraegeMultiTIFF(mixed $strOrderIDs, mixed &$strFileName = Argument::LeftOut, mixed &$lngFileLen = Argument::LeftOut, mixed &$strParamStatus = Argument::LeftOut): mixed
    {
        return $this->invoke(93, [0 => $strOrderIDs], [1 => &$strFileName, 2 => &$lngFileLen, 3 => &$strParamStatus]);
    }

    /**
     * OstranaUpdateFahrauftraegeStatus(strOrderID, strStatus, [out strParamStatus]) -> Variant
     *
     * Gives an order another status. Returns Long 1.
     */
    public function OstranaUpdateFahrauftraegeStatus(mixed $strOrderID, mixed $strStatus, mixed &$strParamStatus = Argument::LeftOut): mixed
    {
        return $this->invoke(94, [0 => $strOrderID, 1 => $strStatus], [2 => &$strParamStatus]);
    }

    /**
     * FennikPrintHitlistPDF(strTitle, [out strFileName], [out lngFileLen], [out strParamStatus]) -> Variant
     *
     * Has the server print the hit list of the last query, title row included, to a PDF file in the blob directory;
     * result and outputs as those of TELOGetSegmentData. Without a title row to print it fails without a request, and
     * strParamStatus is untouched. A title that holds "^,^" breaks the request.
     */
    public function FennikPrintHitlistPDF(mixed $strTitle, mixed &$strFileName = Argument::LeftOut, mixed &$lngFileLen = Argument::LeftOut, mixed &$strParamStatus = Argument::LeftOut): mixed
    {
        return $this->invoke(95, [0 => $strTitle], [1 => &$strFileName, 2 => &$lngFileLen, 3 => &$strParamStatus]);
    }

    /**
     * WriteLog(strLogLine, [bytLogType])
     *
     * Writes one line to the session's log. bytLogType is 1 for information (also when left out), 2 for a warning, 3
     * for an error, 4 for debugging; any other value counts as 1. A line that cannot be written is lost.
     */
    public function WriteLog(mixed $strLogLine, mixed $bytLogType = Argument::LeftOut): void
    {
        $this->invoke(96, [0 => $strLogLine, 1 => $bytLogType], []);
    }

    /**
     * LiveCheck() -> String
     *
     * Asks a query server whether it is alive: the first line of its answer, or the error text of a request that
     * failed; "" when there is neither.
     */
    public function LiveCheck(): string
    {
        return $this->invoke(97, [], []);
    }

    /**
     * HelloWorld() -> String
     *
     * Returns "Hello World!": shows that the component can be created and called.
     */
    public function HelloWorld(): string
    {
        return $this->invoke(98, [], []);
    }

    /**
     * DirectQuery(strQueryString) -> String
     *
     * Sends a complete command part ("^Command^,^parameter^") as it is: all lines of the answer, joined by CR LF, or
     * the error text of a request that failed; "" when there is neither.
     */
    public function DirectQuery(mixed $strQueryString): string
    {
        return $this->invoke(99, [0 => $strQueryString], []);
    }

    /**
     * WriteTest()
     *
     * Writes WriteTest.txt in strBlobPathLocal, in place of a file of that name, and deletes it, also when it could
     * not be written whole; whether that worked shows only in the log.
     */
    public function WriteTest(): void
    {
        $this->invoke(100, [], []);
    }
}
