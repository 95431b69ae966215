// clsQuery.h - the one public class: archive queries through a pool of query servers, for server-side pages.
// No other file describes its members: automation/describe_interface.py reads this one during the build and makes the
// method table and the reference pages from it. Private state is behind one pointer.
#ifndef OXAQRYCLN_COMPONENT_CLSQUERY_H_
#define OXAQRYCLN_COMPONENT_CLSQUERY_H_

#include <cstdint>
#include <memory>
#include <string>

#include "values/variant.h"

namespace oxaqrycln {

struct QueryState;

// How the class is written, which the build checks: "// --- Name ---" opens a group of members. A comment directly
// above a declaration documents it; one that a blank line follows belongs to the group. An input is const Variant&
// (when optional with the default Missing), an output Variant* with the default nullptr, a value that is read and
// replaced Variant&. The documentation of a property that can only be assigned begins with "Write-only property:".

// One instance serves one page request, on the thread that made it. No method lets an error out: a failure shows in the
// result and in the session's log. An optional input that is Missing counts as left out; an output that is left out (in
// C++: nullptr) is never written. Unless a method says otherwise:
// - an ...Init method sends one request and returns the number of records (Long), or -1 (Integer) on failure.
//   strParamStatus receives "" on success; when the request failed it receives the error text, and no other output is
//   written.
// - strParamStatus is about the request only. An error of the component itself (an argument that is refused, a file
//   that cannot be read or written, an answer that does not have the expected form) leaves it untouched and is written
//   to the session's log. So -1 with strParamStatus as the page had set it means: see the log. And -1 with
//   strParamStatus "" means that the server reported success, but its answer holds none of the data that is read.
// - a ...Next method returns the next record's text, or "" at the end with the outputs untouched.
// - every request but that of TELOUploadFile replaces the records that the ...Next methods of every family read, a
//   failed one by none; LiveCheck and calls that fetch a file or change a document are requests, too. So read a list to
//   its end first. Lists that outlive other requests say so: the rows of TELOSortHitlistNext, texts, notes, outliners.
class clsQuery {
 public:
  clsQuery();
  // Closes the database connection if it is open, and gives the connection slot back. An instance may end inside a
  // yield of its own request, from a call that the host posted: the request then ends at once, its method returns its
  // failure value, and what both need lives until then.
  ~clsQuery();
  clsQuery(const clsQuery&) = delete;
  clsQuery& operator=(const clsQuery&) = delete;

  // --- Settings ---
  // Public variables, to be assigned before Init. All start empty; nothing else configures the component.

  // Seconds that one request may take, all servers tried included; 0 ends it at the next second boundary.
  std::int32_t lngRequestTimeout = 0;
  // The web session; names the log file.
  std::string strSessionID;
  // Password of the archive account.
  std::string strTELOPwd;
  // Name of the archive account.
  std::string strTELOUser;
  // Directory of received files as this machine reaches it.
  std::string strBlobPathLocal;
  // The same directory as the query servers reach it.
  std::string strBlobPathRemote;
  // Connection string of the web user database.
  std::string strDBConnect;
  // Directory of the log files; "" logs nothing.
  std::string strDebugLogPath;
  // OLD-NEW extension rules for received files, separated by ",".
  std::string strChangeFileExt;
  // Default key of the encryption services.
  std::string strDES56Key;
  // Network address of the web user.
  std::string strUserIP;
  // Name of the web user.
  std::string strUserName;
  // When the web user logged on.
  DateTime datUserLoginTime;

  // --- Life cycle ---

  // Opens the database connection unless blnParamDBInit is False, claims a connection slot and starts the timer that
  // frees stale servers. To be called once, after the settings and before any other method. False on failure.
  bool Init(const Variant& blnParamDBInit = Missing);
  // Keeps the page's scripting context and its request until OnEndPage: a shared pointer to an object of a class
  // derived from ScriptingContext. Any other argument changes nothing.
  void OnStartPage(const Variant& PassedScriptingContext);
  // Releases the scripting context and its request.
  void OnEndPage();

  // --- Text and file helpers ---

  // Reversible encoding, two hexadecimal digits a character; "" on failure. Characters whose code plus 1-based
  // position is 174 or more do not survive.
  std::string Encode(const Variant& strText);
  // The inverse of Encode; "" on failure.
  std::string Decode(const Variant& strText);
  // Deletes the files that match a path or pattern, then every directory beside them with its files. A directory that
  // holds another one ends the call.
  void DeleteFTPObjects(const Variant& strFile);

