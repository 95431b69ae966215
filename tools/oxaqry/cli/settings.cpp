#include "tools/oxaqry/cli/settings.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <optional>

#include "automation/method_table.h"
#include "component/query_watch.h"
#include "tools/oxaqry/cli/input.h"
#include "tools/oxaqry/cli/suggestion.h"
#include "tools/oxaqry/cli/text.h"
#include "tools/oxaqry/cli/value_json.h"
#include "values/code_page.h"
#include "values/errors.h"

namespace oxaqrycln::oxaqry {
namespace {

constexpr const char* kHosts = "RemoteHosts";
constexpr std::int32_t kMostSeconds = 86400;  // of the only number, the time-out

// Passwords and keys have no option: everybody on the machine can read options.
constexpr std::array kEntries{
    SettingEntry{kHosts, "OXAQRY_REMOTE_HOSTS", "--hosts", "LIST",
                 "query servers, \"host,port[,print flag[,user[,encoded password]]]\" joined by \"|\""},
    SettingEntry{"strTELOUser", "OXAQRY_USER", "--user", "NAME", "name of the archive account"},
    SettingEntry{"strTELOPwd", "OXAQRY_PASSWORD", "", "", "password of the archive account"},
    SettingEntry{"lngRequestTimeout", "OXAQRY_TIMEOUT", "--timeout", "SECONDS",
                 "seconds one request may take, with all servers that are tried: 1 to 86400 (default 30)"},
    SettingEntry{"strSessionID", "OXAQRY_SESSION", "--session", "ID",
                 "session id, which names the log file (default \"oxaqry\")"},
    SettingEntry{"strDebugLogPath", "OXAQRY_LOG_DIR", "--log-dir", "DIRECTORY",
                 "directory of the log files (default: no log)"},
    SettingEntry{"strBlobPathLocal", "OXAQRY_BLOB_LOCAL", "--blob-local", "DIRECTORY",
                 "directory of received files as this machine reaches it"},
    SettingEntry{"strBlobPathRemote", "OXAQRY_BLOB_REMOTE", "--blob-remote", "PATH",
                 "the same directory as the query servers reach it (default: the local one)"},
    SettingEntry{"strDBConnect", "OXAQRY_DATABASE", "", "", "connection string of the web user database"},
    SettingEntry{"strChangeFileExt", "OXAQRY_CHANGE_FILE_EXT", "--change-file-ext", "RULES",
                 "OLD-NEW extension rules for received files, separated by \",\""},
    SettingEntry{"strDES56Key", "OXAQRY_DES_KEY", "", "", "default key of the encryption services"},
    SettingEntry{"strUserIP", "OXAQRY_USER_IP", "", "", "network address of the web user"},
    SettingEntry{"strUserName", "OXAQRY_USER_NAME", "", "", "name of the web user"},
    SettingEntry{"datUserLoginTime", "OXAQRY_LOGIN_TIME", "", "",
                 "time when the web user logged on, for example 2026-11-15T20:31:07"},
};

// The text as a value of the variable's type.
Variant ValueFrom(std::string_view variable, std::string_view utf8, const std::string& source) {
  const char* expected = "a date like 2026-11-15T20:31:07";
  try {
    const Variant::Type type = FindVariable(variable) == nullptr ? Variant::Type::String : FindVariable(variable)->type;
    if (type == Variant::Type::String) return TextFromUtf8(utf8);
    if (type == Variant::Type::Long) {
      if (const auto number = ParseNumber(utf8); number && *number >= 1 && *number <= kMostSeconds) return *number;
      expected = "a whole number of seconds from 1 to 86400";
    } else if (const auto date = DateTime::FromIso(std::string(utf8))) {
      return *date;
    }
  } catch (const RuntimeError&) {  // no such day
  } catch (const ValueError& error) {
    throw CommandError(source + ": " + error.what());
  }
  throw CommandError(source + " must be " + expected);
}

bool IsEncoded(const std::string& password) {
  clsQuery query;
  const QueryWatch watch(query);
  query.Decode(password);
  return watch.LastError().number == 0;
}

// ", line L, column C" of a byte of the text; both count from 1.
std::string PlaceText(std::string_view text, std::size_t at) {
  const std::string_view before = text.substr(0, at);
  const std::size_t lineStart = before.rfind('\n') + 1;  // 0 for the first line
  const auto startsCharacter = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; };
  return ", line " + std::to_string(std::ranges::count(before, '\n') + 1) + ", column " +
         std::to_string(std::ranges::count_if(before.substr(lineStart), startsCharacter) + 1);
}

// Where a member of the object begins; "" for a name that is written with escapes.
std::string PlaceOf(const std::string& name, std::string_view text) {
  const std::string quoted = "\"" + name + "\"";
  for (std::size_t at = text.find(quoted); at != std::string_view::npos; at = text.find(quoted, at + 1)) {
    const std::size_t next = text.find_first_not_of(" \t\r\n", at + quoted.size());
    if (next != std::string_view::npos && text[next] == ':') return PlaceText(text, at);
  }
  return "";
}

// Raises CommandError. What was read last is left out of the reason, as it may be a password.
Json ParseConfig(const std::string& text, const std::string& where) {
  try {
    Json config = Json::parse(text);
    if (!config.is_object()) throw CommandError(where + " must be one JSON object of settings");
    return config;
  } catch (const Json::parse_error& error) {
    std::string reason = error.what();
    const std::size_t dash = reason.find(" - ");
    reason = dash == std::string::npos ? "it is no JSON" : reason.substr(dash + 3);
    reason.resize(std::min(reason.size(), reason.find("; last read")));
    const std::size_t at = error.byte == 0 ? 0 : error.byte - 1;
    throw CommandError(where + PlaceText(text, std::min(at, text.size())) +
                       ", must be one JSON object of settings: " + reason);
  }
}

std::vector<std::string> VariableNames() {
  std::vector<std::string> names;
  for (const SettingEntry& entry : kEntries) names.emplace_back(entry.variable);
  return names;
}

// Whether an entry of the list of query servers names a user of its own. Raises CommandError for a malformed one.
bool HasOwnAccount(const std::string& entry) {
  const std::vector<std::string> fields = SplitText(entry, ",");
  if (fields.size() > 4 && !IsEncoded(fields[4])) {
    throw CommandError("the password of the query server \"" + ToUtf8(fields[0]) +
                       "\" is not encoded: encode it with the method \"Encode\" of oxaqry session");
  }
  const std::int32_t port = fields.size() < 2 ? 0 : ParseNumber(fields[1]).value_or(0);
  if (!fields[0].empty() && port >= 1 && port <= 65535) return fields.size() > 3 && !fields[3].empty();
  // Not the entry itself, which may hold a password.
  throw CommandError("the query server \"" + ToUtf8(fields[0]) +
                     "\" needs a port from 1 to 65535: write \"host,port\", and \"|\" between servers");
}

}  // namespace

