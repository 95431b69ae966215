// The commands "user remove", "user rename" and "user disable".
#include "tools/oxaqry/cli/input.h"
#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/users/commands.h"

namespace oxaqrycln::oxaqry {
namespace {

struct RemoveRequest {
  UserName user;
  bool isForced = false;
  bool yes = false;
};

struct RenameRequest {
  UserName user;
  std::string newName;
  bool mayDuplicate = false;
};

struct DisableRequest {
  UserName user;
  bool yes = false;
};

std::string Described(const WebUser& user) {
  return std::string("the ") + user.Kind() + " " + Printable(user.name) + " (ID " + std::to_string(user.id) + ")";
}

Json KindJsonOf(const WebUser& user) {
  Json json = JsonOf(user);
  json["kind"] = user.Kind();
  return json;
}

void AddYes(CLI::App& command, bool& yes) { command.add_flag("--yes", yes, "go on without asking"); }

// The rows that belong to a user, those that refer to others first. A database made by other means may lack a table,
// which is looked up before the transaction, as some databases end one at the first error.
std::vector<std::string> EntriesOfUsers(UserDatabase& database) {
  std::vector<std::string> entries{"UserGroups WHERE UserID=?", "UserGroups WHERE GroupID=?"};
  for (const char* table :
       {"UserRights", "UserEditRights", "UserArchives", "UserChannels", "UserDocRights", "UserSearchRights"}) {
    if (database.HasTable(table)) entries.push_back(std::string(table) + " WHERE UserID=?");
  }
  entries.emplace_back("Users WHERE UserID=?");
  return entries;
}

int RemoveUser(UserDatabase& database, const RemoveRequest& request, const Output& output) {
  const WebUser user = database.User(request.user);
  if (user.hasMembers && !request.isForced) {
    throw CommandError("\"" + request.user.name +
                       "\" has members, who would lose its rights: --force removes it all the same");
  }
  const std::vector<std::string> entries = EntriesOfUsers(database);
  Confirm("Remove " + Described(user) + " with all rights and memberships?", request.yes, output);
  UserTransaction transaction(database);
  for (const std::string& entry : entries) database.Execute("DELETE FROM " + entry, {user.id});
  transaction.Commit();
  return PrintResult(output, KindJsonOf(user), "Removed " + Described(user));
}

int RenameUser(UserDatabase& database, const RenameRequest& request, const Output& output) {
  WebUser user = database.User(request.user);
  const std::string name = database.Name(request.newName, "the new name");
  if (const auto known = database.UsersNamed(request.newName); !known.empty() && !request.mayDuplicate) {
    throw CommandError("there already is a " + std::string(known.front().Kind()) + " \"" + request.newName +
                       "\": --duplicate gives the name to another one");
  }
  database.Execute("UPDATE Users SET UserName=? WHERE UserID=?", {name, user.id});
  const std::string former = Described(user);
  user.name = request.newName;
  return PrintResult(output, KindJsonOf(user), "Renamed " + former + " to " + Printable(user.name));
}

// A user without a stored password passes no log-on with a password, not even with an empty one. The flag, which groups
// do not have, tells the disabled user from a group.
int DisableUser(UserDatabase& database, const DisableRequest& request, const Output& output) {
  const WebUser user = database.User(request.user);
  if (user.IsGroup() && !user.hasPassword) {
    throw CommandError("\"" + request.user.name + "\" is a group, which has no password");
  }
  Json json = KindJsonOf(user);
  json["changed"] = user.hasPassword;
  if (!user.hasPassword) return PrintResult(output, json, Printable(user.name) + " was already disabled");
  Confirm("Delete the stored password of " + Described(user) + "?", request.yes, output);
  database.Execute("UPDATE Users SET Passwd=NULL, ChangePasswd=COALESCE(ChangePasswd, 0) WHERE UserID=?", {user.id});
  if (database.UsersNamed(request.user.name).size() > 1) {
    Warn(output,
         "there are other users of that name: a page that changes the password of one stores it for all of them");
  }
  return PrintResult(output, json, "Disabled " + Described(user));
}

}  // namespace

void AddMaintenanceCommands(CommandParser& parser, CLI::App& parent) {
  AddCommand(parser, parent, "remove", "remove a user or group with all rights and memberships",
             "Examples:\n  oxaqry user remove anna --config web.json\n"
             "  oxaqry user remove Sales --force --yes --config web.json",
             RemoveUser, [](CLI::App& command, RemoveRequest& request) {
               AddUserName(command, request.user);
               command.add_flag("--force", request.isForced, "also a group that has members");
               AddYes(command, request.yes);
             });
  AddCommand(parser, parent, "rename", "give a user or group another name; rights and password stay",
             "Example:\n  oxaqry user rename anna anna.berg --config web.json", RenameUser,
             [](CLI::App& command, RenameRequest& request) {
               AddUserName(command, request.user);
               command.add_option("NEW", request.newName, "the new name")->required();
               command.add_flag("--duplicate", request.mayDuplicate, "rename the user even when the name exists");
             });
  AddCommand(parser, parent, "disable", "delete a user's stored password, so that no password logs the user on",
             "Examples:\n  oxaqry user disable anna --yes --config web.json\n"
             "  oxaqry user passwd anna --config web.json     (enables the user again)",
             DisableUser, [](CLI::App& command, DisableRequest& request) {
               AddUserName(command, request.user);
               AddYes(command, request.yes);
             });
}

}  // namespace oxaqrycln::oxaqry
