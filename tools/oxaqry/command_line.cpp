#include "tools/oxaqry/command_line.h"

#include <algorithm>
#include <iostream>
#include <limits>
#include <memory>

#include "tools/oxaqry/archives/archive_commands.h"
#include "tools/oxaqry/cli/command_parser.h"
#include "tools/oxaqry/cli/interruption.h"
#include "tools/oxaqry/documents/document_command_line.h"
#include "tools/oxaqry/documents/search_command.h"
#include "tools/oxaqry/servers/server_commands.h"
#include "tools/oxaqry/session/methods_command.h"
#include "tools/oxaqry/session/session.h"
#include "tools/oxaqry/transfers/order_command_line.h"
#include "tools/oxaqry/transfers/order_commands.h"
#include "tools/oxaqry/transfers/transfer_command_line.h"
#include "tools/oxaqry/users/command_line.h"

namespace oxaqrycln::oxaqry {
namespace {

void AddListCommands(CommandParser& parser) {
  parser.AddQuery("live", "ask whether a query server answers", "Example:\n  oxaqry live --hosts localhost,2001", Live);
  parser.AddQuery("channels", "list the channels", "Example:\n  oxaqry channels --hosts localhost,2001 --json",
                  Channels);
  const auto all = std::make_shared<bool>(false);
  const auto extended = std::make_shared<bool>(false);
  CLI::App* const archives = parser.AddQuery(
      "archives", "list the archives",
      "Examples:\n  oxaqry archives --hosts localhost,2001\n  oxaqry archives --ext --hosts localhost,2001",
      [all, extended](const Settings& settings, const Output& output) {
        return *extended ? ArchivesByChannel(settings, output) : AllArchives(settings, output);
      });
  CLI::Option* const allFlag = archives->add_flag("--all", *all, "one list of all archives (the default)");
  archives->add_flag("--ext", *extended, "every channel with its archives and their comments")->excludes(allFlag);
  parser.AddQuery("servers", "check every query server of the list",
                  "Example:\n  oxaqry servers --hosts 'localhost,2001|localhost,2002' --timeout 5", Servers);
}

void AddArchiveCommands(CommandParser& parser) {
  const auto names = std::make_shared<ArchiveArguments>();
  AddArchiveArguments(*parser.AddQuery("formats", "list the query formats of an archive",
                                       "Example:\n  oxaqry formats Mail/Inbox --hosts localhost,2001",
                                       [names](const Settings& settings, const Output& output) {
                                         return Formats(settings, names->channel, names->archive, output);
                                       }),
                      *names);
  AddArchiveArguments(*parser.AddQuery("properties", "show what may be done in an archive",
                                       "Example:\n  oxaqry properties Mail/Inbox --hosts localhost,2001",
                                       [names](const Settings& settings, const Output& output) {
                                         return Properties(settings, names->channel, names->archive, output);
                                       }),
                      *names);
}

void AddSearchArguments(CLI::App& search, SearchRequest& request) {
  search.add_option("QUERY", request.query, "the query expression")->required()->type_name("");
  search.add_option("--max", request.maxLines, "largest number of hits to show (default 100)")
      ->check(CLI::Validator(CLI::Range(std::int32_t{0}, std::numeric_limits<std::int32_t>::max())).description(""))
      ->type_name("N");
  search.add_option("--query-max", request.maxHits, "largest number of hits the query may produce (default 1000)")
      ->check(CLI::Validator(CLI::Range(std::int32_t{0}, std::numeric_limits<std::int32_t>::max())).description(""))
      ->type_name("N");
  search.add_option("--format", request.format, "query format, as \"formats\" lists them")->type_name("F");
  search.add_option("--rights", request.rights, "folder rights expression that restricts the search")->type_name("R");
  search.add_option("--layout", request.layoutId, "id of the hit list layout")->type_name("ID");
  search.add_option("--layout-field", request.layoutFieldId, "field id of the hit list layout")->type_name("ID");
  search
      .add_option("--sort", request.sort,
                  "column to sort the hits by, its title or number (1 is the column after the version)")
      ->type_name("COLUMN[:desc]");
}

void AddSearch(CommandParser& parser) {
  const auto request = std::make_shared<SearchRequest>();
  CLI::App* const search = parser.AddQuery(
      "search", "run a query and show its hit list",
      "Examples:\n  oxaqry search invoice --hosts localhost,2001\n"
      "  oxaqry search '\"annual report\" NOT draft' --max 20 --format 'Full text' --hosts localhost,2001\n"
      "  oxaqry search invoice --sort Date:desc --hosts localhost,2001",
      [request](const Settings& settings, const Output& output) { return Search(settings, *request, output); });
  AddSearchArguments(*search, *request);
}

void AddPrintHits(CommandParser& parser) {
  const auto request = std::make_shared<PrintHitsRequest>();
  CLI::App* const print = parser.AddQuery(
      "print-hits", "run a query and have its hit list printed to a PDF file",
      "Example:\n  oxaqry print-hits invoice -o invoices.pdf --title 'All invoices' --blob-local /srv/blobs \\\n"
      "    --hosts localhost,2001",
      [request](const Settings& settings, const Output& output) { return PrintHits(settings, *request, output); });
  AddSearchArguments(*print, request->search);
  print->add_option("--title", request->title, "the title of each page (default: the query)")->type_name("T");
  AddFetchTarget(*print, request->target);
}

void AddOwnCommands(CommandParser& parser, const RunEnvironment& environment) {
  const auto text = std::make_shared<std::string>();
  CLI::App* const direct = parser.AddQuery(
      "direct", "send a complete command part and print the answer",
      "Example:\n  oxaqry direct '^GetArchiveProperties^,^Mail^,^Inbox^' --hosts localhost,2001",
      [text](const Settings& settings, const Output& output) { return Direct(settings, *text, output); });
  direct->add_option("TEXT", *text, "the command part, \"^Command^,^parameter^\"")->required()->type_name("");
  parser.AddQuery("write-test", "try whether the local blob directory can be written",
                  "Example:\n  oxaqry write-test --blob-local /srv/blobs", WriteTest);
  parser.AddPlain("session", "run calls given as JSON lines on standard input",
                  "Examples:\n  oxaqry session < calls.jsonl\n  echo '{\"call\":\"HelloWorld\"}' | oxaqry session",
                  [&in = environment.in](const Settings&, const Output& output) { return RunSession(in, output.out); });
  CLI::App* const methods = parser.AddPlain("methods", "list the component's public variables and methods",
                                            "Example:\n  oxaqry methods | less",
                                            [](const Settings&, const Output& output) { return Methods(output); });
  parser.AddJson(*methods, "print one JSON document");
}

void AddAllCommands(CommandParser& parser, const RunEnvironment& environment) {
  AddListCommands(parser);
  AddArchiveCommands(parser);
  AddSearch(parser);
  AddPrintHits(parser);
  AddDocumentCommands(parser);
  AddTransferCommands(parser);
  AddOrderCommands(parser);
  AddUserCommands(parser);
  AddOwnCommands(parser, environment);
}

void AddWords(const CLI::App& command, const std::string& name, std::vector<CommandWords>& words) {
  CommandWords entry{name, {}};
  for (const CLI::Option* const option : command.get_options()) {
    for (const std::string& each : option->get_lnames()) {
      if (each != "help") entry.options.push_back("--" + each);
    }
  }
  words.push_back(std::move(entry));
  for (const CLI::App* const next : command.get_subcommands([](const CLI::App*) { return true; })) {
    AddWords(*next, name + " " + next->get_name(), words);
  }
}

// The word that stands where a command or an option of the tool or of a group was expected; "" when none is wrong so.
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

}  // namespace

int RunCommandLine(std::vector<std::string> arguments, const RunEnvironment& environment) {
  CommandParser parser(environment);
  AddAllCommands(parser, environment);
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
    return 128 + interrupted.signal();  // as a shell tells of a program that a signal has ended
  } catch (const std::exception& error) {
    environment.out.flush();
    environment.err << "oxaqry: " << error.what() << '\n';
    return 1;
  }
}

std::vector<CommandWords> AllCommandWords() {
  const RunEnvironment nothing{std::cin, std::cout, std::cerr, [](const char*) -> const char* { return nullptr; }};
  CommandParser parser(nothing);
  AddAllCommands(parser, nothing);
  std::vector<CommandWords> words;
  for (const CLI::App* const command : parser.app().get_subcommands([](CLI::App*) { return true; })) {
    AddWords(*command, command->get_name(), words);
  }
  return words;
}

}  // namespace oxaqrycln::oxaqry
