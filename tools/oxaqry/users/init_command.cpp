// The command "user init".
#include <ostream>

#include "support/text_helpers.h"
#include "tools/oxaqry/cli/value_json.h"
#include "tools/oxaqry/users/commands.h"
#include "tools/oxaqry/users/schema.h"

namespace oxaqrycln::oxaqry {
namespace {

// The statements of a script, one at a time as a driver takes them. No text of the scripts holds a ";".
std::vector<std::string> Statements(const char* script) {
  const std::string whole = TextFromUtf8(script);
  std::string text;
  for (const std::string_view line : Split(whole, '\n')) {
    if (!line.starts_with("--")) text.append(line).append("\n");
  }
  std::vector<std::string> statements;
  for (const std::string_view each : Split(text, ';')) {
    const std::size_t start = each.find_first_not_of(" \n");
    if (start != std::string_view::npos) statements.emplace_back(each.substr(start));
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

}  // namespace

int InitUsers(const Settings& settings, bool withSample, const Output& output) {
  UserDatabase database(settings, UserDatabase::Tables::Any);
  const std::vector<std::string> statements = Statements(kUserSchema);
  const std::vector<std::string> sample = withSample ? Statements(kUserSample) : std::vector<std::string>();
  const std::vector<std::string> tables = Tables(statements);
  for (const std::string& table : tables) {
    if (database.HasTable(table)) {
      throw CommandError("the database has a table \"" + table + "\" already: nothing was changed");
    }
  }
  UserTransaction transaction(database);
  for (const std::string& statement : statements) database.Execute(statement);
  for (const std::string& statement : sample) database.Execute(statement);
  transaction.Commit();
  if (output.json) {
    output.out << Json{{"tables", tables}, {"sampleRows", sample.size()}}.dump(2) << '\n';
  } else {
    output.out << "Made " << tables.size() << " tables\n";
    if (withSample) output.out << "Added " << sample.size() << " rows of sample definitions\n";
  }
  return 0;
}

}  // namespace oxaqrycln::oxaqry