std::span<const SettingEntry> SettingEntries() { return kEntries; }

Settings::Settings() {
  values_["lngRequestTimeout"] = Variant::Long(30);
  values_["strSessionID"] = "oxaqry";
}

void Settings::ReadConfig(const std::string& path) {
  const std::string text = ReadSmallFile(path, "configuration file");
  const std::string where = "the configuration file \"" + path + "\"";
  const Json config = ParseConfig(text, where);
  for (const auto& member : config.items()) {
    const auto* const entry = std::ranges::find(kEntries, member.key(), &SettingEntry::variable);
    if (entry == kEntries.end()) {
      const std::string hint = DidYouMean(member.key(), VariableNames());
      throw CommandError(
          where + PlaceOf(member.key(), text) + ", holds the unknown setting \"" + member.key() + "\"" +
          (hint.empty() ? ": use RemoteHosts and the names that \"oxaqry methods\" lists as public variables" : hint));
    }
    const std::string source = "\"" + member.key() + "\" in " + where + PlaceOf(member.key(), text);
    const Json& value = member.value();
    const VariableEntry* const variable = FindVariable(member.key());
    const bool isNumber = variable != nullptr && variable->type == Variant::Type::Long;
    if (!value.is_string() && !(isNumber && value.is_number())) {
      throw CommandError(source + " must be a text" + (isNumber ? " or a number" : ""));
    }
    Set(entry->variable, value.is_string() ? value.get<std::string>() : value.dump(), source);
  }
}

