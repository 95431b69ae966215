// clsQuery.h - the one public class: archive queries through a pool of query servers, for server-side pages.
// One instance serves one page request, on the thread that made it. No method lets an error out: a failure shows in
// the result and in the session's log.
#ifndef OXAQRYCLN_COMPONENT_CLSQUERY_H_
#define OXAQRYCLN_COMPONENT_CLSQUERY_H_

#include <cstdint>
#include <memory>
#include <string>

#include "platform/variant.h"

#pragma GCC visibility push(default)

namespace oxaqrycln {

struct QueryState;

// Conventions. An input is a const Variant&; Missing leaves an optional one out. An output is a Variant*; nullptr
// leaves it out, and what is left out is never written. Unless a method says otherwise:
// - an ...Init sends one request and returns the number of records (Long), or -1 (Integer) when it failed; its
//   strParamStatus receives "" on success and the error text otherwise, no other output is written on failure;
// - a ...Next returns the next record's text, or "" at the end with the outputs untouched;
// - every ...Init replaces the records that the ...Next methods of every family read.
class clsQuery {
 public:
  clsQuery();
  // Closes the database connection if it is open, and gives the connection slot back.
  ~clsQuery();
  clsQuery(const clsQuery&) = delete;
  clsQuery& operator=(const clsQuery&) = delete;

  // --- Settings, to be assigned before Init. All start empty; nothing else configures the component. ---

  std::int32_t lngRequestTimeout = 0;  // seconds one request may take, all servers tried included; 0 ends at the next
                                       // second boundary
  std::string strSessionID;            // the web session; names the log file
  std::string strTELOPwd;              // password of the archive account
  std::string strTELOUser;             // name of the archive account
  std::string strBlobPathLocal;        // directory of received files as this machine reaches it
  std::string strBlobPathRemote;       // the same directory as the query servers reach it
  std::string strDBConnect;            // connection string of the web user database
  std::string strDebugLogPath;         // directory of the log files; "" logs nothing
  std::string strChangeFileExt;        // OLD-NEW extension rules for received files, separated by ","
  std::string strDES56Key;             // default key of the encryption services
  std::string strUserIP;               // network address of the web user
  std::string strUserName;             // name of the web user
  DateTime datUserLoginTime;           // when the web user logged on

  // --- Life cycle ---

  // Opens the database connection unless blnParamDBInit is False, claims a connection slot and starts the timer that
  // frees stale servers. Once, after the settings and before any other method. False on failure.
  bool Init(const Variant& blnParamDBInit = Missing);
  // Keeps the page's scripting context and its request until OnEndPage.
  void OnStartPage(const Variant& PassedScriptingContext);
  void OnEndPage();

  // --- Text and file helpers ---

  // Reversible encoding, two hexadecimal digits a character; "" on failure. Characters whose code plus 1-based
  // position is 174 or more do not survive.
  std::string Encode(const Variant& strText);
  // The inverse of Encode; "" on failure.
  std::string Decode(const Variant& strText);
  // Deletes the files that match a path or pattern, then every directory beside them with its files.
  void DeleteFTPObjects(const Variant& strFile);

  // --- Query servers ---

  // Write-only: the query servers of this thread, "host,port[,print flag[,user[,encoded password]]]" joined by "|".
  // Only the first assignment on a thread has an effect.
  void RemoteHosts(const Variant& strRemoteHosts);

  // --- Channels and archives ---

  Variant TELOGetChannelsInit(Variant* strParamStatus = nullptr);
  // The next channel in ascending order; strChannelDescription receives the text after its first comma.
  std::string TELOGetChannelsNext(Variant* strChannelDescription = nullptr);
  Variant TELOGetAllArchivesInit(Variant* strParamStatus = nullptr);
  // The next archive line, whole, in ascending order.
  std::string TELOGetAllArchivesNext();
  Variant TELOGetQueryFormatListInit(const Variant& strChannel, const Variant& strArchive,
                                     Variant* strParamStatus = nullptr);
  // The next query format, in the server's order.
  std::string TELOGetQueryFormatListNext();
  // Returns the number of channels, not of lines.
  Variant TELOGetAllArchivesExtInit(Variant* strParamStatus = nullptr);
  // Moves to the next channel and returns its number of archives (Long), or -1 (Integer) after the last. Outputs become
  // "" at the end.
  Variant TELOGetAllArchivesExtNext(Variant* strChannel = nullptr, Variant* strChannelDescription = nullptr);
  // The next archive of the current channel; strComment receives the text after its first comma. "" where the next
  // channel begins.
  std::string TELOGetAllArchivesExtNextArchive(Variant* strComment = nullptr);
  // Back to the first channel, without a request.
  void TELOGetAllArchivesExtFirst();
  // Returns the fifth property of the archive as text, or -1 (Integer) on failure or an empty answer; the outputs
  // receive the first four as the server wrote them.
  Variant TELOGetArchiveProperties(const Variant& strChannel, const Variant& strArchive, Variant* blnCreate = nullptr,
                                   Variant* blnEdit = nullptr, Variant* blnDelete = nullptr,
                                   Variant* blnIndex = nullptr, Variant* strParamStatus = nullptr);

  // --- Query and hit list ---

  // Runs a query. lngMaxLines limits the hit lines, lngQueryMax the hits. Returns the number of rows (Long), the title
  // row included. lngTotalHits receives the total as text; strLayoutKeys and strLayoutValues, when both are given, the
  // layout's keys and values joined by ","; blnHitlistMultiTIFF a Boolean.
  Variant TELOQueryArchiveInit(const Variant& strQuery, const Variant& lngMaxLines, const Variant& lngQueryMax,
                               const Variant& strQueryFormat, const Variant& strFolderRights,
                               const Variant& strLayoutFieldID = Missing, const Variant& strLayoutID = Missing,
                               Variant* strLayoutKeys = nullptr, Variant* strLayoutValues = nullptr,
                               Variant* lngTotalHits = nullptr, Variant* blnHitlistMultiTIFF = nullptr,
                               Variant* strParamStatus = nullptr);
  // The next row's display columns, "^column^,^column^"; the first row holds the titles. The outputs receive the hit's
  // channel, archive, document id and version as text.
  std::string TELOQueryArchiveNext(Variant* strChannel = nullptr, Variant* strArchive = nullptr,
                                   Variant* strDocID = nullptr, Variant* strVer = nullptr);

  // --- Log and diagnostics ---

  // One line in the session's log; bytLogType 1 information (also when left out), 2 warning, 3 error, 4 debug.
  void WriteLog(const Variant& strLogLine, const Variant& bytLogType = Missing);
  // The first line of a query server's answer, or the error text.
  std::string LiveCheck();
  // "Hello World!"
  std::string HelloWorld();
  // All lines of the answer to a complete command part ("^Command^,^parameter^"), joined by CR LF, or the error text.
  std::string DirectQuery(const Variant& strQueryString);
  // Writes and deletes a test file in the local blob directory; the log tells how it went.
  void WriteTest();

 private:
  std::unique_ptr<QueryState> state_;
};

}  // namespace oxaqrycln

#pragma GCC visibility pop

#endif  // OXAQRYCLN_COMPONENT_CLSQUERY_H_
