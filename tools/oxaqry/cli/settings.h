// settings.h - the settings of a command, from a configuration file, the environment and options. They are read in this
// order, and a later value replaces an earlier one.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_SETTINGS_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_SETTINGS_H_

#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "client/settings.h"
#include "component/clsQuery.h"
#include "tools/oxaqry/cli/errors.h"

namespace oxaqrycln::oxaqry {

// One setting and the places it may come from.
struct SettingEntry {
  const char* variable;     // the public variable or property, and the name in the configuration file
  const char* environment;  // the environment variable
  const char* option;       // "--hosts", or "" for one without an option
  const char* argument;     // what the option takes, "LIST"
  const char* meaning;
};
std::span<const SettingEntry> SettingEntries();

class Settings {
 public:
  using Environment = std::function<const char*(const char*)>;

  // Starts with the defaults: a time-out of 30 seconds, the session "oxaqry".
  Settings();

  // All raise CommandError, which names the source of the value.
  void ReadConfig(const std::string& path);
  void ReadEnvironment(const Environment& environment);
  // From UTF-8 text.
  void Set(std::string_view variable, std::string_view value, const std::string& source);

  // A setting's value, Empty when it was never given.
  const Variant& Value(std::string_view variable) const;
  // A text setting; "" when it was never given.
  std::string Text(std::string_view variable) const;

  // Raises CommandError when no query servers are set, an entry is malformed, or a user is set without a password.
  void RequireServers() const;
  // Raises CommandError when the local blob directory is not set or no directory.
  void RequireBlobDirectory() const;

  // As the client layer takes them, without the database, and with nothing else.
  client::Settings ForArchive() const;
  client::Settings ForDatabase() const;
  // A new instance with every setting but the query servers.
  std::unique_ptr<clsQuery> MakeQuery() const;

 private:
  std::map<std::string, Variant, std::less<>> values_;
};

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_SETTINGS_H_
