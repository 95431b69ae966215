#include "tools/oxaqry/users/commands.h"

#include <algorithm>

#include "tools/oxaqry/cli/command_families.h"
#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/cli/text.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {

void AddUserCommands(CommandParser& parser) {
  CLI::App* const user =
      parser.AddGroup("user", "manage the users, groups and rights of the web user database",
                      "Examples:\n  oxaqry user init --database 'Driver=SQLite3;Database=/srv/web/users.sqlite'\n"
                      "  oxaqry user list --config web.json");
  AddInit(parser, *user);
  AddImport(parser, *user);
  AddAccountCommands(parser, *user);
  AddMaintenanceCommands(parser, *user);
  AddExport(parser, *user);
  AddListCommands(parser, *user);
  AddDefinitionCommands(parser, *user);
  AddGrantCommands(parser, *user);
  AddExplain(parser, *user);
  AddOutline(parser, parser.app());
}

void AddUserName(CLI::App& command, UserName& user) {
  command.add_option("NAME", user.name, "the user's or group's name")->required();
  command.add_option("--id", user.id, "the ID of the user, where several have that name")
      ->check(WholeNumber())
      ->type_name("N");
}

void RequireOptions(CLI::App& command, std::vector<const CLI::Option*> options, std::size_t most, const char* message) {
  command.parse_complete_callback([options = std::move(options), most, message] {
    const auto given = static_cast<std::size_t>(
        std::ranges::count_if(options, [](const CLI::Option* option) { return option->count() > 0; }));
    if (given == 0 || given > most) throw CLI::ValidationError(message);
  });
}

CLI::Validator WholeNumber() {
  return {[](const std::string& text) {
            const auto number = ParseInteger(text);
            const bool isPlain = number && std::to_string(*number) == text;  // the parser takes "010" for 8
            return isPlain ? "" : "\"" + text + "\" is not a whole number of 32 bits";
          },
          ""};
}

Json JsonOf(const WebUser& user) { return {{"userId", user.id}, {"name", user.name}}; }

Json JsonId(const std::string& id) {
  const auto number = ParseInteger(id);
  return number && std::to_string(*number) == id ? Json(*number) : Json(id);
}

std::string TableText(const Output& output, const Json& rows, const std::vector<Column>& columns) {
  std::vector<std::string> titles;
  for (const Column& column : columns) titles.emplace_back(column.title);
  Table table(std::move(titles));
  for (const Json& row : rows) {
    std::vector<std::string> cells;
    for (const Column& column : columns) cells.push_back(ReadableText(row.value(column.member, Json())));
    table.Add(std::move(cells));
  }
  return table.Text(TerminalColumns(output));
}

std::string ReadableText(const Json& value) {
  if (value.is_null()) return "";
  if (value.is_string()) return Printable(value.get<std::string>());
  if (value.is_boolean()) return value.get<bool>() ? "yes" : "no";
  if (!value.is_array()) return value.dump();
  std::string text;
  for (const Json& element : value) text += (text.empty() ? "" : ", ") + ReadableText(element);
  return text;
}

}  // namespace oxaqrycln::oxaqry
