#include "client/query_access.h"

#include <atomic>
#include <charconv>
#include <memory>
#include <set>
#include <utility>
#include <vector>

#include "client/text.h"
#include "component/objects.h"
#include "platform/database/database.h"
#include "platform/threads/process_number.h"
#include "values/code_page.h"
#include "values/errors.h"
#include "values/text_parts.h"

namespace oxaqrycln::client {
namespace {

std::string SettingText(const std::string& utf8, const char* what) {
  auto text = FromUtf8(utf8);
  if (!text) throw BadArgument(std::string(what) + " has a character without a place in Windows-1252");
  return *std::move(text);
}

// The list from the entry on that is the place of the calling thread in it. Its order stays.
std::string FromPlaceOfThread(const std::string& hosts) {
  static std::atomic<std::size_t> threads = 0;
  thread_local std::size_t number = 0;  // of the thread, counted from 1
  if (number == 0) number = ++threads;
  const std::vector<std::string_view> entries = Split(hosts, '|');
  const std::size_t place = (ProcessNumber() + number) % entries.size();
  std::string list;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    list.append(i == 0 ? "" : "|").append(entries[(place + i) % entries.size()]);
  }
  return list;
}

// What an attempt without an error of its own came to; only the last one ends as the request does.
const char* AttemptText(RequestResult result) noexcept {
  switch (result) {
    case RequestResult::Succeeded:
    case RequestResult::Refused:
      return "";
    case RequestResult::Cancelled:
      return "cancelled";
    case RequestResult::Failed:
      return "failed";
    default:
      return "no answer";
  }
}

RequestReport ReportOf(const RequestOutcome& outcome) {
  RequestReport request;
  for (const ServerAttempt& attempt : outcome.servers) {
    const std::string error = attempt.error.empty() ? AttemptText(outcome.result) : ToUtf8(attempt.error);
    request.attempts.push_back({ToUtf8(attempt.host), attempt.port, error, attempt.duration});
  }
  request.duration = outcome.duration;
  request.wasSent = outcome.wasSent;
  return request;
}

std::string TextOfError(const HandledError& error) {
  return std::to_string(error.number) + " - " + ToUtf8(error.description);
}

}  // namespace

QueryAccess::QueryAccess(const Settings& settings) : watch_(query_) {
  query_.strTELOUser = RequestText(settings.user, "the user");
  query_.strTELOPwd = SettingText(settings.password, "the password");
  query_.strSessionID = RequestText(settings.session.empty() ? "client" : settings.session, "the session");
  query_.strDebugLogPath = SettingText(settings.logDirectory, "the log directory");
  query_.strBlobPathLocal = SettingText(settings.blobLocal, "the local blob directory");
  query_.strBlobPathRemote = settings.blobRemote.empty()
                                 ? query_.strBlobPathLocal
                                 : SettingText(settings.blobRemote, "the remote blob directory");
  query_.strChangeFileExt = SettingText(settings.changedExtensions, "the changed extensions");
  query_.strUserName = SettingText(settings.webUser, "the web user");
  query_.strUserIP = SettingText(settings.webUserAddress, "the address of the web user");
  query_.datUserLoginTime = settings.webUserLogOn;
  query_.strDBConnect = SettingText(settings.database, "the database");
  if (settings.timeout.count() < 1 || settings.timeout.count() > 86400) {
    throw BadArgument("the time-out must be from 1 second to a day");
  }
  query_.lngRequestTimeout = static_cast<std::int32_t>(settings.timeout.count());
  if (!settings.hosts.empty()) {
    const bool isFirst = watch_.Servers().empty();
    const std::string hosts = SettingText(settings.hosts, "the list of query servers");
    query_.RemoteHosts(settings.spread ? FromPlaceOfThread(hosts) : hosts);
    if (watch_.LastError().number != 0) {
      throw BadArgument("the list of query servers is not valid: " + TextOfError(watch_.LastError()));
    }
    if (!isFirst) CheckSameServers(settings.hosts);
    watch_.SetSickServers(SickServers::TriedLast);
  }
  if (!settings.database.empty()) OpenDatabase();
  if (!query_.Init(false)) throw Error("the component cannot be initialised: " + TextOfError(watch_.LastError()));
}

// Init would write the connection string, which may hold a password, into the log.
void QueryAccess::OpenDatabase() {
  try {
    const auto connection = std::dynamic_pointer_cast<Connection>(CreateObject("ADODB.Connection"));
    if (connection == nullptr) throw RuntimeError(error::kCannotCreateObject);
    connection->Open(query_.strDBConnect);
    watch_.UseDatabase(connection);
  } catch (const RuntimeError& why) {
    throw DatabaseFailed("the web user database cannot be opened: " + std::to_string(why.number()) + " - " +
                         ToUtf8(why.description()));
  }
}