  // --- Query servers ---

  // Write-only property: the query servers of this thread, "host,port[,print flag[,user[,encoded password]]]" joined by
  // "|". Print requests go to servers whose flag is 1 or left out only. The first assignment on a thread that succeeds
  // counts, later ones have no effect.
  void RemoteHosts(const Variant& strRemoteHosts);

  // --- Web users ---
  // These methods work on the database that Init opened. IDs are whole numbers; a text with a quote and an ID that is
  // no number fail before the database sees them, and so does a text with a backslash where the database takes one as
  // an escape character. Passwords are stored encoded, not encrypted.

  // Creates a user, with an account of the archive system when both of its texts are given. Returns the new user's ID
  // (Long), or -1 (Integer) on failure. Names are not kept apart: several users may have one.
  Variant WriteUserToDB(const Variant& strUser, const Variant& strPasswd, const Variant& strTELOUser = Missing,
                        const Variant& strTELOPasswd = Missing);
  // Returns one more than the largest number in a column of a table, 1 for an empty one (Long); 0 (Long) on failure.
  Variant GetNextDBObjectID(const Variant& strField, const Variant& strTable);
  // Returns the ID of the first user of the name (Long) when strPasswd is his password, or is left out: then he only
  // has to exist. Else, and on failure, 0 (Long).
  Variant CheckLogon(const Variant& strUser, const Variant& strPasswd = Missing);
  // Changes the password of all users of the name. Returns the ID of the first one (Integer), 0 when the old password
  // is wrong, the ID is above 32767, or the database refuses the change.
  Variant ChangePasswd(const Variant& strUser, const Variant& strPasswdOld, const Variant& strPasswdNew);
  // Reads the user's account of the archive system. Returns 1 (Long) when there is such a user, with the outputs "" for
  // one without an account; else, and on failure, 0 (Long) with the outputs untouched.
  Variant GetUserTELOUser(const Variant& strUserID, Variant* strTELOUser = nullptr, Variant* strTELOPasswd = nullptr);
  // Reads whether the user must change his password. Returns 1 (Long) when the user has the flag set or cleared, which
  // intChangePasswd receives; else, and on failure, 0 (Long), with intChangePasswd 0 (Integer).
  Variant GetUserChangePasswd(const Variant& strUserID, Variant* intChangePasswd = nullptr);
  // Says whether the user must change his password: a whole number, or a Boolean, which is stored as 1 or 0. Returns 1
  // (Long), also when there is no such user; 0 (Long) on failure.
  Variant SetUserChangePasswd(const Variant& strUserID, const Variant& intChangePasswd);

  // --- User rights ---
  // What a user may do himself and through the groups he is a member of. Each method writes a list to its output; on
  // failure the output holds what had been read, at first "".

  // The general rights of the user and his groups, "^right^,^right^". Returns their number (Long), Empty on failure.
  Variant GetUserRights(const Variant& strUserID, Variant* strRights = nullptr);
  // The rights to create (N), edit (E) and delete (D) documents, a line "archive[,N][,E][,D]" with CR LF for each
  // archive. Returns the number of archives (Long), or Empty on failure.
  Variant GetUserEditRights(const Variant& strUserID, Variant* strEditRights = nullptr);
  // The groups the user is a member of, "[group],[group]". Returns their number (Long), or Empty on failure.
  Variant GetUserGroups(const Variant& strUserID, Variant* strGroups = nullptr);
  // The archives the user and his groups may see, "^archive^,^archive^". Returns their number (Long), Empty on failure.
  Variant GetUserArchives(const Variant& strUserID, Variant* strArchives = nullptr);
  // The channels the user and his groups may see, "^channel^,^channel^". Returns their number (Long), Empty on failure.
  Variant GetUserChannels(const Variant& strUserID, Variant* strChannels = nullptr);

  // Which definitions restrict what a user sees and searches in an archive: those that are given to the user himself or
  // to a group he is a member of. A definition whose channel is empty or Null applies in every channel, one whose
  // archive is empty or Null to every archive. A failure returns Empty with every output "". Texts appear in the
  // outputs as they are stored: one that holds "^,^" or a line end changes what the page reads.

