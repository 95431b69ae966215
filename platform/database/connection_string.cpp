#include "platform/database/connection_string.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <cstdint>

#include "values/code_page.h"
#include "values/errors.h"
#include "values/text_parts.h"

namespace oxaqrycln {
namespace {

constexpr std::int32_t kProviderNotFound = 3706;

constexpr std::string_view kBlanks = " \t\r\n";

[[noreturn]] void Refuse(const char* why) { throw RuntimeError(error::kInvalidProcedureCall, why); }

// Removes a value and the ";" after it from the front of text; a doubled closing quote is one quote of the value.
std::string TakeValue(std::string_view& text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  const char opening = first == std::string_view::npos ? ';' : text[first];
  if (opening != '{' && opening != '"') {
    const std::string_view value = text.substr(0, text.find(';'));
    text.remove_prefix(std::min(text.size(), value.size() + 1));
    return std::string(Trimmed(value, kBlanks));
  }
  const char closing = opening == '{' ? '}' : '"';
  std::string value;
  for (std::size_t i = first + 1; i < text.size(); ++i) {
    if (text[i] != closing) {
      value += text[i];
    } else if (i + 1 < text.size() && text[i + 1] == closing) {
      value += text[i++];
    } else {
      const std::size_t end = text.find(';', i);
      text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
      return value;
    }
  }
  Refuse("A quoted value of the connection string has no end");
}

// A value as an ODBC connection string has it. The driver's name, passwords and user names are always in braces, since
// a driver may decode other values; a file name only where it must, since not every driver removes the braces.
std::string Quoted(const std::string& odbcName, const std::string& value) {
  const bool wantsBraces = odbcName == "PWD" || odbcName == "UID" || UpperCase(odbcName) == "DRIVER";
  const bool isPlain = value.find_first_of(";{}") == std::string::npos && !wantsBraces;
  if (isPlain || value.empty()) return value;
  std::string quoted = "{";
  for (const char each : value) quoted += each == '}' ? "}}" : std::string(1, each);
  return quoted + "}";
}

// The passwords among the options of libpq, "name=value name='value' ...". A word that is no option may be a part of
// one.
void AddLibpqPasswords(std::string_view options, std::vector<std::string>& passwords) {
  while (!(options = Trimmed(options, kBlanks)).empty()) {
    const std::size_t end = options.find_first_of("= \t\r\n");
    const std::string name = UpperCase(options.substr(0, end));
    const std::size_t equals = options.find_first_not_of(kBlanks, end);
    if (equals == std::string_view::npos || options[equals] != '=') {
      passwords.emplace_back(options.substr(0, end));
      options.remove_prefix(std::min(options.size(), name.size()));
      continue;
    }
    options = Trimmed(options.substr(equals + 1), kBlanks);
    std::string value;
    const bool isQuoted = options.starts_with('\'');
    if (isQuoted) options.remove_prefix(1);
    const std::string_view ends = isQuoted ? "'" : kBlanks;
    for (; !options.empty() && ends.find(options[0]) == std::string_view::npos; options.remove_prefix(1)) {
      if (options[0] == '\\' && options.size() > 1) options.remove_prefix(1);
      value += options[0];
    }
    if (isQuoted && !options.empty()) options.remove_prefix(1);
    if (name == "PASSWORD" || name == "SSLPASSWORD") passwords.push_back(value);
  }
}

bool IsWordCharacter(char each) noexcept {
  const auto byte = static_cast<unsigned char>(each);
  return std::isalnum(byte) != 0 || byte >= 0x80;
}

// What the attributes of OLE DB are called in ODBC; "" for those that have no counterpart.
std::string OdbcName(const std::string& name, bool isServer) {
  struct Names {
    std::string_view oleDb;
    std::string_view source;
    std::string_view server;
  };
  static constexpr std::array<Names, 10> kNames = {{{"PROVIDER", "", ""},
                                                    {"DATA SOURCE", "DSN", "SERVER"},
                                                    {"SERVER", "SERVER", "SERVER"},
                                                    {"INITIAL CATALOG", "DATABASE", "DATABASE"},
                                                    {"USER ID", "UID", "UID"},
                                                    {"UID", "UID", "UID"},
                                                    {"PASSWORD", "PWD", "PWD"},
                                                    {"INTEGRATED SECURITY", "", "Trusted_Connection"},
                                                    {"PERSIST SECURITY INFO", "", ""},
                                                    {"EXTENDED PROPERTIES", "", ""}}};
  const std::string upper = UpperCase(name);
  for (const Names& each : kNames) {
    if (each.oleDb == upper) return std::string(isServer ? each.server : each.source);
  }
  return name;
}

}  // namespace

std::vector<std::pair<std::string, std::string>> ConnectionAttributes(std::string_view text) {
  std::vector<std::pair<std::string, std::string>> attributes;
  while (!Trimmed(text, kBlanks).empty()) {
    const std::size_t end = text.find_first_of("=;");
    const std::string name(Trimmed(text.substr(0, end), kBlanks));
    if (end == std::string_view::npos || text[end] == ';') {
      if (!name.empty()) Refuse("An attribute of the connection string has no \"=\"");
      text.remove_prefix(end + 1);
      continue;
    }
    if (name.empty()) Refuse("An attribute of the connection string has no name");
    text.remove_prefix(end + 1);
    attributes.emplace_back(name, TakeValue(text));
  }
  return attributes;
}

std::string OdbcConnectionString(std::string_view text) {
  const auto attributes = ConnectionAttributes(text);
  std::string provider;
  bool hasDriver = false;
  for (const auto& [name, value] : attributes) {
    if (UpperCase(name) == "PROVIDER") provider = UpperCase(value);
    if (UpperCase(name) == "DRIVER") hasDriver = true;
  }
  if (provider.empty()) return std::string(text);
  const bool isServer = provider.starts_with("SQLOLEDB") || provider.starts_with("MSOLEDBSQL");
  if (!isServer && !provider.starts_with("MSDASQL")) {
    throw RuntimeError(kProviderNotFound, "The provider \"" + provider +
                                              "\" is not supported; give an ODBC connection string (Driver={...};...), "
                                              "or the provider MSDASQL or SQLOLEDB");
  }
  std::string odbc = isServer && !hasDriver ? "Driver={SQL Server};" : "";
  for (const auto& [name, value] : attributes) {
    if (UpperCase(name) == "EXTENDED PROPERTIES") {
      odbc += value + ";";
      continue;
    }
    const std::string odbcName = OdbcName(name, isServer);
    if (odbcName.empty()) continue;
    odbc += odbcName + "=" + (odbcName == "Trusted_Connection" ? "Yes" : Quoted(odbcName, value)) + ";";
  }
  return odbc;
}

std::vector<std::string> ConnectionPasswords(std::string_view text) {
  std::vector<std::string> passwords;
  for (const auto& [name, value] : ConnectionAttributes(text)) {
    const std::string upper = UpperCase(name);
    if (upper == "PWD" || upper == "PASSWORD") passwords.push_back(value);
    if (upper == "PQOPT") AddLibpqPasswords(value, passwords);
    if (upper != "EXTENDED PROPERTIES") continue;
    for (std::string& each : ConnectionPasswords(value)) passwords.push_back(std::move(each));
  }
  std::erase(passwords, "");
  return passwords;
}

std::string WithoutPasswords(std::string_view text, std::string_view connectionString) {
  // A short password also occurs inside ordinary words, where it is not masked.
  constexpr std::size_t kShort = 4;
  std::string clean(text);
  for (const std::string& password : ConnectionPasswords(connectionString)) {
    for (std::size_t at = clean.find(password); at != std::string::npos; at = clean.find(password, at)) {
      const bool isInWord = (at > 0 && IsWordCharacter(clean[at - 1])) ||
                            (at + password.size() < clean.size() && IsWordCharacter(clean[at + password.size()]));
      if (password.size() < kShort && isInWord) {
        ++at;
        continue;
      }
      clean.replace(at, password.size(), "***");
      at += 3;
    }
  }
  return clean;
}

}  // namespace oxaqrycln
