#include "tools/oxaqry/cli/command_parser.h"

#include <istream>
#include <regex>

#include "component/version.h"
#include "tools/oxaqry/cli/errors.h"
#include "tools/oxaqry/cli/input.h"
#include "tools/oxaqry/cli/new_file.h"
#include "tools/oxaqry/cli/result.h"
#include "tools/oxaqry/cli/text.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

constexpr const char* kClosing =
    "Settings come from --config FILE, then from the environment (OXAQRY_REMOTE_HOSTS, OXAQRY_USER,\n"
    "OXAQRY_PASSWORD, ...), then from options; the later wins. The manual page oxaqry(1) lists them all.\n"
    "A document is named CHANNEL/ARCHIVE/DOCUMENT[/VERSION], the first four columns of a hit list.\n\n"
    "Examples:\n"
    "  oxaqry channels --hosts localhost,2001 --user webuser --password-file ~/.archive-password\n"
    "  oxaqry search 'invoice AND 2026' --max 20 --config archive.json\n"
    "  oxaqry show Mail/Inbox/1262 --query invoice --config archive.json\n"
    "  oxaqry COMMAND --help";

// Everybody on the machine can read options. Also finds a password inside a list of driver options.
std::string RefusePassword(const std::string& connectionString) {
  static const std::regex password(R"((pwd|password)\s*=\s*[^;\s])", std::regex::icase);
  if (!std::regex_search(connectionString, password)) return {};
  return "a password in an option can be read by everybody: give OXAQRY_DATABASE, or strDBConnect in --config";
}

// The component goes on without a log that it cannot write.
void WarnWithoutLog(const Settings& settings, const Output& output) {
  const std::string directory = ToUtf8(settings.Text("strDebugLogPath"));
  if (directory.empty()) return;
  try {
    const NewFile probe(std::filesystem::path(directory) / "log", true);
  } catch (const CommandError& error) {
    Warn(output, "no log is kept: " + std::string(error.what()));
  }
}

}  // namespace

const SettingEntry kDatabaseSetting{"strDBConnect", "OXAQRY_DATABASE", "--database", "STRING",
                                    "connection string of the web user database, without a password"};

CommandParser::CommandParser(RunEnvironment environment)
    : environment_(std::move(environment)), app_("Searches a document archive through its query servers.", "oxaqry") {
  app_.set_version_flag("--version", std::string("oxaqry ") + kVersionText);
  app_.allow_windows_style_options(false);  // a path may begin with "/", and options are the same on every system
  app_.require_subcommand(1);
  app_.footer(kClosing);
}

Output CommandParser::MakeOutput() const {
  const char* const noColor = environment_.environment("NO_COLOR");
  const bool wantsColor = noColor == nullptr || *noColor == '\0';
  const Terminals& terminals = environment_.terminals;
  return {environment_.out, json_, environment_.in, environment_.err, terminals, wantsColor && terminals.out, verbose_};
}

CLI::App* CommandParser::AddPlain(const char* name, const char* description, const char* examples, Command action) {
  CLI::App* const command = app_.add_subcommand(name, description);
  command->footer(examples);
  command->callback(
      [this, action = std::move(action)] { run_ = [this, action] { return action(Settings(), MakeOutput()); }; });
  return command;
}

CLI::App* CommandParser::AddQuery(CLI::App& parent, const char* name, const char* description, const char* examples,
                                  Command action) {
  CLI::App* const command = AddWithSettings(parent, name, description, examples, std::move(action));
  for (const SettingEntry& entry : SettingEntries()) AddSetting(*command, entry);
  CLI::Option* const file =
      command->add_option("--password-file", passwordPath_, "file whose first line is the archive account's password")
          ->type_name("FILE")
          ->group(kSettingsGroup);
  command->add_flag("--password-stdin", passwordFromInput_, "read that password from the first line of standard input")
      ->excludes(file)
      ->group(kSettingsGroup);
  command->add_flag("--verbose", verbose_, "show every attempt of every request on standard error")
      ->group(kSettingsGroup);
  return command;
}

CLI::App* CommandParser::AddDatabase(CLI::App& parent, const char* name, const char* description, const char* examples,
                                     Command action) {
  CLI::App* const command = AddWithSettings(parent, name, description, examples, std::move(action));
  AddSetting(*command, kDatabaseSetting);
  command->get_option(kDatabaseSetting.option)->check(CLI::Validator(RefusePassword, ""));
  for (const SettingEntry& entry : SettingEntries()) {
    const std::string_view option = entry.option;
    if (option == "--log-dir" || option == "--session") AddSetting(*command, entry);
  }
  return command;
}