  // The conditions by which documents are shown. Returns their number (Long); strDocRights receives a line
  // "^definition^,^field^,^operator^,^value^,^type^" with CR LF for each, by definition and grade. A definition that
  // reaches the user in several ways counts once, conditions that differ only in their grade are two.
  Variant GetUserDocRights(const Variant& strUserID, const Variant& strChannel, const Variant& strArchive,
                           Variant* strDocRights = nullptr);
  // The fields that searches are restricted in. Returns the number of fields in the definitions (Long), each counted
  // once. strFixedValues receives a line "^field^,^value^" with CR LF for each value that a search must have, by field,
  // then by character code; strHiddenFields and strNoMatchcodeFields the fields that are hidden and those that
  // have no matchcode, "^field^,^field^", in ascending order. A definition applies to the archives that are listed for
  // it; one without any applies nowhere.
  Variant GetUserSearchRights(const Variant& strUserID, const Variant& strChannel, const Variant& strArchive,
                              Variant* strFixedValues = nullptr, Variant* strHiddenFields = nullptr,
                              Variant* strNoMatchcodeFields = nullptr);

  // --- Outliners ---
  // Trees of predefined search values in the database that Init opened. Names and contents are sorted in upper case by
  // character code, as the channel lists are, whatever the collation of the database; numbers in them count as text.

  // The outliners of an archive, whose channel and archive apply as those of the definitions above. Returns their
  // number (Long), or -1 (Integer) on failure. strOutliner receives a line "^ID^,^name^" with CR LF for each, by name;
  // "" on failure.
  Variant GetOutliner(const Variant& strChannel, const Variant& strArchive, Variant* strOutliner = nullptr);
  // Loads the children of a node, or with lngParentID left out or 0 the roots, by content. Returns their number (Long),
  // 0 for an outliner or node that does not exist, or -1 (Integer) on failure; nothing is loaded then. The nodes
  // outlive other requests: only this method replaces them.
  Variant GetOutlinerContentInit(const Variant& lngOutlinerID, const Variant& lngParentID = Missing);
  // The content of the next node; "" at the end with the outputs untouched, and for a node without content. lngID
  // receives the node's ID (Long), intLevel its level (Integer), strFieldID, strDescription and strDataType what the
  // outliner says of that level, "" when it says nothing, blnExpand whether the node is expanded (Boolean) and
  // lngChildren how many children it has in its outliner (Long).
  std::string GetOutlinerContentNext(Variant* lngID = nullptr, Variant* intLevel = nullptr,
                                     Variant* strFieldID = nullptr, Variant* strDescription = nullptr,
                                     Variant* strDataType = nullptr, Variant* blnExpand = nullptr,
                                     Variant* lngChildren = nullptr);
  // Goes back to the first node.
  void GetOutlinerContentReset();
  // Stores for all users whether a node is expanded. Returns 1 (Long), or -1 (Integer) on failure and when there is no
  // such node. Nodes that are loaded stay as they are.
  Variant UpdateOutlinerContent(const Variant& lngID, const Variant& blnExpand);
  // The query that finds the documents of a node: the conditions from the root down to the node, joined by " AND ". A
  // level takes part unless its search setting is blank, Null, "False" or a spelling of the number 0. A condition is
  // field:"value" for the data type "TXT" and field:value for others; a value of those is quoted, too, when it is empty
  // or holds anything but letters, digits, ".", "-", "_" and "*". A double quote in a value becomes a blank. "" for a
  // node that does not exist, on failure, and when no level takes part; parents that form a circle are a failure. A
  // parent that does not exist, or belongs to another outliner, ends the walk as the root does.
  std::string GetOutlinerSearchExpr(const Variant& lngID);

  // --- Channels and archives ---

