// command_parser.h - what all commands share on the command line: their settings, "--json", their help.
// The families of commands add themselves to it; one per run.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_COMMAND_PARSER_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_COMMAND_PARSER_H_

#include <CLI/CLI.hpp>
#include <functional>
#include <map>
#include <string>

#include "tools/oxaqry/cli/document_name.h"
#include "tools/oxaqry/cli/output.h"

namespace oxaqrycln::oxaqry {

class CommandParser {
 public:
  using Command = std::function<int(const Settings&, const Output&)>;

  explicit CommandParser(RunEnvironment environment);
  CommandParser(const CommandParser&) = delete;
  CommandParser& operator=(const CommandParser&) = delete;

  CLI::App& app() { return app_; }
  // Runs the command that was parsed.
  int Run() { return run_(); }

  // A command without settings; examples are its help's last lines.
  CLI::App* AddPlain(const char* name, const char* description, const char* examples, Command action);
  // A command that talks to query servers.
  CLI::App* AddQuery(const char* name, const char* description, const char* examples, Command action) {
    return AddQuery(app_, name, description, examples, std::move(action));
  }
  CLI::App* AddQuery(CLI::App& parent, const char* name, const char* description, const char* examples, Command action);
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
  void AddSettings(CLI::App& command);
  void AddDatabaseSettings(CLI::App& command);
  Settings ReadSettings(const CLI::App& command);
  void SetFromOption(Settings& settings, const SettingEntry& entry);
  Output MakeOutput() const;

  RunEnvironment environment_;
  CLI::App app_;
  std::function<int()> run_;
  std::map<std::string, std::string> options_;  // by public variable
  std::string configPath_;
  std::string passwordPath_;
  bool passwordFromInput_ = false;
  bool json_ = false;
};

// Where an archive is: "CHANNEL ARCHIVE", or "CHANNEL/ARCHIVE" in one word. Added to a command as its arguments.
struct ArchiveArguments {
  std::string channel;
  std::string archive;
};
void AddArchiveArguments(CLI::App& command, ArchiveArguments& arguments);
// The argument "CHANNEL/ARCHIVE/DOCUMENT[/VERSION]".
void AddDocumentArgument(CLI::App& command, DocumentName& document);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_COMMAND_PARSER_H_
