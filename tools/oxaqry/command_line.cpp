#include "tools/oxaqry/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <functional>
#include <map>

#include "component/version.h"
#include "tools/oxaqry/commands.h"
#include "tools/oxaqry/methods_command.h"
#include "tools/oxaqry/session.h"
#include "tools/oxaqry/value_json.h"

namespace oxaqrycln {
namespace {

// The arguments' grammar, and where it puts what it reads.
class CommandLine {
 public:
  explicit CommandLine(const Surroundings& surroundings);

  CLI::App& app() { return app_; }
  int Run() { return run_(); }

 private:
  using Command = std::function<int(const Settings&, const Output&)>;

  CLI::App* AddPlain(const char* name, const char* description, const char* footer);
  CLI::App* AddQuery(const char* name, const char* description, const char* examples, Command command);
  void AddSettings(CLI::App& command);
  void AddOwnCommands();
  void AddListCommands();
  void AddArchiveCommands();
  void AddSearch();
  Settings ReadSettings();

  Surroundings surroundings_;
  CLI::App app_{"Searches a document archive through its query servers."};
  std::function<int()> run_;
  std::map<std::string, std::string> options_;  // by public variable
  std::string configPath_;
  std::string passwordPath_;
  bool passwordFromInput_ = false;
  bool json_ = false;
  bool all_ = false;
  bool extended_ = false;
  bool markdown_ = false;
  std::string text_;
  std::string channel_;
  std::string archive_;
  SearchRequest search_;
};

constexpr const char* kClosing =
    "Settings come from --config FILE, then from the environment (OXAQRY_REMOTE_HOSTS, OXAQRY_USER,\n"
    "OXAQRY_PASSWORD, ...), then from options; the later wins. The manual page oxaqry(1) lists them all.\n\n"
    "Examples:\n"
    "  oxaqry channels --hosts localhost,2001 --user webuser --password-file ~/.archive-password\n"
    "  oxaqry search 'invoice AND 2026' --max 20 --config archive.json\n"
    "  oxaqry COMMAND --help";

CommandLine::CommandLine(const Surroundings& surroundings) : surroundings_(surroundings) {
  app_.name("oxaqry");
  app_.set_version_flag("--version", std::string("oxaqry ") + kVersionText);
  app_.require_subcommand(1);
  app_.footer(kClosing);
  AddListCommands();
  AddArchiveCommands();
  AddSearch();
  AddOwnCommands();
}

CLI::App* CommandLine::AddPlain(const char* name, const char* description, const char* footer) {
  CLI::App* const command = app_.add_subcommand(name, description);
  command->footer(footer);
  return command;
}

CLI::App* CommandLine::AddQuery(const char* name, const char* description, const char* examples, Command action) {
  CLI::App* const command = AddPlain(name, description, examples);
  AddSettings(*command);
  command->callback([this, action = std::move(action)] {
    run_ = [this, action] { return action(ReadSettings(), Output{surroundings_.out, json_}); };
  });
  return command;
}

void CommandLine::AddSettings(CLI::App& command) {
  constexpr const char* kGroup = "Settings";
  command.add_flag("--json", json_, "print one JSON document instead of a table");
  command.add_option("--config", configPath_, "JSON file of settings, by the names of the public variables")
      ->type_name("FILE")
      ->group(kGroup);
  for (const SettingEntry& entry : SettingEntries()) {
    if (entry.option[0] == '\0') continue;
    command.add_option(entry.option, options_[entry.variable], entry.meaning)->type_name("VALUE")->group(kGroup);
  }
  CLI::Option* const file =
      command.add_option("--password-file", passwordPath_, "file whose first line is the archive account's password")
          ->type_name("FILE")
          ->group(kGroup);
  command.add_flag("--password-stdin", passwordFromInput_, "read that password from the first line of standard input")
      ->excludes(file)
      ->group(kGroup);
}

void CommandLine::AddListCommands() {
  AddQuery("live", "ask whether a query server answers", "Example:\n  oxaqry live --hosts localhost,2001", Live);
  AddQuery("channels", "list the channels", "Example:\n  oxaqry channels --hosts localhost,2001 --json", Channels);
  CLI::App* const archives =
      AddQuery("archives", "list the archives",
               "Examples:\n  oxaqry archives --hosts localhost,2001\n  oxaqry archives --ext --hosts localhost,2001",
               [this](const Settings& settings, const Output& output) {
                 return extended_ ? ArchivesByChannel(settings, output) : AllArchives(settings, output);
               });
  CLI::Option* const all = archives->add_flag("--all", all_, "one list of all archives (the default)");
  archives->add_flag("--ext", extended_, "every channel with its archives and their comments")->excludes(all);
  AddQuery("servers", "check every query server of the list",
           "Example:\n  oxaqry servers --hosts 'localhost,2001|localhost,2002' --timeout 5", Servers);
}

void CommandLine::AddArchiveCommands() {
  const auto addNames = [this](CLI::App* command) {
    command->add_option("CHANNEL", channel_, "the channel")->required()->type_name("");
    command->add_option("ARCHIVE", archive_, "the archive in that channel")->required()->type_name("");
  };
  addNames(AddQuery("formats", "list the query formats of an archive",
                    "Example:\n  oxaqry formats Mail Inbox --hosts localhost,2001",
                    [this](const Settings& settings, const Output& output) {
                      return Formats(settings, channel_, archive_, output);
                    }));
  addNames(AddQuery("properties", "show what may be done in an archive",
                    "Example:\n  oxaqry properties Mail Inbox --hosts localhost,2001",
                    [this](const Settings& settings, const Output& output) {
                      return Properties(settings, channel_, archive_, output);
                    }));
}

void CommandLine::AddSearch() {
  CLI::App* const search =
      AddQuery("search", "run a query and show its hit list",
               "Examples:\n  oxaqry search invoice --hosts localhost,2001\n"
               "  oxaqry search '\"annual report\" NOT draft' --max 20 --format 'Full text' --hosts localhost,2001",
               [this](const Settings& settings, const Output& output) { return Search(settings, search_, output); });
  search->add_option("QUERY", search_.query, "the query expression")->required()->type_name("");
  search->add_option("--max", search_.maxLines, "largest number of hits to show (default 100)")
      ->check(CLI::Validator(CLI::NonNegativeNumber).description(""))
      ->type_name("N");
  search->add_option("--query-max", search_.maxHits, "largest number of hits the query may produce (default 1000)")
      ->check(CLI::Validator(CLI::NonNegativeNumber).description(""))
      ->type_name("N");
  search->add_option("--format", search_.format, "query format, as \"formats\" lists them")->type_name("F");
  search->add_option("--rights", search_.rights, "folder rights expression that restricts the search")->type_name("R");
  search->add_option("--layout", search_.layoutId, "id of the hit list layout")->type_name("ID");
  search->add_option("--layout-field", search_.layoutFieldId, "field id of the hit list layout")->type_name("ID");
}

void CommandLine::AddOwnCommands() {
  CLI::App* const direct =
      AddQuery("direct", "send a complete command part and print the answer",
               "Example:\n  oxaqry direct '^GetArchiveProperties^,^Mail^,^Inbox^' --hosts localhost,2001",
               [this](const Settings& settings, const Output& output) { return Direct(settings, text_, output); });
  direct->add_option("TEXT", text_, "the command part, \"^Command^,^parameter^\"")->required()->type_name("");
  AddQuery("write-test", "try whether the local blob directory can be written",
           "Example:\n  oxaqry write-test --blob-local /srv/blobs", WriteTest);
  AddPlain("session", "run calls given as JSON lines on standard input",
           "Examples:\n  oxaqry session < calls.jsonl\n  echo '{\"call\":\"HelloWorld\"}' | oxaqry session")
      ->callback([this] { run_ = [this] { return RunSession(surroundings_.in, surroundings_.out); }; });
  CLI::App* const methods = AddPlain("methods", "list the component's public variables and methods",
                                     "Example:\n  oxaqry methods --markdown > docs/methods.md");
  CLI::Option* const json = methods->add_flag("--json", json_, "print one JSON document");
  methods->add_flag("--markdown", markdown_, "print the method reference in Markdown")->excludes(json);
  methods->callback([this] { run_ = [this] { return Methods(markdown_, {surroundings_.out, json_}); }; });
}

Settings CommandLine::ReadSettings() {
  Settings settings;
  const char* const configured = surroundings_.environment("OXAQRY_CONFIG");
  if (configPath_.empty() && configured != nullptr) configPath_ = configured;
  if (!configPath_.empty()) settings.ReadConfig(configPath_);
  settings.ReadEnvironment(surroundings_.environment);
  for (const CLI::App* const command : app_.get_subcommands()) {
    for (const SettingEntry& entry : SettingEntries()) {
      const bool isOption = entry.option[0] != '\0';
      if (isOption && command->count(entry.option) > 0) {
        settings.Set(entry.variable, options_[entry.variable], entry.option);
      }
    }
  }
  if (!passwordPath_.empty()) {
    settings.Set("strTELOPwd", ReadFirstLine(passwordPath_, "password file"), "--password-file");
  }
  if (passwordFromInput_) {
    std::string password;
    std::getline(surroundings_.in, password);
    if (password.ends_with('\r')) password.pop_back();
    settings.Set("strTELOPwd", password, "--password-stdin");
  }
  return settings;
}

}  // namespace

int RunCommandLine(std::vector<std::string> arguments, const Surroundings& surroundings) {
  CommandLine commandLine(surroundings);
  const std::string first = arguments.empty() ? "" : arguments.front();
  std::ranges::reverse(arguments);  // the parser takes them from the back
  try {
    commandLine.app().parse(arguments);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return commandLine.app().exit(error, surroundings.out, surroundings.err);
    const bool isUnknownCommand = commandLine.app().get_subcommands().empty() && !first.empty() && first[0] != '-';
    const std::string reason = isUnknownCommand ? "unknown command \"" + first + "\"" : error.what();
    surroundings.err << "oxaqry: " << reason << "\nTry \"oxaqry --help\" or \"oxaqry COMMAND --help\".\n";
    return 2;
  }
  try {
    const int status = commandLine.Run();
    surroundings.out.flush();
    if (!surroundings.out) throw CommandError("the output could not be written");
    return status;
  } catch (const std::exception& error) {
    surroundings.out.flush();
    surroundings.err << "oxaqry: " << error.what() << '\n';
    return 1;
  }
}

std::vector<CommandWords> AllCommandWords() {
  CommandLine commandLine({std::cin, std::cout, std::cerr, [](const char*) -> const char* { return nullptr; }});
  std::vector<CommandWords> words;
  for (const CLI::App* const command : commandLine.app().get_subcommands([](CLI::App*) { return true; })) {
    CommandWords entry{command->get_name(), {}};
    for (const CLI::Option* const option : command->get_options()) {
      for (const std::string& name : option->get_lnames()) {
        if (name != "help") entry.options.push_back("--" + name);
      }
    }
    words.push_back(std::move(entry));
  }
  return words;
}

}  // namespace oxaqrycln