  // Asks for the channels and sorts them in ascending order, whatever their letter case. Returns their number (Long),
  // or -1 (Integer) on failure.
  Variant TELOGetChannelsInit(Variant* strParamStatus = nullptr);
  // The next channel: its line up to the first comma, "" at the end. strChannelDescription receives the text after the
  // comma, "" without one.
  std::string TELOGetChannelsNext(Variant* strChannelDescription = nullptr);
  // Asks for the archives and sorts them likewise. Returns their number (Long), or -1 (Integer) on failure.
  Variant TELOGetAllArchivesInit(Variant* strParamStatus = nullptr);
  // The next archive, its whole line; "" at the end.
  std::string TELOGetAllArchivesNext();
  // Asks for the query formats of an archive. Returns their number (Long), or -1 (Integer) on failure.
  Variant TELOGetQueryFormatListInit(const Variant& strChannel, const Variant& strArchive,
                                     Variant* strParamStatus = nullptr);
  // The next query format, in the server's order; "" at the end.
  std::string TELOGetQueryFormatListNext();
  // Asks for every channel with its archives. Returns the number of channels (Long), or -1 (Integer) on failure.
  Variant TELOGetAllArchivesExtInit(Variant* strParamStatus = nullptr);
  // Moves to the next channel, whose name and description the outputs receive. Returns its number of archives (Long),
  // or -1 (Integer) after the last channel, with the outputs "".
  Variant TELOGetAllArchivesExtNext(Variant* strChannel = nullptr, Variant* strChannelDescription = nullptr);
  // The next archive of the current channel: its line up to the first comma, "" where the next channel begins.
  // strComment receives the text after the comma, "" without one and where the next channel begins.
  std::string TELOGetAllArchivesExtNextArchive(Variant* strComment = nullptr);
  // Goes back to the first channel, without a request.
  void TELOGetAllArchivesExtFirst();
  // Asks for the properties of an archive. Returns the fifth one (String), or -1 (Integer) on failure or an empty
  // answer; the outputs receive the first four as the server wrote them (String).
  Variant TELOGetArchiveProperties(const Variant& strChannel, const Variant& strArchive, Variant* blnCreate = nullptr,
                                   Variant* blnEdit = nullptr, Variant* blnDelete = nullptr,
                                   Variant* blnIndex = nullptr, Variant* strParamStatus = nullptr);

  // --- Query and hit list ---

  // Runs a query. lngMaxLines limits the hit lines, lngQueryMax the hits; strQueryFormat is one that
  // TELOGetQueryFormatListNext lists. strFolderRights restricts the search: "$(#channel);" for a channel,
  // "$(#channel)\archive;" for an archive, one after the other. "" restricts nothing: all archives are searched, so do
  // not query for a user who may see none. Returns the number of rows (Long), the title row included; -1 (Integer) on
  // failure, and a negative number also for an answer of fewer lines than a head has. lngTotalHits receives the total
  // as text; strLayoutKeys and strLayoutValues, when both are given, the layout's keys and values joined by ",";
  // blnHitlistMultiTIFF (Boolean) whether the hits can be had as one image file.
  Variant TELOQueryArchiveInit(const Variant& strQuery, const Variant& lngMaxLines, const Variant& lngQueryMax,
                               const Variant& strQueryFormat, const Variant& strFolderRights,
                               const Variant& strLayoutFieldID = Missing, const Variant& strLayoutID = Missing,
                               Variant* strLayoutKeys = nullptr, Variant* strLayoutValues = nullptr,
                               Variant* lngTotalHits = nullptr, Variant* blnHitlistMultiTIFF = nullptr,
                               Variant* strParamStatus = nullptr);
  // The next row's display columns, "^column^,^column^"; "" at the end. The first row holds the titles. The outputs
  // receive the hit's channel, archive, document id and version as text.
  std::string TELOQueryArchiveNext(Variant* strChannel = nullptr, Variant* strArchive = nullptr,
                                   Variant* strDocID = nullptr, Variant* strVer = nullptr);

  // The last query's rows are also kept as a list of their own, which can be sorted and from which hits can be deleted.
  // It outlives every other request, until a query whose answer has a head succeeds: while a page walks it with
  // TELOSortHitlistNext, it may ask for each document. TELOQueryArchiveNext always reads the rows as they came.

