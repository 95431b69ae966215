// The command "user import": every row is checked before the first one is written, and all are written or none.
#include <algorithm>
#include <array>
#include <map>
#include <ostream>
#include <set>

#include "support/text_helpers.h"
#include "tools/oxaqry/cli/input.h"
#include "tools/oxaqry/cli/interruption.h"
#include "tools/oxaqry/cli/value_json.h"
#include "tools/oxaqry/users/commands.h"
#include "tools/oxaqry/users/csv.h"
#include "tools/oxaqry/users/import_progress.h"

namespace oxaqrycln::oxaqry {
namespace {

constexpr std::array<std::string_view, 5> kColumns{"name", "password", "archive_user", "archive_password", "groups"};
enum Column : std::size_t { kName, kPassword, kArchiveUser, kArchivePassword, kGroups };

// Texts in the code page.
struct NewUser {
  std::size_t line;
  std::string name;
  std::string password;
  std::string archiveUser;
  std::string archivePassword;
  std::vector<std::int32_t> groups;
};

[[noreturn]] void FailAt(std::size_t line, const std::string& why) {
  throw CommandError("line " + std::to_string(line) + ": " + why);
}

// Where the columns stand in a record, npos for one that is left out.
using Places = std::array<std::size_t, kColumns.size()>;

Places ReadHeader(const CsvRecord& header) {
  Places places;
  places.fill(std::string::npos);
  for (std::size_t i = 0; i < header.fields.size(); ++i) {
    const auto* const found = std::ranges::find(kColumns, header.fields[i]);
    if (found == kColumns.end()) {
      FailAt(header.line, "column " + std::to_string(i + 1) +
                              " is unknown: the columns are name, password, archive_user, archive_password and groups");
    }
    std::size_t& place = places[static_cast<std::size_t>(found - kColumns.begin())];
    if (place != std::string::npos) FailAt(header.line, "the column \"" + header.fields[i] + "\" stands there twice");
    place = i;
  }
  if (places[kName] == std::string::npos || places[kPassword] == std::string::npos) {
    FailAt(header.line, "the columns \"name\" and \"password\" are needed");
  }
  return places;
}

class Importer {
 public:
  Importer(UserDatabase& database, const Places& places) : database_(database), places_(places) {}

  NewUser Check(const CsvRecord& record) {
    try {
      return CheckFields(record);
    } catch (const ValueError& error) {
      FailAt(record.line, error.what());
    } catch (const CommandError& error) {
      FailAt(record.line, error.what());
    }
  }

  void Write(const NewUser& user) {
    const bool hasAccount = !user.archiveUser.empty();
    const Variant account = hasAccount ? Variant(user.archiveUser) : Missing;
    const Variant accountPassword = hasAccount ? Variant(user.archivePassword) : Missing;
    const Variant id = database_.query().WriteUserToDB(user.name, user.password, account, accountPassword);
    try {
      if (id.ToLong() < 1) database_.Fail("the user cannot be created");
      for (const std::int32_t group : user.groups) {
        database_.Execute("INSERT INTO UserGroups(UserID,GroupID) VALUES (" + std::to_string(id.ToLong()) + ", " +
                          std::to_string(group) + ")");
      }
    } catch (const CommandError& error) {
      FailAt(user.line, error.what());
    }
  }

 private:
  std::string Field(const CsvRecord& record, Column column) const {
    return places_[column] == std::string::npos ? "" : record.fields[places_[column]];
  }

  NewUser CheckFields(const CsvRecord& record) {
    const std::size_t columnCount =
        kColumns.size() - static_cast<std::size_t>(std::ranges::count(places_, std::string::npos));
    if (record.fields.size() != columnCount) {
      throw CommandError("the number of fields is " + std::to_string(record.fields.size()) + " instead of " +
                         std::to_string(columnCount));
    }
    const std::string name = Field(record, kName);
    NewUser user{record.line, database_.Name(name, "the name"), TextFromUtf8(Field(record, kPassword)), "", "", {}};
    CheckPassword(database_.query(), user.password, "the password");
    const std::string archiveUser = Field(record, kArchiveUser);
    user.archivePassword = TextFromUtf8(Field(record, kArchivePassword));
    if (!archiveUser.empty()) {
      user.archiveUser = database_.Name(archiveUser, "the archive user");
      CheckPassword(database_.query(), user.archivePassword, "the archive password");
    } else if (!user.archivePassword.empty()) {
      throw CommandError("there is an archive password without an archive user");
    }
    if (!names_.insert(user.name).second) throw CommandError("the name \"" + name + "\" stands in the file twice");
    if (!database_.UsersNamed(name).empty()) throw CommandError("there is a user \"" + name + "\" already");
    user.groups = GroupIds(Field(record, kGroups));
    return user;
  }

  std::vector<std::int32_t> GroupIds(const std::string& list) {
    std::vector<std::int32_t> ids;
    for (const std::string_view each : Split(list, ';')) {
      const std::string name(each);
      if (name.empty()) throw CommandError("the list of groups holds an empty name");
      auto known = groups_.find(name);
      if (known == groups_.end()) known = groups_.emplace(name, database_.Group(name).id).first;
      if (std::ranges::find(ids, known->second) == ids.end()) ids.push_back(known->second);
    }
    return ids;
  }

  UserDatabase& database_;
  const Places places_;
  std::set<std::string> names_;
  std::map<std::string, std::int32_t> groups_;
};

}  // namespace

int ImportUsers(const Settings& settings, const std::string& path, const Output& output) {
  const std::vector<CsvRecord> records = ParseCsv(ReadAll(path, output.in));
  if (records.empty()) throw CommandError("\"" + path + "\" has no header line");
  const Places places = ReadHeader(records.front());
  const std::size_t count = records.size() - 1;
  const Interruption interruption;
  UserDatabase database(settings);
  Importer importer(database, places);
  std::vector<NewUser> users;
  {
    ImportProgress progress(output, "Checking", count);
    for (std::size_t i = 1; i < records.size(); ++i) {
      interruption.Check();
      users.push_back(importer.Check(records[i]));
      progress.Show(users.size());
    }
  }
  UserTransaction transaction(database);
  {
    ImportProgress progress(output, "Importing", count);
    for (std::size_t i = 0; i < users.size(); ++i) {
      interruption.Check();
      importer.Write(users[i]);
      progress.Show(i + 1);
    }
  }
  transaction.Commit();
  if (output.json) {
    output.out << Json{{"imported", count}}.dump(2) << '\n';
  } else {
    output.out << "Imported " << count << (count == 1 ? " user\n" : " users\n");
  }
  return 0;
}

}  // namespace oxaqrycln::oxaqry
