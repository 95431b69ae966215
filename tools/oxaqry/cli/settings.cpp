#include "tools/oxaqry/cli/settings.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "automation/method_table.h"
#include "support/text_helpers.h"
#include "tools/oxaqry/cli/input.h"
#include "tools/oxaqry/cli/value_json.h"
#include "values/code_page.h"
#include "values/errors.h"
#include "values/text_parts.h"

namespace oxaqrycln::oxaqry {
namespace {

constexpr const char* kHosts = "RemoteHosts";

constexpr std::array kEntries{
    SettingEntry{kHosts, "OXAQRY_REMOTE_HOSTS", "--hosts",
                 "query servers, \"host,port[,print flag[,user[,encoded password]]]\" joined by \"|\""},
    SettingEntry{"strTELOUser", "OXAQRY_USER", "--user", "name of the archive account"},
    SettingEntry{"strTELOPwd", "OXAQRY_PASSWORD", "", "password of the archive account"},
    SettingEntry{"lngRequestTimeout", "OXAQRY_TIMEOUT", "--timeout",
                 "seconds one request may take, all servers tried included (default 30)"},
    SettingEntry{"strSessionID", "OXAQRY_SESSION", "--session",
                 "session id, which names the log file (default \"oxaqry\")"},
    SettingEntry{"strDebugLogPath", "OXAQRY_LOG_DIR", "--log-dir", "directory of the log files (default: no log)"},
    SettingEntry{"strBlobPathLocal", "OXAQRY_BLOB_LOCAL", "--blob-local",
                 "directory of received files as this machine reaches it"},
    SettingEntry{"strBlobPathRemote", "OXAQRY_BLOB_REMOTE", "--blob-remote",
                 "the same directory as the query servers reach it"},
    SettingEntry{"strDBConnect", "OXAQRY_DATABASE", "", "connection string of the web user database"},
    SettingEntry{"strChangeFileExt", "OXAQRY_CHANGE_FILE_EXT", "--change-file-ext",
                 "OLD-NEW extension rules for received files, separated by \",\""},
    SettingEntry{"strDES56Key", "OXAQRY_DES_KEY", "", "default key of the encryption services"},
    SettingEntry{"strUserIP", "OXAQRY_USER_IP", "--user-ip", "network address of the web user"},
    SettingEntry{"strUserName", "OXAQRY_USER_NAME", "--user-name", "name of the web user"},
    SettingEntry{"datUserLoginTime", "OXAQRY_LOGIN_TIME", "--login-time",
                 "when the web user logged on, like 2026-11-15T20:31:07"},
};

const SettingEntry* FindEntry(std::string_view variable) {
  for (const SettingEntry& entry : kEntries) {
    if (entry.variable == variable) return &entry;
  }
  return nullptr;
}

std::int32_t Seconds(const Variant& value) {
  const bool isWhole = value.ToText().find_first_not_of("0123456789") == std::string::npos;
  const std::int32_t seconds = isWhole ? value.ToLong() : -1;
  if (seconds < 0) throw RuntimeError(error::kOverflow);
  return seconds;
}

// The value as the variable's type.
Variant Convert(std::string_view variable, const Variant& value, const std::string& source) {
  const VariableEntry* const entry = FindVariable(variable);
  const Variant::Type type = entry == nullptr ? Variant::Type::String : entry->type;
  try {
    if (type == Variant::Type::Long) return Seconds(value);
    if (value.type() == Variant::Type::String) {
      if (type == Variant::Type::String) return value;
      if (const auto date = DateTime::FromIso(value.ToText())) return *date;
    }
  } catch (const RuntimeError&) {  // told below
  }
  const char* expected = "a text";
  if (type == Variant::Type::Long) expected = "a whole number from 0 to 2147483647";
  if (type == Variant::Type::Date) expected = "a date like 2026-11-15T20:31:07";
  throw CommandError(source + " must be " + expected);
}

bool IsEncoded(const std::string& password) {
  try {
    Decode(password);
    return true;
  } catch (const RuntimeError&) {
    return false;
  }
}

QueryServer ServerFrom(const std::string& entry) {
  std::vector<std::string> fields;
  for (const std::string_view field : Split(entry, ',')) fields.emplace_back(field);
  fields.resize(std::max<std::size_t>(fields.size(), 1));
  if (fields.size() > 4 && !IsEncoded(fields[4])) {
    throw CommandError("the password of the query server \"" + ToUtf8(fields[0]) +
                       "\" is not encoded: \"Encode\" of oxaqry session makes the text that belongs there");
  }
  if (fields.size() >= 2 && !fields[0].empty()) {
    int port = 0;
    const char* const end = fields[1].data() + fields[1].size();
    const auto [rest, code] = std::from_chars(fields[1].data(), end, port);
    if (code == std::errc{} && rest == end && port >= 1 && port <= 65535) return {fields[0], fields[1], entry};
  }
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
    const SettingEntry* const entry = FindEntry(member.key());
    if (entry == nullptr) {
      throw CommandError(where + " holds the unknown setting \"" + member.key() +
                         "\": use RemoteHosts and the names that \"oxaqry methods\" lists as public variables");
    }
    const std::string source = "\"" + member.key() + "\" in " + where;
    const Json& value = member.value();
    if (!value.is_string() && !value.is_number()) throw CommandError(source + " must be a text or a number");
    try {
      values_[entry->variable] = Convert(entry->variable, ValueFromJson(value), source);
    } catch (const ValueError& error) {
      throw CommandError(source + ": " + error.what());
    }
  }
}

void Settings::ReadEnvironment(const Environment& environment) {
  for (const SettingEntry& entry : kEntries) {
    if (const char* const value = environment(entry.environment)) Set(entry.variable, value, entry.environment);
  }
}

void Settings::Set(std::string_view variable, std::string_view value, const std::string& source) {
  try {
    values_[std::string(variable)] = Convert(variable, TextFromUtf8(value), source);
  } catch (const ValueError& error) {
    throw CommandError(source + ": " + error.what());
  }
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
  for (const std::string_view entry : Split(list, '|')) servers.push_back(ServerFrom(std::string(entry)));
  return servers;
}

std::unique_ptr<clsQuery> Settings::MakeQuery() const {
  auto query = std::make_unique<clsQuery>();
  for (const auto& [name, value] : values_) {
    if (const VariableEntry* const variable = FindVariable(name)) variable->set(*query, value);
  }
  return query;
}

std::unique_ptr<clsQuery> Settings::Connect(std::string_view servers) const {
  auto query = MakeQuery();
  query->RemoteHosts(servers);
  if (!query->Init(false)) {
    throw CommandError("the component could not be initialised: give --log-dir and see the log there for the reason");
  }
  return query;
}

std::unique_ptr<clsQuery> Settings::Connect() const {
  Servers();  // what is malformed is told here; the component would only log it
  return Connect(Text(kHosts));
}

}  // namespace oxaqrycln::oxaqry
