// The command "user import": every row is checked before the first one is written, and all are written or none.
#include <algorithm>
#include <array>
#include <map>
#include <set>

#include "tools/oxaqry/cli/input.h"
#include "tools/oxaqry/cli/interruption.h"
#include "tools/oxaqry/cli/progress.h"
#include "tools/oxaqry/cli/text.h"
#include "tools/oxaqry/users/commands.h"
#include "tools/oxaqry/users/csv.h"
#include "tools/oxaqry/users/password.h"

namespace oxaqrycln::oxaqry {
namespace {

// Texts in the code page.
struct NewUser {
  std::string name;
  std::string password;
  Variant archiveUser = Missing;
  Variant archivePassword = Missing;
  std::vector<std::int32_t> groups{};
};

// Raises CommandError for columns that are unknown, repeated or missing.
void CheckHeader(const std::vector<std::string>& header) {
  constexpr std::array<std::string_view, 5> kColumns{"name", "password", "archive_user", "archive_password", "groups"};
  for (std::size_t i = 0; i < header.size(); ++i) {
    if (std::ranges::find(kColumns, header[i]) == kColumns.end()) {
      throw CommandError("column " + std::to_string(i + 1) +
                         " is unknown: the columns are name, password, archive_user, archive_password and groups");
    }
    if (std::ranges::count(header, header[i]) > 1) throw CommandError("the column \"" + header[i] + "\" occurs twice");
  }
  for (const char* column : {"name", "password"}) {
    if (std::ranges::count(header, column) == 0) {
      throw CommandError("the columns \"name\" and \"password\" are required");
    }
  }
}

class Importer {
 public:
  Importer(UserDatabase& database, const std::vector<std::string>& header) : database_(database), header_(header) {}

  NewUser Check(const std::vector<std::string>& fields) {
    if (fields.size() != header_.size()) {
      throw CommandError("the number of fields is " + std::to_string(fields.size()) + " instead of " +
                         std::to_string(header_.size()));
    }
    const std::string name = Field(fields, "name");
    NewUser user{database_.Name(name, "the name"), Password(fields, "password", "the password")};
    const std::string archiveUser = Field(fields, "archive_user");
    if (!archiveUser.empty()) {
      user.archiveUser = database_.Name(archiveUser, "the archive user");
      user.archivePassword = Password(fields, "archive_password", "the archive password");
    } else if (!Field(fields, "archive_password").empty()) {
      throw CommandError("there is an archive password without an archive user");
    }
    if (!names_.insert(name).second) throw CommandError("the name \"" + name + "\" occurs twice in the file");
    if (!database_.UsersNamed(name).empty()) throw CommandError("there already is a user \"" + name + "\"");
    user.groups = GroupIds(Field(fields, "groups"));
    return user;
  }

  void Write(const NewUser& user) {
    const Variant id = database_.Checked(
        database_.query().WriteUserToDB(user.name, user.password, user.archiveUser, user.archivePassword),
        "the user cannot be created");
    for (const std::int32_t group : user.groups) {
      database_.Execute("INSERT INTO UserGroups(UserID,GroupID) VALUES (?, ?)", {id, group});
    }
  }

 private:
  // "" for a column that the file does not have.
  std::string Field(const std::vector<std::string>& fields, std::string_view column) const {
    const auto found = std::ranges::find(header_, column);
    return found == header_.end() ? "" : fields[static_cast<std::size_t>(found - header_.begin())];
  }

  std::string Password(const std::vector<std::string>& fields, std::string_view column, const std::string& what) {
    std::string password = TextFromUtf8(Field(fields, column));
    RequireStorable(database_.query(), password, what);
    return password;
  }

  std::vector<std::int32_t> GroupIds(const std::string& list) {
    std::vector<std::int32_t> ids;
    if (list.empty()) return ids;
    for (const std::string& name : SplitText(list, ";")) {
      if (name.empty()) throw CommandError("the list of groups contains an empty name");
      auto known = groups_.find(name);
      if (known == groups_.end()) known = groups_.emplace(name, database_.Group(name).id).first;
      if (std::ranges::find(ids, known->second) == ids.end()) ids.push_back(known->second);
    }
    return ids;
  }

  UserDatabase& database_;
  const std::vector<std::string>& header_;
  std::set<std::string> names_;
  std::map<std::string, std::int32_t> groups_;
};

// Errors of the action name the line of the file.
template <typename Action>
void AtLine(const CsvRecord& record, Action&& action) {
  try {
    action();
  } catch (const std::runtime_error& error) {
    throw CommandError("line " + std::to_string(record.line) + ": " + error.what());
  }
}

int ImportUsers(UserDatabase& database, const std::string& path, const Output& output) {
  const std::vector<CsvRecord> records = ParseCsv(ReadAll(path, output.in));
  if (records.empty()) throw CommandError("\"" + path + "\" has no header line");
  AtLine(records.front(), [&] { CheckHeader(records.front().fields); });
  Importer importer(database, records.front().fields);
  const Interruption interruption;
  const auto forEachRow = [&](const char* what, const auto& action) {
    Progress progress(output, what, static_cast<std::int64_t>(records.size() - 1), "users");
    for (std::size_t i = 1; i < records.size(); ++i) {
      interruption.Check();
      AtLine(records[i], [&] { action(i); });
      progress.Show(static_cast<std::int64_t>(i));
    }
  };
  std::vector<NewUser> users;
  forEachRow("Checking", [&](std::size_t i) { users.push_back(importer.Check(records[i].fields)); });
  UserTransaction transaction(database);
  forEachRow("Importing", [&](std::size_t i) { importer.Write(users[i - 1]); });
  transaction.Commit();
  return PrintResult(output, {{"imported", users.size()}},
                     "Imported " + std::to_string(users.size()) + (users.size() == 1 ? " user" : " users"));
}

}  // namespace

void AddImport(CommandParser& parser, CLI::App& parent) {
  AddCommand(parser, parent, "import", "add the users of a CSV file, all or none",
             "Example:\n  oxaqry user import users.csv --config web.json\n\n"
             "The file is UTF-8 with a header line that names the columns, in any order: name, password,\n"
             "and optionally archive_user, archive_password and groups, whose names are separated by \";\".",
             ImportUsers, [](CLI::App& command, std::string& path) {
               command.add_option("FILE", path, "the file, \"-\" for standard input")->required();
             });
}

}  // namespace oxaqrycln::oxaqry
