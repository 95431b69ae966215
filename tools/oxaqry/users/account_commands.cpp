// The commands "user add", "user passwd", "user check" and "user must-change".
#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/users/commands.h"
#include "tools/oxaqry/users/password.h"

namespace oxaqrycln::oxaqry {
namespace {

struct AddRequest {
  std::string name;
  bool isGroup = false;
  std::optional<std::string> archiveUser;
  bool mayDuplicate = false;
  PasswordSource passwords;
};

struct PasswordRequest {
  UserName user;
  PasswordSource passwords;
  bool mayMakeUser = false;
};

struct MustChangeRequest {
  UserName user;
  std::string state;
};

void AddPasswordSource(CLI::App& command, PasswordSource& source) {
  command.add_flag("--password-stdin", source.isInput,
                   "read passwords from standard input, one line each, instead of asking on the terminal");
}

// A group has no password, not even an empty one, so that nobody can log on with its name.
std::int32_t CreateGroup(UserDatabase& database, const std::string& name, const std::string& failure) {
  const Variant id = database.Checked(database.query().GetNextDBObjectID("UserID", "Users"), failure);
  database.Execute("INSERT INTO Users(UserID,UserName) VALUES (?, ?)", {id, name});
  return id.ToLong();
}

std::int32_t CreateUser(UserDatabase& database, const AddRequest& request, const std::string& failure,
                        const Output& output) {
  clsQuery& query = database.query();
  const std::string name = database.Name(request.name, "the name");
  Variant account = Missing;
  Variant accountPassword = Missing;
  if (request.archiveUser) account = database.Name(*request.archiveUser, "the archive user");
  const std::string password = AskNewPassword(query, request.passwords, "password", output);
  if (request.archiveUser) accountPassword = AskNewPassword(query, request.passwords, "archive password", output);
  return database.Checked(query.WriteUserToDB(name, password, account, accountPassword), failure).ToLong();
}

int AddUser(UserDatabase& database, const AddRequest& request, const Output& output) {
  const std::vector<WebUser> known = database.UsersNamed(request.name);
  if (!known.empty() && !request.mayDuplicate) {
    throw CommandError("there already is a " + std::string(known.front().Kind()) + " \"" + request.name +
                       "\": --duplicate adds another one of that name");
  }
  const std::string failure = "\"" + request.name + "\" cannot be created";
  const std::int32_t id = request.isGroup ? CreateGroup(database, database.Name(request.name, "the name"), failure)
                                          : CreateUser(database, request, failure, output);
  const std::string kind = request.isGroup ? "group" : "user";
  return PrintResult(output, {{"userId", id}, {"name", request.name}, {"kind", kind}},
                     "Added the " + kind + " " + request.name + " with ID " + std::to_string(id));
}

// Not by the component's ChangePasswd, which asks for the old password, changes all users of the name and none whose ID
// is above 32767.
int SetPassword(UserDatabase& database, const PasswordRequest& request, const Output& output) {
  const WebUser user = database.User(request.user);
  if (user.hasMembers) throw CommandError("\"" + request.user.name + "\" is a group, which has no password");
  if (user.IsGroup() && !request.mayMakeUser) {
    throw CommandError("\"" + request.user.name + "\" is a group: --make-user makes it a user if it has no members");
  }
  clsQuery& query = database.query();
  const std::string password = AskNewPassword(query, request.passwords, "password", output);
  const Variant encoded = database.Checked(query.Encode(password), "the password cannot be encoded");
  database.Execute("UPDATE Users SET Passwd=? WHERE UserID=?", {encoded, user.id});
  return PrintResult(
      output, JsonOf(user),
      "Changed the password of " + Printable(user.name) + (user.IsDisabled() ? ", which enables it" : ""));
}

int CheckPassword(UserDatabase& database, const PasswordRequest& request, const Output& output) {
  const std::string name = database.Name(request.user.name, "the name");
  const std::string password = AskPassword(request.passwords, "Password", output);
  const std::int32_t id =
      database.Checked(database.query().CheckLogon(name, password), "the password cannot be checked").ToLong();
  const bool isRight = id > 0;
  PrintResult(output, {{"name", request.user.name}, {"userId", isRight ? Json(id) : Json()}, {"valid", isRight}},
              isRight ? "The password is right" : "The password is wrong, or there is no such user");
  return isRight ? 0 : 1;
}

int SetMustChange(UserDatabase& database, const MustChangeRequest& request, const Output& output) {
  const WebUser user = database.User(request.user);
  if (user.IsGroup() && !user.hasPassword) {
    throw CommandError("\"" + request.user.name + "\" is a group, which has no password");
  }
  const bool mustChange = request.state == "on";
  database.Checked(database.query().SetUserChangePasswd(user.id, mustChange), "the flag cannot be changed");
  Json json = JsonOf(user);
  json["mustChangePassword"] = mustChange;
  return PrintResult(output, json,
                     Printable(user.name) + (mustChange ? " must" : " need not") + " change the password");
}

}  // namespace

void AddAccountCommands(CommandParser& parser, CLI::App& parent) {
  AddCommand(parser, parent, "add", "add a user or group",
             "Examples:\n  oxaqry user add anna --config web.json\n"
             "  oxaqry user add bert --archive-user WEB --password-stdin --config web.json < two-lines\n"
             "  oxaqry user add Sales --group --config web.json",
             AddUser, [](CLI::App& command, AddRequest& request) {
               command.add_option("NAME", request.name, "the new name")->required();
               CLI::Option* const group =
                   command.add_flag("--group", request.isGroup, "add a group, which has no password");
               command
                   .add_option("--archive-user", request.archiveUser,
                               "the user's account of the archive; its password is asked for")
                   ->excludes(group)
                   ->type_name("U");
               command.add_flag("--duplicate", request.mayDuplicate, "add the user even when the name exists");
               AddPasswordSource(command, request.passwords);
             });
  AddCommand(parser, parent, "passwd", "give a user a new password, which also enables a disabled one",
             "Examples:\n  oxaqry user passwd anna --config web.json\n"
             "  oxaqry user passwd anna --id 7 --password-stdin --config web.json < new-password",
             SetPassword, [](CLI::App& command, PasswordRequest& request) {
               AddUserName(command, request.user);
               command.add_flag("--make-user", request.mayMakeUser,
                                "also for a group without members, which becomes a user");
               AddPasswordSource(command, request.passwords);
             });
  AddCommand(parser, parent, "check", "try a user's password as a log-on does; exit status 0 when it is right, else 1",
             "Example:\n  oxaqry user check anna --config web.json", CheckPassword,
             [](CLI::App& command, PasswordRequest& request) {
               command.add_option("NAME", request.user.name, "the user's name")->required();
               AddPasswordSource(command, request.passwords);
             });
  AddCommand(parser, parent, "must-change", "set whether a user must change the password",
             "Example:\n  oxaqry user must-change anna on --config web.json", SetMustChange,
             [](CLI::App& command, MustChangeRequest& request) {
               AddUserName(command, request.user);
               command.add_option("STATE", request.state, "on or off")->required()->check(CLI::IsMember({"on", "off"}));
             });
}

}  // namespace oxaqrycln::oxaqry
