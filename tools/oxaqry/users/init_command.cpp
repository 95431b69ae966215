// The command "user init".
#include <filesystem>

#include "tools/oxaqry/cli/text.h"
#include "tools/oxaqry/users/commands.h"
#include "tools/oxaqry/users/schema.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

// The statements of a script, one at a time as a driver takes them. No text in the scripts holds a ";" or a line that
// starts with "--".
std::vector<std::string> Statements(const char* script) {
  std::string text;
  for (const std::string& line : SplitText(TextFromUtf8(script), "\n")) {
    if (!line.starts_with("--")) text.append(line).append("\n");
  }
  std::vector<std::string> statements;
  for (const std::string& each : SplitText(text, ";")) {
    const std::size_t start = each.find_first_not_of(" \n");
    if (start != std::string::npos) statements.push_back(each.substr(start));
  }
  return statements;
}

std::vector<std::string> Tables(const std::vector<std::string>& statements) {
  constexpr std::string_view kCreate = "CREATE TABLE ";
  std::vector<std::string> tables;
  for (const std::string& each : statements) {
    if (!each.starts_with(kCreate)) continue;
    tables.push_back(each.substr(kCreate.size(), each.find(' ', kCreate.size()) - kCreate.size()));
  }
  return tables;
}

// The file of the database where it is one of SQLite; other databases do not know the statement.
std::optional<std::string> FileOf(UserDatabase& database) {
  try {
    const auto rows = database.Rows(3, "PRAGMA database_list");
    if (!rows.empty() && !rows[0][2].ToText().empty()) return ToUtf8(rows[0][2].ToText());
  } catch (const CommandError&) {
  }
  return std::nullopt;
}

// The driver makes a new file readable for everybody whom the process's mask allows.
void RestrictToOwner(const std::string& path, const Output& output) {
  std::error_code failed;
  std::filesystem::permissions(path, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write, failed);
  if (!failed) return;
  Warn(output, "other users of the machine may be able to read \"" + path + "\": " + failed.message());
}

int InitUsers(const Settings& settings, bool withSample, const Output& output) {
  UserDatabase database(settings);
  const std::vector<std::string> statements = Statements(kUserSchema);
  const std::vector<std::string> sample = withSample ? Statements(kUserSample) : std::vector<std::string>();
  const std::vector<std::string> tables = Tables(statements);
  for (const std::string& table : tables) {
    if (database.HasTable(table)) {
      throw CommandError("the database already has a table \"" + table + "\": nothing was changed");
    }
  }
  if (const auto file = FileOf(database)) RestrictToOwner(*file, output);
  UserTransaction transaction(database);
  for (const std::string& statement : statements) database.Execute(statement);
  for (const std::string& statement : sample) database.Execute(statement);
  transaction.Commit();
  std::string text = "Created " + std::to_string(tables.size()) + " tables\n";
  if (withSample) text += "Added " + std::to_string(sample.size()) + " rows of sample definitions\n";
  return PrintResult(output, {{"tables", tables}, {"sampleRows", sample.size()}}, text);
}

}  // namespace

void AddInit(CommandParser& parser, CLI::App& parent) {
  const auto withSample = std::make_shared<bool>(false);
  parser
      .AddDatabase(parent, "init", "create the tables in an empty database",
                   "Examples:\n  oxaqry user init --database 'Driver=SQLite3;Database=/srv/web/users.sqlite'\n"
                   "  oxaqry user init --sample --config web.json",
                   [withSample](const Settings& settings, const Output& output) {
                     return InitUsers(settings, *withSample, output);
                   })
      ->add_flag("--sample", *withSample, "also document rights, search rights and outliners for devserver's archive");
}

}  // namespace oxaqrycln::oxaqry
