#include "automation/method_table.h"

#include <algorithm>
#include <iterator>

#include "automation/method_binding.h"
#include "automation/method_groups.h"
#include "platform/code_page.h"

namespace oxaqrycln {
namespace {

using binding::Method;
using binding::Property;
using binding::Variable;

std::vector<VariableEntry> MakeVariables() {
  return {
      Variable<&clsQuery::lngRequestTimeout>(
          "lngRequestTimeout",
          "Seconds one request may take, all servers tried included; 0 ends it at the next second boundary."),
      Variable<&clsQuery::strSessionID>("strSessionID", "The web session; names the log file."),
      Variable<&clsQuery::strTELOPwd>("strTELOPwd", "Password of the archive account."),
      Variable<&clsQuery::strTELOUser>("strTELOUser", "Name of the archive account."),
      Variable<&clsQuery::strBlobPathLocal>("strBlobPathLocal",
                                            "Directory of received files as this machine reaches it."),
      Variable<&clsQuery::strBlobPathRemote>("strBlobPathRemote", "The same directory as the query servers reach it."),
      Variable<&clsQuery::strDBConnect>("strDBConnect", "Connection string of the web user database."),
      Variable<&clsQuery::strDebugLogPath>("strDebugLogPath", "Directory of the log files; empty logs nothing."),
      Variable<&clsQuery::strChangeFileExt>("strChangeFileExt",
                                            "OLD-NEW extension rules for received files, separated by \",\"."),
      Variable<&clsQuery::strDES56Key>("strDES56Key", "Default key of the encryption services."),
      Variable<&clsQuery::strUserIP>("strUserIP", "Network address of the web user."),
      Variable<&clsQuery::strUserName>("strUserName", "Name of the web user."),
      Variable<&clsQuery::datUserLoginTime>("datUserLoginTime", "When the web user logged on."),
  };
}

constexpr std::string_view kTextResult = "Text, \"\" on failure.";

std::vector<MethodEntry> LifeCycle() {
  constexpr std::string_view kGroup = "Life cycle";
  return {
      Method<&clsQuery::Init, 0>(
          {"Init", kGroup, "Boolean: False on failure.",
           "Opens the database connection unless blnParamDBInit is False, claims a connection slot and starts the "
           "timer that frees stale servers. To be called once, after the settings and before any other method."},
          "blnParamDBInit"),
      Method<&clsQuery::OnStartPage>(
          {"OnStartPage", kGroup, "", "Keeps the page's scripting context and its request until OnEndPage."},
          "PassedScriptingContext"),
      Method<&clsQuery::OnEndPage>({"OnEndPage", kGroup, "", "Lets go of the scripting context and its request."}),
  };
}

std::vector<MethodEntry> TextAndFileHelpers() {
  constexpr std::string_view kGroup = "Text and file helpers";
  return {
      Method<&clsQuery::Encode>(
          {"Encode", kGroup, kTextResult,
           "Reversible encoding, two hexadecimal digits a character. Characters whose code plus 1-based position is "
           "174 or more do not survive."},
          "strText"),
      Method<&clsQuery::Decode>({"Decode", kGroup, kTextResult, "The inverse of Encode."}, "strText"),
      Method<&clsQuery::DeleteFTPObjects>(
          {"DeleteFTPObjects", kGroup, "",
           "Deletes the files that match a path or pattern, then every directory beside them with its files."},
          "strFile"),
  };
}

std::vector<MethodEntry> QueryServers() {
  return {
      Property<&clsQuery::RemoteHosts>(
          {"RemoteHosts", "Query servers", "",
           "Write-only: the query servers of this thread, \"host,port[,print flag[,user[,encoded password]]]\" joined "
           "by \"|\". Only the first assignment on a thread has an effect."},
          "strRemoteHosts"),
  };
}

std::vector<MethodEntry> LogAndDiagnostics() {
  constexpr std::string_view kGroup = "Log and diagnostics";
  return {
      Method<&clsQuery::WriteLog, 1>(
          {"WriteLog", kGroup, "",
           "One line in the session's log; bytLogType is 1 for information (also when left out), 2 for a warning, 3 "
           "for an error, 4 for debugging."},
          "strLogLine", "bytLogType"),
      Method<&clsQuery::LiveCheck>(
          {"LiveCheck", kGroup, "Text.", "The first line of a query server's answer, or the error text."}),
      Method<&clsQuery::HelloWorld>({"HelloWorld", kGroup, "Text.", "\"Hello World!\""}),
      Method<&clsQuery::DirectQuery>(
          {"DirectQuery", kGroup, "Text.",
           "All lines of the answer to a complete command part (\"^Command^,^parameter^\"), joined by CR LF, or the "
           "error text."},
          "strQueryString"),
      Method<&clsQuery::WriteTest>(
          {"WriteTest", kGroup, "",
           "Writes and deletes a test file in the local blob directory; the log tells how it went."}),
  };
}

std::vector<MethodEntry> MakeMethods() {
  std::vector<MethodEntry> methods;
  for (auto group : {LifeCycle, TextAndFileHelpers, QueryServers, WebUsers, UserRights, Outliners, ChannelsAndArchives,
                     QueryAndHitList, DocumentsAndSegments, Content, DocumentChanges, Upload, NotesAndMasks, Encryption,
                     TransportOrdersAndPrinting, LogAndDiagnostics}) {
    std::ranges::move(group(), std::back_inserter(methods));
  }
  return methods;
}

template <typename Entry>
const Entry* Find(std::span<const Entry> entries, std::string_view name) {
  const auto sameLetter = [](char left, char right) { return UpperCase(left) == UpperCase(right); };
  const auto found = std::ranges::find_if(
      entries, [&](const Entry& entry) { return std::ranges::equal(entry.name, name, sameLetter); });
  return found == entries.end() ? nullptr : &*found;
}

}  // namespace

std::span<const VariableEntry> PublicVariables() {
  static const std::vector<VariableEntry> variables = MakeVariables();
  return variables;
}

std::span<const MethodEntry> PublicMethods() {
  static const std::vector<MethodEntry> methods = MakeMethods();
  return methods;
}

const VariableEntry* FindVariable(std::string_view name) { return Find(PublicVariables(), name); }

const MethodEntry* FindMethod(std::string_view name) { return Find(PublicMethods(), name); }

}  // namespace oxaqrycln
