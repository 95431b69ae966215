#include "tools/oxaqry/command_line.h"

#include <algorithm>
#include <ostream>

#include "tools/oxaqry/cli/command_families.h"
#include "tools/oxaqry/cli/errors.h"
#include "tools/oxaqry/cli/interruption.h"

namespace oxaqrycln::oxaqry {
namespace {

// The unknown word where a command, or an option of the tool or of a group, was expected; "" for another error.
std::string UnknownWord(const CLI::App& app, const std::string& first) {
  const auto parsed = app.get_subcommands();
  if (parsed.empty()) return first;
  const CLI::App& command = *parsed.front();
  const bool isGroup = !command.get_subcommands([](const CLI::App*) { return true; }).empty();
  const std::vector<std::string> rest = command.remaining();
  if (!isGroup || !command.get_subcommands().empty() || rest.empty()) return "";
  return rest.front().starts_with('-') ? rest.front() : command.get_name() + " " + rest.front();
}

int WrongUsage(const std::string& reason, std::ostream& err) {
  err << "oxaqry: " << reason << "\nTry \"oxaqry --help\" or \"oxaqry COMMAND --help\".\n";
  return 2;
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
  HideTypesOfArguments(parser.app());
}

int RunCommandLine(std::vector<std::string> arguments, const RunEnvironment& environment) {
  CommandParser parser(environment);
  AddAllCommands(parser);
  const std::string first = arguments.empty() ? "" : arguments.front();
  std::ranges::reverse(arguments);  // the parser takes them from the back
  try {
    parser.app().parse(arguments);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {
      parser.app().exit(error, environment.out, environment.err);
      return environment.out.flush() ? 0 : 1;
    }
    const std::string unknown = UnknownWord(parser.app(), first);
    const char* const what = unknown.starts_with('-') ? "option" : "command";
    const std::string reason = unknown.empty() ? error.what() : "unknown " + std::string(what) + " \"" + unknown + "\"";
    return WrongUsage(reason, environment.err);
  }
  try {
    const int status = parser.Run();
    environment.out.flush();
    if (!environment.out) throw CommandError("the output could not be written");
    return status;
  } catch (const UsageError& error) {
    return WrongUsage(error.what(), environment.err);
  } catch (const Interrupted& interrupted) {
    return 128 + interrupted.signal();  // as a shell reports a program that a signal has ended
  } catch (const std::exception& error) {
    environment.out.flush();
    environment.err << "oxaqry: " << error.what() << '\n';
    return 1;
  }
}

}  // namespace oxaqrycln::oxaqry
