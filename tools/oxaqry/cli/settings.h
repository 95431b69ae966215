// settings.h - what a command needs to reach the query servers, from a configuration file, the environment and options.
// Whatever is read later wins: file, then environment, then options.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_SETTINGS_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_SETTINGS_H_

#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "component/clsQuery.h"
#include "tools/oxaqry/cli/errors.h"

namespace oxaqrycln::oxaqry {

// One setting and the places it may come from.
struct SettingEntry {
  const char* variable;     // the public variable or property, and the name in the configuration file
  const char* environment;  // the environment variable
  const char* option;       // "--hosts LIST", or "" for what must not be seen in a list of processes
  const char* meaning;
};
std::span<const SettingEntry> SettingEntries();

// One entry of the list of query servers.
struct QueryServer {
  std::string host;
  std::string port;
  std::string entry;  // as it stands in the list
};

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

  // The query servers; raises CommandError when none is set or an entry is malformed.
  std::vector<QueryServer> Servers() const;

  // A new instance with every setting but the query servers.
  std::unique_ptr<clsQuery> MakeQuery() const;
  // The same, with these query servers and initialised without the database. Raises CommandError.
  std::unique_ptr<clsQuery> Connect(std::string_view servers) const;
  std::unique_ptr<clsQuery> Connect() const;

 private:
  std::map<std::string, Variant, std::less<>> values_;
};

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_SETTINGS_H_
