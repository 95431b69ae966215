// The commands "user list", "user groups" and "user rights".
#include <algorithm>
#include <map>

#include "tools/oxaqry/users/commands.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

struct ListRequest {
  bool isOfGroups = false;
  std::optional<std::string> name;
};

Json NamesOf(const std::map<std::int32_t, Json>& names, std::int32_t id) {
  const auto found = names.find(id);
  return found == names.end() ? Json::array() : found->second;
}

// Raises CommandError unless a user, or a group, has the name.
void RequireNamed(UserDatabase& database, const ListRequest& request) {
  const std::vector<WebUser> named = database.UsersNamed(*request.name);
  const auto isListed = [&](const WebUser& user) { return user.IsGroup() == request.isOfGroups; };
  if (std::ranges::any_of(named, isListed)) return;
  const std::string wanted = std::string("there is no ") + (request.isOfGroups ? "group" : "user");
  const char* const other = named.empty() ? "" : request.isOfGroups ? "; it is a user" : "; it is a group: --groups";
  throw CommandError(wanted + " \"" + *request.name + "\"" + other);
}

int ListUsers(UserDatabase& database, const ListRequest& request, const Output& output) {
  if (request.name) RequireNamed(database, request);
  const std::string condition = request.name ? " WHERE UserName=?" : "";
  const UserDatabase::Values values =
      request.name ? UserDatabase::Values{database.Name(*request.name, "the name")} : UserDatabase::Values();
  const auto members = LinkedNames(database, "GroupID", "UserID");
  const auto groups = LinkedNames(database, "UserID", "GroupID");
  Json users = Json::array();
  for (const auto& row : database.Rows(5,
                                       "SELECT UserID, UserName, TELOUser, ChangePasswd, CASE WHEN Passwd IS NULL "
                                       "THEN 0 ELSE 1 END FROM Users" +
                                           condition + " ORDER BY UserName, UserID",
                                       values)) {
    const WebUser user{row[0].ToLong(), ToUtf8(row[1].ToText()), row[4].ToLong() != 0,
                       members.contains(row[0].ToLong()), !row[3].IsNull()};
    if (user.IsGroup() != request.isOfGroups) continue;
    Json json = JsonOf(user);
    if (request.isOfGroups) {
      json["members"] = NamesOf(members, user.id);
    } else {
      const std::string account = row[2].ToText();
      json["archiveUser"] = account.empty() ? Json() : Json(ToUtf8(account));
      json["mustChangePassword"] = !row[3].IsNull() && row[3].ToLong() != 0;
      json["disabled"] = user.IsDisabled();
      json["groups"] = NamesOf(groups, user.id);
    }
    users.push_back(std::move(json));
  }
  if (request.isOfGroups)
    return PrintResult(output, users,
                       TableText(output, users, {{"ID", "userId"}, {"Group", "name"}, {"Members", "members"}}));
  return PrintResult(output, users,
                     TableText(output, users,
                               {{"ID", "userId"},
                                {"User", "name"},
                                {"Archive user", "archiveUser"},
                                {"Must change", "mustChangePassword"},
                                {"Disabled", "disabled"},
                                {"Groups", "groups"}}));
}

int ListGroupsOf(UserDatabase& database, const UserName& name, const Output& output) {
  const Json groups = database.OnLayer().Groups(database.User(name).id);
  std::string text;
  for (const Json& group : groups) text += ReadableText(group) + '\n';
  return PrintResult(output, groups, text);
}

int ShowRights(UserDatabase& database, const UserName& name, const Output& output) {
  const WebUser user = database.User(name);
  Json json = JsonOf(user);
  client::Users users = database.OnLayer();
  json["rights"] = users.Rights(user.id);
  json["editRights"] = Json::array();
  for (const client::EditRight& right : users.EditRights(user.id)) {
    json["editRights"].push_back(
        {{"archive", right.archive}, {"new", right.canCreate}, {"edit", right.canEdit}, {"delete", right.canDelete}});
  }
  json["archives"] = users.Archives(user.id);
  json["channels"] = users.Channels(user.id);
  Json rows = Json::array();
  const auto addRows = [&rows](const char* kind, const Json& entries) {
    for (const Json& entry : entries) rows.push_back({{"kind", kind}, {"entry", entry}});
  };
  addRows("right", json["rights"]);
  for (const Json& edit : json["editRights"]) {
    Json allowed = Json::array();
    for (const char* action : {"new", "edit", "delete"}) {
      if (edit[action] == true) allowed.push_back(action);
    }
    if (allowed.empty()) allowed.push_back("nothing");
    rows.push_back({{"kind", "edit"}, {"entry", edit["archive"]}, {"allowed", std::move(allowed)}});
  }
  addRows("archive", json["archives"]);
  addRows("channel", json["channels"]);
  return PrintResult(output, json,
                     TableText(output, rows, {{"Kind", "kind"}, {"Entry", "entry"}, {"Allowed", "allowed"}}));
}

}  // namespace

std::map<std::int32_t, Json> LinkedNames(UserDatabase& database, const std::string& from, const std::string& to) {
  std::map<std::int32_t, Json> names;
  for (const auto& row :
       database.Rows(2, "SELECT Links." + from + ", UserName FROM UserGroups Links, Users WHERE Users.UserID=Links." +
                            to + " ORDER BY Links." + from + ", Links." + to)) {
    names[row[0].ToLong()].push_back(ToUtf8(row[1].ToText()));
  }
  return names;
}

void AddListCommands(CommandParser& parser, CLI::App& parent) {
  AddCommand(parser, parent, "list", "list the users, or the groups with their members",
             "Examples:\n  oxaqry user list --config web.json\n  oxaqry user list anna --config web.json\n  oxaqry "
             "user list --groups --json --config web.json",
             ListUsers, [](CLI::App& command, ListRequest& request) {
               command.add_option("NAME", request.name, "only the users or groups of this name");
               command.add_flag("--groups", request.isOfGroups,
                                "list the groups: users that have members or never had a password");
             });
  AddCommand(parser, parent, "groups", "list the groups that a user is a member of",
             "Example:\n  oxaqry user groups anna --config web.json", ListGroupsOf, AddUserName);
  AddCommand(parser, parent, "rights", "list the rights of a user, those of the user's groups included",
             "Example:\n  oxaqry user rights anna --config web.json", ShowRights, AddUserName);
}

}  // namespace oxaqrycln::oxaqry
