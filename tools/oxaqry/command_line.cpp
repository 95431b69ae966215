#include "tools/oxaqry/command_line.h"

#include <algorithm>
#include <ostream>

#include "tools/oxaqry/cli/archive.h"
#include "tools/oxaqry/cli/command_families.h"
#include "tools/oxaqry/cli/errors.h"
#include "tools/oxaqry/cli/interruption.h"
#include "tools/oxaqry/cli/parse_failure.h"
#include "tools/oxaqry/cli/value_json.h"

namespace oxaqrycln::oxaqry {
namespace {

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

// As text, or as one line of JSON, which has the members "error" and "kind". Returns the exit status.
int ReportError(int status, Json error, bool isJson, std::ostream& err) {
  if (isJson) {
    error["status"] = status;
    err << error.dump(-1, ' ', false, Json::error_handler_t::replace) << '\n';
  } else {
    err << "oxaqry: " << error["error"].get<std::string>() << '\n';
    if (status == kWrongUsage) err << "Try \"oxaqry --help\" or \"oxaqry COMMAND --help\".\n";
  }
  return status;
}

int ReportUsage(const std::string& reason, bool isJson, std::ostream& err) {
  return ReportError(kWrongUsage, {{"error", reason}, {"kind", "usage"}}, isJson, err);
}

// The help of the command that the words name.
int ShowHelp(const CLI::App& tool, const std::vector<std::string>& names, const Output& output) {
  const CLI::App* command = &tool;
  std::string words;
  for (const std::string& name : names) {
    const auto known = CommandNames(*command);
    if (std::ranges::find(known, name) == known.end()) {
      throw UsageError(known.empty() ? "\"" + words + "\" has no commands" : UnknownCommandText(*command, words, name));
    }
    command = command->get_subcommand(name);
    words += (words.empty() ? "" : " ") + name;
  }
  const std::string name = words.empty() ? tool.get_name() : tool.get_name() + " " + words;
  output.out << command->get_formatter()->make_help(command, name, CLI::AppFormatMode::Normal);
  return 0;
}

void AddHelp(CommandParser& parser) {
  const auto names = std::make_shared<std::vector<std::string>>();
  const auto show = [&tool = parser.app(), names](const Settings&, const Output& output) {
    return ShowHelp(tool, *names, output);
  };
  parser
      .AddPlain("help", "show the help of oxaqry or of a command",
                "Examples:\n  oxaqry help search\n  oxaqry help user add", show)
      ->add_option("COMMAND", *names, "the command, with its group in front");
}

// The help shows an argument by its name alone, without the type of its value.
void HideTypesOfArguments(CLI::App& app) {
  for (CLI::Option* const option : app.get_options()) {
    if (option->get_positional()) option->type_name("");
  }
  for (CLI::App* const command : app.get_subcommands({})) HideTypesOfArguments(*command);
}

}  // namespace

void AddAllCommands(CommandParser& parser) {
  AddServerCommands(parser);
  AddArchiveCommands(parser);
  AddSearch(parser);
  AddPrintHits(parser);
  AddShow(parser);
  AddChangeCommands(parser);
  AddNoteCommands(parser);
  AddFetch(parser);
  AddTransferCommands(parser);
  AddOrderCommands(parser);
  AddUserCommands(parser);
  AddSessionCommands(parser);
  AddHelp(parser);
  HideTypesOfArguments(parser.app());
}

int RunCommandLine(std::vector<std::string> arguments, const RunEnvironment& environment) {
  CommandParser parser(environment);
  AddAllCommands(parser);
  const bool isJson = std::ranges::find(arguments, "--json") != arguments.end();
  std::ranges::reverse(arguments);  // the parser takes them from the back
  try {
    parser.app().parse(arguments);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {
      parser.app().exit(error, environment.out, environment.err);
      return environment.out.flush() ? 0 : 1;
    }
    return ReportUsage(ParseFailureText(parser.app(), error), isJson, environment.err);
  }
  try {
    const int status = parser.Run();
    environment.out.flush();
    if (!environment.out) throw CommandError("the output could not be written");
    return status;
  } catch (const UsageError& error) {
    return ReportUsage(error.what(), isJson, environment.err);
  } catch (const Interrupted& interrupted) {
    return 128 + interrupted.signal();  // as a shell reports a program that a signal has ended
  } catch (const client::Cancelled&) {
    return 128 + Interruption::Signal();
  } catch (const client::Error& error) {
    environment.out.flush();
    return ReportError(kFailed, FailureJson(error), isJson, environment.err);
  } catch (const std::exception& error) {
    environment.out.flush();
    return ReportError(kFailed, {{"error", error.what()}, {"kind", "failure"}}, isJson, environment.err);
  }
}

}  // namespace oxaqrycln::oxaqry
