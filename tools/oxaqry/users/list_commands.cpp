// The commands "user list", "user groups" and "user rights".
#include <map>
#include <ostream>

#include "support/text_helpers.h"
#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/cli/value_json.h"
#include "tools/oxaqry/users/commands.h"
#include "tools/oxaqry/users/lists.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

using Ids = std::vector<std::int32_t>;

struct ListedUser {
  std::int32_t id;
  std::string name;
  std::string archiveUser;
  bool mustChange;
  bool hasPassword;
};

// Everything that the lists show: the users by name, and who is a member of what.
struct Directory {
  explicit Directory(UserDatabase& database) {
    for (const auto& row : database.Rows("SELECT UserID, UserName, TELOUser, ChangePasswd, CASE WHEN Passwd IS NULL "
                                         "THEN 0 ELSE 1 END FROM Users ORDER BY UserName, UserID",
                                         5)) {
      const bool mustChange = !row[3].IsNull() && row[3].ToLong() != 0;
      users.push_back({row[0].ToLong(), row[1].ToText(), row[2].ToText(), mustChange, row[4].ToLong() != 0});
      names[users.back().id] = users.back().name;
    }
    for (const auto& row : database.Rows("SELECT UserID, GroupID FROM UserGroups ORDER BY UserID, GroupID", 2)) {
      groupsOf[row[0].ToLong()].push_back(row[1].ToLong());
      membersOf[row[1].ToLong()].push_back(row[0].ToLong());
    }
  }

  bool IsGroup(const ListedUser& user) const { return !user.hasPassword || membersOf.contains(user.id); }
  std::vector<std::string> Names(const std::map<std::int32_t, Ids>& links, std::int32_t id) const {
    std::vector<std::string> list;
    const auto found = links.find(id);
    if (found == links.end()) return list;
    for (const std::int32_t each : found->second) {
      const auto name = names.find(each);
      if (name != names.end()) list.push_back(name->second);
    }
    return list;
  }

  std::vector<ListedUser> users;
  std::map<std::int32_t, std::string> names;
  std::map<std::int32_t, Ids> groupsOf;
  std::map<std::int32_t, Ids> membersOf;
};

std::string Joined(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ", ") + Printable(name);
  return text;
}

Json JsonList(const std::vector<std::string>& texts) {
  Json list = Json::array();
  for (const std::string& text : texts) list.push_back(ToUtf8(text));
  return list;
}

Json JsonOf(const Directory& directory, const ListedUser& user, bool isGroup) {
  Json json{{"userId", user.id}, {"name", ToUtf8(user.name)}};
  if (isGroup) {
    json["members"] = JsonList(directory.Names(directory.membersOf, user.id));
  } else {
    json["archiveUser"] = user.archiveUser.empty() ? Json(nullptr) : Json(ToUtf8(user.archiveUser));
    json["mustChangePassword"] = user.mustChange;
    json["groups"] = JsonList(directory.Names(directory.groupsOf, user.id));
  }
  return json;
}

using ListMethod = Variant (clsQuery::*)(const Variant&, Variant*);

std::string Ask(UserDatabase& database, ListMethod method, std::int32_t id) {
  Variant list;
  if ((database.query().*method)(id, &list).IsEmpty()) database.Fail("the rights cannot be read");
  return list.ToText();
}

// One line "archive[,N][,E][,D]" of the edit rights.
struct EditRight {
  std::string archive;
  std::string letters;
  bool May(char letter) const { return letters.find(letter) != std::string::npos; }
};

std::vector<EditRight> ReadEditRights(UserDatabase& database, std::int32_t id) {
  std::vector<EditRight> rights;
  const std::string text = Ask(database, &clsQuery::GetUserEditRights, id);
  for (std::string_view line : Split(text, '\n')) {
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (line.empty()) continue;
    EditRight right;
    while (line.size() >= 2 && line[line.size() - 2] == ',') {
      right.letters.insert(0, 1, line.back());
      line.remove_suffix(2);
    }
    right.archive = line;
    rights.push_back(std::move(right));
  }
  return rights;
}

Json JsonOf(const std::vector<EditRight>& rights) {
  Json list = Json::array();
  for (const EditRight& right : rights) {
    list.push_back({{"archive", ToUtf8(right.archive)},
                    {"new", right.May('N')},
                    {"edit", right.May('E')},
                    {"delete", right.May('D')}});
  }
  return list;
}

Json JsonNumbers(const std::vector<std::string>& numbers) {
  Json list = Json::array();
  for (const std::string& number : numbers) list.push_back(Variant(number).ToLong());
  return list;
}

}  // namespace

int ListUsers(const Settings& settings, bool groups, const Output& output) {
  UserDatabase database(settings);
  const Directory directory(database);
  Json json = Json::array();
  Table table(groups ? std::vector<std::string>{"ID", "Group", "Members"}
                     : std::vector<std::string>{"ID", "User", "Archive user", "Must change", "Groups"});
  for (const ListedUser& user : directory.users) {
    if (directory.IsGroup(user) != groups) continue;
    if (output.json) {
      json.push_back(JsonOf(directory, user, groups));
    } else if (groups) {
      table.Add({std::to_string(user.id), Printable(user.name), Joined(directory.Names(directory.membersOf, user.id))});
    } else {
      table.Add({std::to_string(user.id), Printable(user.name), Printable(user.archiveUser),
                 user.mustChange ? "yes" : "no", Joined(directory.Names(directory.groupsOf, user.id))});
    }
  }
  if (output.json) {
    output.out << json.dump(2) << '\n';
  } else {
    table.Print(output.out);
  }
  return 0;
}

int ListGroupsOf(const Settings& settings, const UserName& name, const Output& output) {
  UserDatabase database(settings);
  const auto groups = ListEntries(Ask(database, &clsQuery::GetUserGroups, database.User(name).id));
  if (output.json) {
    output.out << JsonList(groups).dump(2) << '\n';
    return 0;
  }
  for (const std::string& group : groups) output.out << Printable(group) << '\n';
  return 0;
}

int ShowRights(const Settings& settings, const UserName& name, const Output& output) {
  UserDatabase database(settings);
  const WebUser user = database.User(name);
  const auto rights = ListEntries(Ask(database, &clsQuery::GetUserRights, user.id));
  const auto edits = ReadEditRights(database, user.id);
  const auto archives = ListEntries(Ask(database, &clsQuery::GetUserArchives, user.id));
  const auto channels = ListEntries(Ask(database, &clsQuery::GetUserChannels, user.id));
  if (output.json) {
    output.out
        << Json{{"userId", user.id},           {"name", ToUtf8(user.name)},      {"rights", JsonNumbers(rights)},
                {"editRights", JsonOf(edits)}, {"archives", JsonList(archives)}, {"channels", JsonList(channels)}}
               .dump(2)
        << '\n';
    return 0;
  }
  Table table({"Kind", "Entry", "Allowed"});
  for (const std::string& right : rights) table.Add({"right", Printable(right)});
  for (const EditRight& edit : edits) {
    std::vector<std::string> allowed;
    if (edit.May('N')) allowed.emplace_back("new");
    if (edit.May('E')) allowed.emplace_back("edit");
    if (edit.May('D')) allowed.emplace_back("delete");
    table.Add({"edit", Printable(edit.archive), allowed.empty() ? "nothing" : Joined(allowed)});
  }
  for (const std::string& archive : archives) table.Add({"archive", Printable(archive)});
  for (const std::string& channel : channels) table.Add({"channel", Printable(channel)});
  table.Print(output.out);
  return 0;
}

}  // namespace oxaqrycln::oxaqry