  // Sorts the hits by a display column, lngCol 1 being the first; sends no request. The server says what a column
  // holds, by a line in front of the title row that has a flag for each field of the rows, a decimal number: 0x400 is
  // set for dates, else 0x200 for numbers; all others are texts. Texts are compared in upper case by their character
  // codes, dates (dd.mm.yyyy, yyyy-mm-dd or mm/dd/yyyy) by the calendar, numbers (a sign, digits, a decimal comma or
  // point) by value. What is no date or number comes before those that are, by its text, empty first; a row that lacks
  // the column counts as empty. Equal ones keep their order, in both directions. The first sort by a column after a
  // query, or after a sort by another one, turns the direction of the data round: it is ascending when the first hit is
  // greater than the last one, else descending. Each further sort by the column turns the direction of the one before
  // round. Returns the number of rows (Long), the title row included, and TELOSortHitlistNext begins at the title row;
  // -1 (Integer), with nothing changed, for a column that the title row does not have and without a title row.
  Variant TELOSortHitlistInit(const Variant& lngCol);
  // The next row of the list, read as TELOQueryArchiveNext reads it, with a place of its own: at the title row after a
  // query and after a sort.
  std::string TELOSortHitlistNext(Variant* strChannel = nullptr, Variant* strArchive = nullptr,
                                  Variant* strDocID = nullptr, Variant* strVer = nullptr);
  // Sorts lines that the page holds in the same way: CR LF between them, one at the end ignored; first the flags, then
  // the title row, then the hits, each row with reference, document id and version in front of its columns. intSortCol
  // 1 is the first display column. The lines, their read position and the direction are kept apart from the list of the
  // last query, and no query touches them; the direction is remembered from one call to the next, also for other lines.
  // Returns as TELOSortHitlistInit does; after -1 the lines of the call before are still there.
  Variant TELOSortHitlist2Init(const Variant& strHitLines, const Variant& intSortCol);
  // The next of these lines, whole, the title row first; an empty line is "", too.
  std::string TELOSortHitlist2Next();
  // Removes a hit from the list of the last query; lngLine 1 is the first hit in its present order. Returns the number
  // of hits left (Long), or -1 (Integer), with nothing changed, when there is no such hit. TELOSortHitlistNext goes on
  // with the row it would have read, or the next one when that was removed. Removing a hit moves four bytes for each
  // one between it and the nearer end of the list: at most two million bytes in a list of a million hits.
  Variant TELODeleteFromHitlist(const Variant& lngLine);

  // --- Documents and segments ---

  // Information about a document. Returns the number of lines of the answer (Long), or -1 (Integer) when the request
  // failed. Of the first line, when there is one: lngLaenge receives the length (Long), strErstelldat and strAenderDat
  // the dates of creation and change as the server wrote them, strTitel the title, the others the numbers of fields in
  // all, of text, image and stored-file fields (Integer).
  Variant TELOGetDocumentInfo(const Variant& strChannel, const Variant& strArchive, const Variant& strDocID,
                              const Variant& strVer, Variant* lngLaenge = nullptr, Variant* strErstelldat = nullptr,
                              Variant* strAenderDat = nullptr, Variant* strTitel = nullptr,
                              Variant* intFelderGes = nullptr, Variant* intTextFelder = nullptr,
                              Variant* intBildFelder = nullptr, Variant* intBlobFelder = nullptr,
                              Variant* strParamStatus = nullptr);
  // Asks for the descriptions of a document's segments. Returns their number (Long), or -1 (Integer) on failure.
  // lngNotes receives the number of the document's notes as text; strParamThumbnailPath is handed to the server.
  Variant TELOGetSegmentDescriptionInit(const Variant& strChannel, const Variant& strArchive, const Variant& strDocID,
                                        const Variant& strVer, const Variant& strParamThumbnailPath = Missing,
                                        Variant* lngNotes = nullptr, Variant* strParamStatus = nullptr);
  // The next segment's name, "" at the end. All outputs are text, whatever their names say.
  std::string TELOGetSegmentDescriptionNext(Variant* intFeldID = nullptr, Variant* lngTextLaenge = nullptr,
                                            Variant* intTrefferZahl = nullptr, Variant* lngNCILaenge = nullptr,
                                            Variant* strExt = nullptr, Variant* intFeldTyp = nullptr,
                                            Variant* strFeldtitel = nullptr, Variant* strDateiname = nullptr,
                                            Variant* intStatus = nullptr, Variant* strLayoutID = nullptr,
                                            Variant* lngThumbnailSize = nullptr);
  // Asks for a document's texts, with strMarkOn before and strMarkOff after each hit of strQuery and strBlank for its
  // blanks. strCRLF separates the lines of a text, CR LF when left out. Returns the number of texts (Long), or -1
  // (Integer) on failure; they outlive other requests until the next TELOGetSegmentTextInit or TELOGetNotesInit.
  Variant TELOGetSegmentTextInit(const Variant& strChannel, const Variant& strArchive, const Variant& strDocID,
                                 const Variant& strVer, const Variant& strQuery = Missing,
                                 const Variant& strMarkOn = Missing, const Variant& strMarkOff = Missing,
                                 const Variant& strCRLF = Missing, const Variant& strBlank = Missing,
                                 Variant* strParamStatus = nullptr);
  // The next text; "" at the end, and also for an empty one.
  std::string TELOGetSegmentTextNext();
  // Asks for a document's segments with their descriptions and texts; the inputs are those of TELOGetSegmentTextInit
  // and TELOGetSegmentDescriptionInit, and blnIncludeERF, which only True switches on. Returns the number of segments
  // (Long), or -1 (Integer) on failure; lngNotes receives the number of notes (Long).
  Variant TELOGetSegmentsInit(const Variant& strChannel, const Variant& strArchive, const Variant& strDocID,
                              const Variant& strVer, const Variant& strQuery = Missing,
                              const Variant& strMarkOn = Missing, const Variant& strMarkOff = Missing,
                              const Variant& strParamCRLF = Missing, const Variant& strBlank = Missing,
                              const Variant& strThumbnailPath = Missing, const Variant& blnIncludeERF = Missing,
                              Variant* lngNotes = nullptr, Variant* strParamStatus = nullptr);
  // The next segment's text, its lines joined by the strParamCRLF of TELOGetSegmentsInit; "" at the end, and also for
  // an empty one. Outputs named int... receive an Integer, lng... a Long, str... a text.
  std::string TELOGetSegmentsNext(Variant* strChannel = nullptr, Variant* strArchive = nullptr,
                                  Variant* strDocID = nullptr, Variant* strVer = nullptr,
                                  Variant* intFeldIndex = nullptr, Variant* intFeldID = nullptr,
                                  Variant* strFeldName = nullptr, Variant* lngTextLaenge = nullptr,
                                  Variant* intTrefferZahl = nullptr, Variant* lngNCILaenge = nullptr,
                                  Variant* strExt = nullptr, Variant* intFeldTyp = nullptr,
                                  Variant* strFeldtitel = nullptr, Variant* strDateiname = nullptr,
                                  Variant* intStatus = nullptr, Variant* strLayoutID = nullptr,
                                  Variant* lngThumbnailSize = nullptr);