void Settings::ReadEnvironment(const Environment& environment) {
  for (const SettingEntry& entry : kEntries) {
    if (const char* const value = environment(entry.environment)) Set(entry.variable, value, entry.environment);
  }
}

void Settings::Set(std::string_view variable, std::string_view value, const std::string& source) {
  values_[std::string(variable)] = ValueFrom(variable, value, source);
}

const Variant& Settings::Value(std::string_view variable) const {
  static const Variant empty;
  const auto found = values_.find(variable);
  return found == values_.end() ? empty : found->second;
}

std::string Settings::Text(std::string_view variable) const { return Value(variable).ToText(); }

void Settings::RequireServers() const {
  const std::string list = Text(kHosts);
  if (list.empty()) {
    throw CommandError(
        "no query servers are set: give --hosts \"host,port\", OXAQRY_REMOTE_HOSTS, or RemoteHosts in the "
        "configuration file");
  }
  bool haveAccounts = true;
  for (const std::string& entry : SplitText(list, "|")) haveAccounts &= HasOwnAccount(entry);
  const std::string user = Text("strTELOUser");
  if (!user.empty() && Value("strTELOPwd").IsEmpty() && !haveAccounts) {
    throw CommandError("the archive account \"" + ToUtf8(user) +
                       "\" has no password: give --password-file, --password-stdin, OXAQRY_PASSWORD, or strTELOPwd in "
                       "the configuration file, \"\" for an empty one");
  }
}

void Settings::RequireBlobDirectory() const {
  std::string directory = ToUtf8(Text("strBlobPathLocal"));
  if (directory.empty()) {
    throw CommandError("no blob directory is set: give --blob-local, OXAQRY_BLOB_LOCAL or strBlobPathLocal");
  }
  std::ranges::replace(directory, '\\', '/');
  std::error_code failed;
  if (!std::filesystem::is_directory(directory, failed)) {
    throw CommandError("the blob directory \"" + directory + "\" (--blob-local) is not a directory");
  }
}

client::Settings Settings::ForArchive() const {
  const auto text = [this](std::string_view variable) { return ToUtf8(Text(variable)); };
  client::Settings settings;
  settings.hosts = text(kHosts);
  settings.spread = false;  // the list says which server is asked first
  settings.user = text("strTELOUser");
  settings.password = text("strTELOPwd");
  settings.timeout = std::chrono::seconds(Value("lngRequestTimeout").ToLong());
  settings.session = text("strSessionID");
  settings.logDirectory = text("strDebugLogPath");
  settings.blobLocal = text("strBlobPathLocal");
  settings.blobRemote = text("strBlobPathRemote");
  settings.changedExtensions = text("strChangeFileExt");
  settings.webUser = text("strUserName");
  settings.webUserAddress = text("strUserIP");
  if (!Value("datUserLoginTime").IsEmpty()) settings.webUserLogOn = Value("datUserLoginTime").ToDate();
  return settings;
}

client::Settings Settings::ForDatabase() const {
  client::Settings settings;
  settings.session = ToUtf8(Text("strSessionID"));
  settings.logDirectory = ToUtf8(Text("strDebugLogPath"));
  settings.database = ToUtf8(Text("strDBConnect"));
  return settings;
}

std::unique_ptr<clsQuery> Settings::MakeQuery() const {
  auto query = std::make_unique<clsQuery>();
  for (const auto& [name, value] : values_) {
    if (const VariableEntry* const variable = FindVariable(name)) variable->set(*query, value);
  }
  return query;
}

}  // namespace oxaqrycln::oxaqry
