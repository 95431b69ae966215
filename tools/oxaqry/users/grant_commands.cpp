// The commands "user grant" and "user revoke": entries of the user's own; those of his groups stay as they are.
#include <array>
#include <ostream>

#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/cli/value_json.h"
#include "tools/oxaqry/users/commands.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

// A table of entries that a user has or has not.
struct EntryTable {
  const char* kind;
  const char* table;
  const char* column;
};
constexpr EntryTable kRights{"right", "UserRights", "RightID"};
constexpr EntryTable kDocumentRights{"doc-right", "UserDocRights", "DocRightID"};
constexpr EntryTable kSearchRights{"search-right", "UserSearchRights", "SearchRightID"};
constexpr EntryTable kArchives{"archive", "UserArchives", "Archive"};
constexpr EntryTable kChannels{"channel", "UserChannels", "Channel"};
constexpr EntryTable kGroups{"group", "UserGroups", "GroupID"};

// The edit rights of one archive.
struct EditGrant {
  std::string archive;            // UTF-8
  std::array<bool, 3> letters{};  // new, edit, delete
};

EditGrant ParseEdit(const std::string& text) {
  const std::size_t sign = text.rfind('=');
  if (sign == std::string::npos || sign + 1 == text.size()) {
    throw UsageError("--edit takes ARCHIVE=LETTERS with letters of N, E and D, not \"" + text + "\"");
  }
  EditGrant grant{text.substr(0, sign), {}};
  for (const char letter : text.substr(sign + 1)) {
    const std::size_t index = std::string_view("NED").find(letter);
    if (index == std::string_view::npos) {
      throw UsageError("--edit takes the letters N (new), E (edit) and D (delete), not \"" + text.substr(sign + 1) +
                       "\"");
    }
    grant.letters[index] = true;
  }
  return grant;
}

class Changes {
 public:
  Changes(UserDatabase& database, WebUser user, bool isGrant)
      : database_(database), user_(std::move(user)), isGrant_(isGrant) {}

  // value stands in the statement as it is, shown is UTF-8.
  void Change(const EntryTable& entries, const std::string& value, const std::string& shown) {
    const std::string where = OfUser() + " AND " + entries.column + "=" + value;
    const bool isThere = !database_.Rows("SELECT 1 FROM " + std::string(entries.table) + where, 1).empty();
    if (isGrant_ && !isThere) {
      database_.Execute("INSERT INTO " + std::string(entries.table) + "(UserID," + entries.column + ") VALUES (" +
                        std::to_string(user_.id) + ", " + value + ")");
    }
    if (!isGrant_ && isThere) database_.Execute("DELETE FROM " + std::string(entries.table) + where);
    Tell(entries.kind, shown, isThere != isGrant_);
  }

  void ChangeEdit(const EditGrant& grant, const std::string& shown) {
    const std::string archive = database_.Literal(database_.Entry(grant.archive, "the archive of --edit"));
    const std::string where = OfUser() + " AND Archive=" + archive;
    const auto rows = database_.Rows("SELECT New, Edit, Del FROM UserEditRights" + where, 3);
    std::array<std::int32_t, 3> former{};
    for (std::size_t i = 0; i < former.size() && !rows.empty(); ++i) former[i] = rows[0][i].ToLong();
    const std::array<std::int32_t, 3> wanted = Wanted(former, grant);
    if (wanted == former) {
      Tell("edit", shown, false);
      return;
    }
    const std::string values[] = {std::to_string(wanted[0]), std::to_string(wanted[1]), std::to_string(wanted[2])};
    if (rows.empty()) {
      database_.Execute("INSERT INTO UserEditRights(UserID,Archive,New,Edit,Del) VALUES (" + std::to_string(user_.id) +
                        ", " + archive + ", " + values[0] + ", " + values[1] + ", " + values[2] + ")");
    } else if (wanted == std::array<std::int32_t, 3>{}) {
      database_.Execute("DELETE FROM UserEditRights" + where);
    } else {
      database_.Execute("UPDATE UserEditRights SET New=" + values[0] + ", Edit=" + values[1] + ", Del=" + values[2] +
                        where);
    }
    Tell("edit", shown, true);
  }