  // --- Content ---

  // The TELOGetSegment... methods of this group have the server put a file into the blob directory that both machines
  // reach. strFileName receives the file's bare name after strChangeFileExt has been applied to the file in
  // strBlobPathLocal, lngFileLen its length as text. An answer of one line leaves both untouched; an empty name in it
  // gives "". A name that could leave the directory, or is taken there by something other than a file, fails the call.

  // The content of a segment, as a file. Returns 1 (Long), or -1 (Integer) on failure.
  Variant TELOGetSegmentData(const Variant& strChannel, const Variant& strArchive, const Variant& strDocID,
                             const Variant& strVer, const Variant& intFieldIndex, Variant* strFileName = nullptr,
                             Variant* lngFileLen = nullptr, Variant* strParamStatus = nullptr);
  // The first stored file, of an extension when one is given. Returns 1 (Long), or -1 (Integer) on failure.
  Variant TELOGetSegmentFirstBLOB(const Variant& strChannel, const Variant& strArchive, const Variant& strDocID,
                                  const Variant& strVer, const Variant& strParamFileExt = Missing,
                                  Variant* strFileName = nullptr, Variant* lngFileLen = nullptr,
                                  Variant* strParamStatus = nullptr);
  // A file to print; asks query servers with the print flag only. Returns 1 (Long), or -1 (Integer) on failure.
  Variant TELOGetSegmentPrintfile(const Variant& strChannel, const Variant& strArchive, const Variant& strDocID,
                                  const Variant& strVer, const Variant& strFieldID, Variant* strFileName = nullptr,
                                  Variant* lngFileLen = nullptr, Variant* strParamStatus = nullptr);
  // An image file of several pages, "1;4-6". Returns 1 (Long), or -1 (Integer) on failure. Without a file in the answer
  // the outputs become "" and 0 (Long). A list of more than a million pages fails without a request.
  Variant TELOGetSegmentMultiTIF(const Variant& strChannel, const Variant& strArchive, const Variant& strDocID,
                                 const Variant& strVer, const Variant& strPages, Variant* strFileName = nullptr,
                                 Variant* lngFileLen = nullptr, Variant* strParamStatus = nullptr);
  // Receives a file of the remote blob directory over the connection into strBlobPathLocal; only the last part of
  // strFile counts. lngFileLen is its length in bytes, 0 to 2147483647. Returns 1 (Long), or -1 (Integer) on failure,
  // also for a file of another length; nothing of the file is left then, and an older one of that name stays.
  Variant TELOTransferBLOB(const Variant& strFile, const Variant& lngFileLen, Variant* strParamStatus = nullptr);