// The servers of a thread are those that its first instance named.
void QueryAccess::CheckSameServers(const std::string& hosts) {
  std::multiset<std::pair<std::string, std::int32_t>> used;
  for (const ServerState& server : watch_.Servers()) used.emplace(ToUtf8(server.host), server.port);
  std::multiset<std::pair<std::string, std::int32_t>> wanted;
  for (const std::string_view entry : Split(hosts, '|')) {
    const std::vector<std::string_view> parts = Split(entry, ',');
    std::int32_t port = 0;
    if (parts.size() >= 2) std::from_chars(parts[1].data(), parts[1].data() + parts[1].size(), port);
    wanted.emplace(parts[0], port);
  }
  if (used != wanted) {
    throw BadArgument("this thread already uses other query servers: an archive with these needs another thread");
  }
}

void QueryAccess::ReportRequest() {
  const RequestOutcome& outcome = watch_.LastRequest();
  if (std::exchange(reported_, outcome.number) != outcome.number && onRequest_) onRequest_(ReportOf(outcome));
}

std::int32_t QueryAccess::Count(const Variant& result) {
  ReportRequest();
  // The archive properties are a text.
  const std::int32_t count = result.type() == Variant::Type::String ? 0 : result.ToLong();
  // Only a failed request writes the error text.
  if (count < 0 && TextOf(status_).empty()) RaiseOwnFailure();
  if (count < 0) RaiseFailure(TextOf(status_));
  if (watch_.LastError().number == error::kOutOfMemory) throw Error("out of memory: the answer is not complete");
  return count;
}

std::string QueryAccess::Answer(const std::string& result) {
  ReportRequest();
  if (watch_.LastRequest().result != RequestResult::Succeeded) RaiseFailure(ToUtf8(result));
  return ToUtf8(result);
}

void QueryAccess::CheckOwn(const std::string& what) const {
  if (watch_.LastError().number != 0) throw Error(what + ": " + TextOfError(watch_.LastError()));
}

Variant QueryAccess::FromDatabase(Variant result) const {
  if (watch_.LastError().number == error::kObjectNotSet) throw BadArgument("the settings name no web user database");
  // A text that must not be part of a statement.
  if (watch_.LastError().number == error::kInvalidProcedureCall) throw BadArgument(TextOfError(watch_.LastError()));
  if (watch_.LastError().number != 0) throw DatabaseFailed(TextOfError(watch_.LastError()));
  return result;
}

void QueryAccess::RaiseMalformed(const char* what, std::int32_t number) const {
  throw Error(std::string(what) + " " + std::to_string(number) +
              " of the answer is malformed: " + TextOfError(watch_.LastError()));
}

void QueryAccess::RaiseOwnFailure() const {
  const HandledError& handled = watch_.LastError();
  throw Error(handled.number == 0 ? "the answer of the query server is empty" : TextOfError(handled));
}

void QueryAccess::RaiseFailure(const std::string& text) const {
  const RequestOutcome& outcome = watch_.LastRequest();
  RequestReport request = ReportOf(outcome);
  switch (outcome.result) {
    case RequestResult::Refused:
      throw Refused(text, std::move(request));
    case RequestResult::TimedOut:
      throw TimedOut(text, std::move(request));
    case RequestResult::ConnectionFailed:
      throw ConnectionFailed(text, std::move(request));
    case RequestResult::AllBusy:
      throw AllServersBusy(text, std::move(request));
    case RequestResult::Cancelled:
      throw Cancelled(text, std::move(request));
    default:
      throw Error(text, std::move(request));
  }
}

std::string TextOf(const Variant& output) { return output.IsMissing() ? "" : ToUtf8(output.ToText()); }

std::vector<std::vector<std::string>> Records(const Variant& list, std::size_t fieldCount) {
  std::vector<std::vector<std::string>> records;
  const std::string text = TextOf(list);
  for (std::string_view line : Split(text, '\n')) {
    line = Trimmed(line, "\r");
    if (line.empty()) continue;
    records.push_back(Fields(line));
    if (records.back().size() != fieldCount) {
      throw DatabaseFailed("a list of the database is malformed: a value holds \"^,^\" or a line end");
    }
  }
  return records;
}

std::int64_t NumberOf(const Variant& output) noexcept {
  try {
    return static_cast<std::int64_t>(output.ToDouble());
  } catch (const RuntimeError&) {
    return 0;
  }
}

}  // namespace oxaqrycln::client
