// commands.h - what the commands on the web user database share: how one is added to the command line and how it
// prints its result. Texts in requests are UTF-8.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_USERS_COMMANDS_H_
#define OXAQRYCLN_TOOLS_OXAQRY_USERS_COMMANDS_H_

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/oxaqry/cli/command_parser.h"
#include "tools/oxaqry/cli/result.h"
#include "tools/oxaqry/users/database.h"

namespace oxaqrycln::oxaqry {

// Each adds the commands of one source. The parent is "user", or the tool itself for "outline".
void AddInit(CommandParser& parser, CLI::App& parent);
void AddImport(CommandParser& parser, CLI::App& parent);
void AddAccountCommands(CommandParser& parser, CLI::App& parent);
void AddMaintenanceCommands(CommandParser& parser, CLI::App& parent);
void AddExport(CommandParser& parser, CLI::App& parent);
void AddListCommands(CommandParser& parser, CLI::App& parent);
void AddDefinitionCommands(CommandParser& parser, CLI::App& parent);
void AddGrantCommands(CommandParser& parser, CLI::App& parent);
void AddExplain(CommandParser& parser, CLI::App& parent);
void AddOutline(CommandParser& parser, CLI::App& parent);

// An ID as a number, or as text when it is none.
Json JsonId(const std::string& id);

// A command on a database that has its tables. addOptions fills the Request that run gets; run returns the exit status
// and raises CommandError, UsageError or ValueError.
template <typename Request, typename AddOptions>
void AddCommand(CommandParser& parser, CLI::App& parent, const char* name, const char* description,
                const char* examples, int (*run)(UserDatabase&, const Request&, const Output&), AddOptions addOptions) {
  const auto request = std::make_shared<Request>();
  const auto action = [request, run](const Settings& settings, const Output& output) {
    UserDatabase database(settings);
    database.RequireTables();
    return run(database, *request, output);
  };
  addOptions(*parser.AddDatabase(parent, name, description, examples, action), *request);
}

// The argument NAME, and the option that selects one of several users of that name.
void AddUserName(CLI::App& command, UserName& user);
// Makes the parser refuse the command unless at least one and at most that number of the options are given.
void RequireOptions(CLI::App& command, std::vector<const CLI::Option*> options, std::size_t most, const char* message);

// Accepts an option's value when it is a whole number.
CLI::Validator WholeNumber();

// {"userId":ID,"name":NAME}
Json JsonOf(const WebUser& user);

// By the ID in one column of the memberships, "UserID" or "GroupID": the names of the users whose IDs are in the other
// column.
std::map<std::int32_t, Json> LinkedNames(UserDatabase& database, const std::string& from, const std::string& to);

// A column of a table: its title and the member of each row that it shows.
struct Column {
  const char* title;
  const char* member;
};

// A table of rows, which are JSON objects, for the output.
std::string TableText(const Output& output, const Json& rows, const std::vector<Column>& columns);
// A value for people: no control characters, "yes" and "no", the elements of an array with commas between them.
std::string ReadableText(const Json& value);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_USERS_COMMANDS_H_