  // --- Creating, editing, deleting ---

  // Deletes a document or one of its versions. Returns 1 (Long), or -1 (Integer) on failure.
  Variant TELODeleteDocument(const Variant& strChannel, const Variant& strArchive, const Variant& strDocID,
                             const Variant& strVer, Variant* strParamStatus = nullptr);
  // Writes the description of a document to a file, after the content of an older file of that name. The lists of field
  // types and ids are separated by ","; the contents are written as they are; strCharSet names their character set. No
  // line of a field's text may begin with "@": it would begin another field, or a document in any archive. Returns 1
  // (Long), or -1 (Integer) on failure; sends no request, strParamStatus becomes "" on success.
  Variant CreateImportFile(const Variant& strImportFile, const Variant& strChannel, const Variant& strArchive,
                           const Variant& strTitle, const Variant& strParamFieldTypes, const Variant& strParamFieldIDs,
                           const Variant& strFieldContents, const Variant& strCharSet = Missing,
                           Variant* strParamStatus = nullptr);
  // Has the server create a document from an import file, named as the server reaches it. Returns the number of lines
  // of the answer (Long), or -1 (Integer) on failure; strDocIDVer receives the document's id and version, as text.
  Variant TELOCreateDocument(const Variant& strImportFile, Variant* strDocIDVer = nullptr,
                             Variant* strParamStatus = nullptr);
  // The same for a new version of the document that strDocIDVer names, which receives the new id and version. Returns
  // the number of lines of the answer (Long), or -1 (Integer) on failure.
  Variant TELOEditDocument(const Variant& strImportFile, Variant& strDocIDVer, Variant* strParamStatus = nullptr);

  // --- Upload ---

  // Sends a file of strBlobPathLocal to the query server, into its blob directory; only the last part of strFile
  // counts. Returns 1 (Long), or -1 (Integer) on failure. The records that the ...Next methods read stay as they are.
  Variant TELOUploadFile(const Variant& strFile, Variant* strParamStatus = nullptr);
  // Takes the first file out of the form in the body of the page's request (see OnStartPage) and stores it in
  // strBlobPathLocal under the last part of its name, with strSubDir and "_" in front when given. Returns 1 when a file
  // was stored, 0 when the form held none (Long), -1 (Integer) on failure. Of a file that was stored, strFileNameParam
  // receives the name, lngFileSizeParam the size in bytes (Long).
  Variant UploadFile(const Variant& strSubDir = Missing, Variant* strFileNameParam = nullptr,
                     Variant* lngFileSizeParam = nullptr);

  // --- Notes and masks ---

  // Asks for a document's notes. Returns their number (Long), or -1 (Integer) on failure. They take the place of the
  // texts of TELOGetSegmentTextInit, and outlive other requests as these do.
  Variant TELOGetNotesInit(const Variant& strChannel, const Variant& strArchive, const Variant& strDocID,
                           const Variant& strVer, Variant* strParamStatus = nullptr);
  // The next note: its header, "," and its text with CR LF between lines; "" at the end.
  std::string TELOGetNotesNext();
  // Attaches the first 8000 characters of a note. strParamCRLF is the text that means a line break, CR
  // LF when left out. Returns 1 (Long), or -1 (Integer) on failure.
  Variant TELOWriteNote(const Variant& strChannel, const Variant& strArchive, const Variant& strDocID,
                        const Variant& strVer, const Variant& strNote, const Variant& strParamCRLF = Missing,
                        Variant* strParamStatus = nullptr);
  // Deletes all notes of a document. Returns 1 (Long), or -1 (Integer) on failure.
  Variant TELODeleteNotes(const Variant& strChannel, const Variant& strArchive, const Variant& strDocID,
                          const Variant& strVer, Variant* strParamStatus = nullptr);
  // Asks for the masks of an archive. Returns their number (Long), or -1 (Integer) on failure.
  Variant TELOGetMasksInit(const Variant& strChannel, const Variant& strArchive, Variant* strParamStatus = nullptr);
  // Moves to the next mask, whose name strMaskName receives. Returns the number of its fields (Long), or -1 (Integer)
  // after the last mask, with strMaskName "".
  Variant TELOGetMasksNext(Variant* strMaskName = nullptr);
  // The next field of the mask, its properties as the server wrote them. Returns how many follow it in the mask (Long),
  // or -1 (Integer) when there was none, with the outputs untouched.
  Variant TELOGetMasksNextField(Variant* lngTabIndex = nullptr, Variant* lngWidth = nullptr,
                                Variant* strAlign = nullptr, Variant* strName = nullptr,
                                Variant* blnMandatory = nullptr, Variant* strInitText = nullptr,
                                Variant* blnListOnly = nullptr, Variant* strList = nullptr);
  // Goes back to the first mask, without a request.
  void TELOGetMasksFirst();

