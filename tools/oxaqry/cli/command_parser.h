// command_parser.h - the command line: what all commands share, their settings, "--json" and help.
// The families of commands add themselves to it. One per run.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_COMMAND_PARSER_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_COMMAND_PARSER_H_

#include <CLI/CLI.hpp>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "tools/oxaqry/cli/document_name.h"
#include "tools/oxaqry/cli/run_environment.h"
#include "tools/oxaqry/cli/settings.h"

namespace oxaqrycln::oxaqry {

class CommandParser {
 public:
  using Command = std::function<int(const Settings&, const Output&)>;
  template <typename Request>
  using CommandWith = int (*)(const Settings&, const Request&, const Output&);

  explicit CommandParser(RunEnvironment environment);
  CommandParser(const CommandParser&) = delete;
  CommandParser& operator=(const CommandParser&) = delete;

  CLI::App& app() { return app_; }
  // Runs the command that was parsed.
  int Run() { return run_(); }

  // A command without settings; examples are the last lines of its help.
  CLI::App* AddPlain(const char* name, const char* description, const char* examples, Command action);
  // A command that talks to query servers.
  CLI::App* AddQuery(CLI::App& parent, const char* name, const char* description, const char* examples, Command action);
  // The same with arguments of its own: options are added to the first result and write to the second.
  template <typename Request>
  std::pair<CLI::App*, Request*> AddQuery(CLI::App& parent, const char* name, const char* description,
                                          const char* examples, CommandWith<Request> run) {
    const auto request = std::make_shared<Request>();
    const auto action = [request, run](const Settings& settings, const Output& output) {
      return run(settings, *request, output);
    };
    return {AddQuery(parent, name, description, examples, Command(action)), request.get()};
  }
  // A command that works on the web user database.
  CLI::App* AddDatabase(CLI::App& parent, const char* name, const char* description, const char* examples,
                        Command action);
  // A command that is followed by another one.
  CLI::App* AddGroup(const char* name, const char* description, const char* examples);
  // The flag "--json" of a command without settings.
  CLI::Option* AddJson(CLI::App& command, const char* description);

 private:
  CLI::App* AddWithSettings(CLI::App& parent, const char* name, const char* description, const char* examples,
                            Command action);
  void AddSetting(CLI::App& command, const SettingEntry& entry);
  Settings ReadSettings(const CLI::App& command);
  Output MakeOutput() const;

  RunEnvironment environment_;
  CLI::App app_;
  std::function<int()> run_;
  std::map<std::string, std::string> options_;  // by public variable
  std::string configPath_;
  std::string passwordPath_;
  bool passwordFromInput_ = false;
  bool json_ = false;
  bool verbose_ = false;
};

// The help group of the options that all commands share.
inline constexpr const char* kSettingsGroup = "Settings";
// The option for the connection string of the web user database.
extern const SettingEntry kDatabaseSetting;

// Where an archive is: "CHANNEL ARCHIVE", or "CHANNEL/ARCHIVE" in one word. Added to a command as its arguments.
struct ArchiveArguments {
  std::string channel;
  std::string archive;
};
void AddArchiveArguments(CLI::App& command, ArchiveArguments& arguments);
// The argument "CHANNEL/ARCHIVE/DOCUMENT[/VERSION]".
void AddDocumentArgument(CLI::App& command, DocumentName& document);
// A check that a text is a whole number in decimal digits from 0 to the largest one of the type.
CLI::Validator NumberUpTo(std::int32_t largest);
template <typename Number>
CLI::Validator FromZero() {
  return NumberUpTo(std::numeric_limits<Number>::max());
}

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_COMMAND_PARSER_H_
