#include "tools/oxaqry/cli/settings.h"

#include <algorithm>
#include <array>
#include <optional>

#include "automation/method_table.h"
#include "component/query_watch.h"
#include "tools/oxaqry/cli/input.h"
#include "tools/oxaqry/cli/text.h"
#include "tools/oxaqry/cli/value_json.h"
#include "values/code_page.h"
#include "values/errors.h"

namespace oxaqrycln::oxaqry {
namespace {

constexpr const char* kHosts = "RemoteHosts";

// Passwords and keys have no option: everybody on the machine can read options.
constexpr std::array kEntries{
    SettingEntry{kHosts, "OXAQRY_REMOTE_HOSTS", "--hosts", "LIST",
                 "query servers, \"host,port[,print flag[,user[,encoded password]]]\" joined by \"|\""},
    SettingEntry{"strTELOUser", "OXAQRY_USER", "--user", "NAME", "name of the archive account"},
    SettingEntry{"strTELOPwd", "OXAQRY_PASSWORD", "", "", "password of the archive account"},
    SettingEntry{"lngRequestTimeout", "OXAQRY_TIMEOUT", "--timeout", "SECONDS",
                 "seconds one request may take, with all servers that are tried (default 30)"},
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
      if (const auto number = ParseNumber(utf8)) return *number;
      expected = "a whole number from 0 to 2147483647";
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

QueryServer ServerFrom(const std::string& entry) {
  std::vector<std::string> fields = SplitText(entry, ",");
  if (fields.size() > 4 && !IsEncoded(fields[4])) {
    throw CommandError("the password of the query server \"" + ToUtf8(fields[0]) +
                       "\" is not encoded: encode it with the method \"Encode\" of oxaqry session");
  }
  const std::int32_t port = fields.size() < 2 ? 0 : ParseNumber(fields[1]).value_or(0);
  if (!fields[0].empty() && port >= 1 && port <= 65535) return {fields[0], port, entry};
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
  const Json config = Json::parse(text, nullptr, false);
  if (!config.is_object()) throw CommandError(where + " must be one JSON object of settings");
  for (const auto& member : config.items()) {
    const auto* const entry = std::ranges::find(kEntries, member.key(), &SettingEntry::variable);
    if (entry == kEntries.end()) {
      throw CommandError(where + " holds the unknown setting \"" + member.key() +
                         "\": use RemoteHosts and the names that \"oxaqry methods\" lists as public variables");
    }
    const std::string source = "\"" + member.key() + "\" in " + where;
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

std::vector<QueryServer> Settings::Servers() const {
  const std::string list = Text(kHosts);
  if (list.empty()) {
    throw CommandError(
        "no query servers are set: give --hosts \"host,port\", OXAQRY_REMOTE_HOSTS, or RemoteHosts in the "
        "configuration file");
  }
  std::vector<QueryServer> servers;
  for (const std::string& entry : SplitText(list, "|")) servers.push_back(ServerFrom(entry));
  return servers;
}

std::string Settings::ServerList() const {
  Servers();  // reports a malformed entry, which the component would only log
  return Text(kHosts);
}

std::unique_ptr<clsQuery> Settings::MakeQuery() const {
  auto query = std::make_unique<clsQuery>();
  for (const auto& [name, value] : values_) {
    if (const VariableEntry* const variable = FindVariable(name)) variable->set(*query, value);
  }
  return query;
}

}  // namespace oxaqrycln::oxaqry