  void Print(const Output& output) const {
    if (output.json) {
      output.out << Json{{"userId", user_.id}, {"name", ToUtf8(user_.name)}, {"changes", json_}}.dump(2) << '\n';
    } else {
      output.out << text_;
    }
  }

 private:
  std::string OfUser() const { return " WHERE UserID=" + std::to_string(user_.id); }

  // A negative number of the user's own takes away what his groups give; it stays when a right is revoked.
  std::array<std::int32_t, 3> Wanted(std::array<std::int32_t, 3> numbers, const EditGrant& grant) const {
    for (std::size_t i = 0; i < numbers.size(); ++i) {
      if (!grant.letters[i]) continue;
      if (isGrant_ && numbers[i] < 1) numbers[i] = 1;
      if (!isGrant_ && numbers[i] > 0) numbers[i] = 0;
    }
    return numbers;
  }

  void Tell(const char* kind, const std::string& shown, bool isChanged) {
    json_.push_back({{"kind", kind}, {"entry", shown}, {"changed", isChanged}});
    text_ += std::string(isGrant_ ? "Granted " : "Revoked ") + kind + ' ' + shown;
    if (!isChanged) text_ += isGrant_ ? ": was so already" : ": was not there";
    text_ += '\n';
  }

  UserDatabase& database_;
  const WebUser user_;
  const bool isGrant_;
  std::string text_;
  Json json_ = Json::array();
};

void ChangeMembership(UserDatabase& database, const WebUser& user, const std::string& name, bool isGrant,
                      Changes& changes) {
  const WebUser group = database.Group(name);
  if (isGrant && user.IsGroup()) {
    throw CommandError("\"" + ToUtf8(user.name) + "\" is a group itself: groups of groups give no rights");
  }
  changes.Change(kGroups, std::to_string(group.id), name);
}

// Definitions are made by other means; one that does not exist restricts nothing, so that nobody would notice.
void ChangeDefinitions(UserDatabase& database, const EntryTable& entries, const std::string& definitions,
                       const std::vector<std::int32_t>& ids, bool isGrant, Changes& changes) {
  for (const std::int32_t id : ids) {
    const std::string number = std::to_string(id);
    const std::string where = std::string(" WHERE ") + entries.column + "=" + number;
    if (isGrant && database.Rows("SELECT 1 FROM " + definitions + where, 1).empty()) {
      throw CommandError("there is no " + std::string(entries.kind) + " " + number + " in the table " + definitions);
    }
    changes.Change(entries, number, number);
  }
}

int ChangeGrants(const Settings& settings, const UserName& name, const Grants& grants, bool isGrant,
                 const Output& output) {
  if (grants.IsEmpty())
    throw UsageError(
        "give at least one of --right, --edit, --archive, --channel, --doc-right, --search-right and --group");
  std::vector<EditGrant> edits;
  for (const std::string& edit : grants.edits) edits.push_back(ParseEdit(edit));
  UserDatabase database(settings);
  const WebUser user = database.User(name);
  Changes changes(database, user, isGrant);
  UserTransaction transaction(database);
  for (const std::int32_t right : grants.rights) changes.Change(kRights, std::to_string(right), std::to_string(right));
  ChangeDefinitions(database, kDocumentRights, "DocRights", grants.documentRights, isGrant, changes);
  ChangeDefinitions(database, kSearchRights, "SearchRights", grants.searchRights, isGrant, changes);
  for (std::size_t i = 0; i < edits.size(); ++i) changes.ChangeEdit(edits[i], grants.edits[i]);
  for (const std::string& each : grants.archives) {
    changes.Change(kArchives, database.Literal(database.Entry(each, "the archive")), each);
  }
  for (const std::string& each : grants.channels) {
    changes.Change(kChannels, database.Literal(database.Entry(each, "the channel")), each);
  }
  for (const std::string& each : grants.groups) ChangeMembership(database, user, each, isGrant, changes);
  transaction.Commit();
  changes.Print(output);
  return 0;
}

}  // namespace

int GrantToUser(const Settings& settings, const UserName& user, const Grants& grants, const Output& output) {
  return ChangeGrants(settings, user, grants, true, output);
}

int RevokeFromUser(const Settings& settings, const UserName& user, const Grants& grants, const Output& output) {
  return ChangeGrants(settings, user, grants, false, output);
}

}  // namespace oxaqrycln::oxaqry