CLI::App* CommandParser::AddWithSettings(CLI::App& parent, const char* name, const char* description,
                                         const char* examples, Command action) {
  CLI::App* const command = parent.add_subcommand(name, description);
  command->footer(examples);
  command->callback([this, command, action = std::move(action)] {
    run_ = [this, command, action] {
      const Settings settings = ReadSettings(*command);
      const Output output = MakeOutput();
      WarnWithoutLog(settings, output);
      return action(settings, output);
    };
  });
  AddJson(*command, "print one JSON document instead of a table");
  command->add_option("--config", configPath_, "JSON file of settings, by the names of the public variables")
      ->type_name("FILE")
      ->group(kSettingsGroup);
  return command;
}

void CommandParser::AddSetting(CLI::App& command, const SettingEntry& entry) {
  if (entry.option[0] == '\0') return;
  command.add_option(entry.option, options_[entry.variable], entry.meaning)
      ->type_name(entry.argument)
      ->group(kSettingsGroup);
}

CLI::App* CommandParser::AddGroup(const char* name, const char* description, const char* examples) {
  CLI::App* const group = app_.add_subcommand(name, description);
  group->footer(examples);
  group->require_subcommand(1);
  return group;
}

CLI::Option* CommandParser::AddJson(CLI::App& command, const char* description) {
  return command.add_flag("--json", json_, description);
}

Settings CommandParser::ReadSettings(const CLI::App& command) {
  Settings settings;
  const char* const configured = environment_.environment("OXAQRY_CONFIG");
  if (configPath_.empty() && configured != nullptr) configPath_ = configured;
  if (!configPath_.empty()) settings.ReadConfig(configPath_);
  settings.ReadEnvironment(environment_.environment);
  const auto set = [&](const SettingEntry& entry) {
    const CLI::Option* const option = entry.option[0] == '\0' ? nullptr : command.get_option_no_throw(entry.option);
    if (option == nullptr || option->count() == 0) return;
    try {
      settings.Set(entry.variable, options_[entry.variable], entry.option);
    } catch (const CommandError& error) {  // a wrong option is wrong usage
      throw UsageError(error.what());
    }
  };
  for (const SettingEntry& entry : SettingEntries()) set(entry);
  set(kDatabaseSetting);
  if (!passwordPath_.empty()) {
    settings.Set("strTELOPwd", ReadFirstLine(passwordPath_, "password file"), "--password-file");
  }
  if (passwordFromInput_) {
    std::string password;
    if (!std::getline(environment_.in, password)) throw CommandError("standard input holds no password");
    if (password.ends_with('\r')) password.pop_back();
    settings.Set("strTELOPwd", password, "--password-stdin");
  }
  return settings;
}

// Without leading zeros, as the parser takes "010" for 8.
CLI::Validator NumberUpTo(std::int32_t largest) {
  return {[largest](const std::string& text) {
            const auto number = ParseNumber(text);
            if (number && *number <= largest && std::to_string(*number) == text) return std::string();
            return "\"" + text + "\" is no number from 0 to " + std::to_string(largest);
          },
          ""};
}

void AddArchiveArguments(CLI::App& command, ArchiveArguments& arguments) {
  command.add_option("CHANNEL", arguments.channel, "the channel; CHANNEL/ARCHIVE names the archive too")->required();
  CLI::Option* const archive = command.add_option("ARCHIVE", arguments.archive, "the archive in that channel");
  command.parse_complete_callback([archive, &arguments] {
    if (archive->count() > 0) return;
    auto parts = SplitName(arguments.channel);
    if (parts.size() != 2 || parts[0].empty() || parts[1].empty()) {
      throw CLI::ValidationError("ARCHIVE", "name an archive as CHANNEL/ARCHIVE or CHANNEL ARCHIVE");
    }
    arguments.channel = std::move(parts[0]);
    arguments.archive = std::move(parts[1]);
  });
}

void AddDocumentArgument(CLI::App& command, DocumentName& document) {
  const auto assign = [&document](const std::string& text) {
    const auto name = ParseDocumentName(text);
    if (!name) {
      throw CLI::ValidationError("DOC", "name a document as CHANNEL/ARCHIVE/DOCUMENT[/VERSION], not \"" + text + "\"");
    }
    document = *name;
  };
  command.add_option_function<std::string>("DOC", assign, "the document, CHANNEL/ARCHIVE/DOCUMENT[/VERSION]")
      ->required();
}

}  // namespace oxaqrycln::oxaqry