  // --- Encryption ---

  // Single DES with a key of 56 bits: the first 7 characters of strParamKey, or of strDES56Key when it is left out; see
  // docs/userdb.md for what it does not protect against. Cipher texts are bytes, or their Base64 form.

  // Encrypts a text, with the result in Base64; "" on failure.
  std::string EncryptBase64(const Variant& strString, const Variant& strParamKey = Missing);
  // Encrypts a text; "" on failure.
  std::string Encrypt(const Variant& strString, const Variant& strParamKey = Missing);
  // The inverse of Encrypt; "" on failure, also for a text that was encrypted with another key.
  std::string Decrypt(const Variant& strString, const Variant& strParamKey = Missing);
  // The inverse of EncryptBase64; "" on failure, also for a text that was encrypted with another key.
  std::string DecryptBase64(const Variant& strString, const Variant& strParamKey = Missing);
  // The bytes of a Base64 text; "" on failure.
  std::string DecodeBase64(const Variant& strString);
  // The bytes of a text in Base64; "" on failure.
  std::string EncodeBase64(const Variant& strString);

  // --- Transport orders and printing ---

  // Asks for the transport orders that a query of the server's own language finds, lngMaxLines at most.
  Variant OstranaQueryFahrauftraegeInit(const Variant& strQuery, const Variant& lngMaxLines,
                                        Variant* strParamStatus = nullptr);
  // The next order: its id and the columns that the server adds, "^id^,^column^". The outputs receive its status, and
  // the id and version of its document, as text. A line with fewer than four fields is an error: "", the outputs
  // untouched, and the next call reads the same line again.
  std::string OstranaQueryFahrauftraegeNext(Variant* strStatus = nullptr, Variant* strDocID = nullptr,
                                            Variant* strVer = nullptr);
  // The page images of orders as one image file in the blob directory; result and outputs as those of
  // TELOGetSegmentMultiTIF. The list of order ids is handed to the server as it is.
  Variant OstranaGetFahrauftraegeMultiTIFF(const Variant& strOrderIDs, Variant* strFileName = nullptr,
                                           Variant* lngFileLen = nullptr, Variant* strParamStatus = nullptr);
  // Gives an order another status. Returns Long 1.
  Variant OstranaUpdateFahrauftraegeStatus(const Variant& strOrderID, const Variant& strStatus,
                                           Variant* strParamStatus = nullptr);
  // Has the server print the hit list of the last query, title row included, to a PDF file in the blob directory;
  // result and outputs as those of TELOGetSegmentData. Without a title row to print it fails without a request, and
  // strParamStatus is untouched. A title that holds "^,^" breaks the request.
  Variant FennikPrintHitlistPDF(const Variant& strTitle, Variant* strFileName = nullptr, Variant* lngFileLen = nullptr,
                                Variant* strParamStatus = nullptr);

  // --- Log and diagnostics ---

  // Writes one line to the session's log. bytLogType is 1 for information (also when left out), 2 for a warning, 3 for
  // an error, 4 for debugging; any other value counts as 1. A line that cannot be written is lost.
  void WriteLog(const Variant& strLogLine, const Variant& bytLogType = Missing);
  // Asks a query server whether it is alive: the first line of its answer, or the error text of a request that failed;
  // "" when there is neither.
  std::string LiveCheck();
  // Returns "Hello World!": shows that the component can be created and called.
  std::string HelloWorld();
  // Sends a complete command part ("^Command^,^parameter^") as it is: all lines of the answer, joined by CR LF, or the
  // error text of a request that failed; "" when there is neither.
  std::string DirectQuery(const Variant& strQueryString);
  // Writes WriteTest.txt in strBlobPathLocal, in place of a file of that name, and deletes it, also when it could not
  // be written whole; whether that worked shows only in the log.
  void WriteTest();

 private:
  friend class QueryWatch;
  std::unique_ptr<QueryState> state_;
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_COMPONENT_CLSQUERY_H_
