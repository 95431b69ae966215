// The commands "user add", "user passwd", "user check" and "user must-change".
#include <ostream>

#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/cli/value_json.h"
#include "tools/oxaqry/users/commands.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

Json JsonOf(const WebUser& user) { return {{"userId", user.id}, {"name", ToUtf8(user.name)}}; }

void RefuseKnownName(UserDatabase& database, const std::string& name) {
  const std::vector<WebUser> known = database.UsersNamed(name);
  if (known.empty()) return;
  throw CommandError("there is a " + std::string(known.front().IsGroup() ? "group" : "user") + " \"" + name +
                     "\" already: --duplicate adds another one of that name");
}

std::int32_t Created(const UserDatabase& database, const Variant& id, const std::string& name) {
  if (id.ToLong() < 1) database.Fail("\"" + name + "\" cannot be created");
  return id.ToLong();
}

// A group has no password, not even an empty one, so that nobody can log on with its name.
std::int32_t CreateGroup(UserDatabase& database, const std::string& name) {
  const std::string text = database.Literal(database.Name(name, "the name"));
  const std::int32_t id = Created(database, database.query().GetNextDBObjectID("UserID", "Users"), name);
  database.Execute("INSERT INTO Users(UserID,UserName) VALUES (" + std::to_string(id) + ", " + text + ")");
  return id;
}

std::int32_t CreateUser(UserDatabase& database, const AddUserRequest& request, const Output& output) {
  const std::string name = database.Name(request.name, "the name");
  const bool hasAccount = request.archiveUser.has_value();
  const Variant account = hasAccount ? Variant(database.Name(*request.archiveUser, "the archive user")) : Missing;
  clsQuery& query = database.query();
  const std::string password = AskNewPassword(query, request.passwords, "password", output);
  Variant accountPassword = Missing;
  if (hasAccount) accountPassword = AskNewPassword(query, request.passwords, "archive password", output);
  return Created(database, query.WriteUserToDB(name, password, account, accountPassword), request.name);
}

}  // namespace

int AddUser(const Settings& settings, const AddUserRequest& request, const Output& output) {
  UserDatabase database(settings);
  if (!request.mayDuplicate) RefuseKnownName(database, request.name);
  const std::int32_t id = request.isGroup ? CreateGroup(database, request.name) : CreateUser(database, request, output);
  const char* const kind = request.isGroup ? "group" : "user";
  if (output.json) {
    output.out << Json{{"userId", id}, {"name", request.name}, {"kind", kind}}.dump(2) << '\n';
  } else {
    output.out << "Added the " << kind << ' ' << request.name << " with ID " << id << '\n';
  }
  return 0;
}

// Not by the component's ChangePasswd, which asks for the old password, changes all users of the name and none whose ID
// is above 32767.
int SetUserPassword(const Settings& settings, const PasswordRequest& request, const Output& output) {
  UserDatabase database(settings);
  const WebUser user = database.User(request.user);
  if (user.hasMembers) throw CommandError("\"" + request.user.name + "\" is a group, which has no password");
  if (user.IsGroup() && !request.mayMakeUser) {
    throw CommandError("\"" + request.user.name + "\" is a group: --make-user makes a user of one without members");
  }
  clsQuery& query = database.query();
  const std::string password = AskNewPassword(query, request.passwords, "password", output);
  database.Execute("UPDATE Users SET Passwd=" + database.Literal(query.Encode(password)) +
                   " WHERE UserID=" + std::to_string(user.id));
  if (output.json) {
    output.out << JsonOf(user).dump(2) << '\n';
  } else {
    output.out << "Changed the password of " << Printable(user.name) << '\n';
  }
  return 0;
}

int CheckUser(const Settings& settings, const PasswordRequest& request, const Output& output) {
  UserDatabase database(settings);
  const std::string name = database.Name(request.user.name, "the name");
  const std::string password = AskPassword(request.passwords, "Password", output);
  const std::int32_t id = database.query().CheckLogon(name, password).ToLong();
  database.CheckMethod("the password cannot be checked");
  const bool isRight = id > 0;
  if (output.json) {
    output.out
        << Json{{"name", request.user.name}, {"userId", isRight ? Json(id) : Json(nullptr)}, {"valid", isRight}}.dump(2)
        << '\n';
  } else {
    output.out << (isRight ? "The password is right" : "The password is wrong, or there is no such user") << '\n';
  }
  return isRight ? 0 : 1;
}

int SetMustChange(const Settings& settings, const UserName& name, bool mustChange, const Output& output) {
  UserDatabase database(settings);
  const WebUser user = database.User(name);
  if (database.query().SetUserChangePasswd(user.id, std::int32_t{mustChange ? 1 : 0}).ToLong() != 1) {
    database.Fail("the flag cannot be changed");
  }
  if (output.json) {
    Json json = JsonOf(user);
    json["mustChangePassword"] = mustChange;
    output.out << json.dump(2) << '\n';
  } else {
    output.out << Printable(user.name) << (mustChange ? " must" : " need not") << " change the password\n";
  }
  return 0;
}

}  // namespace oxaqrycln::oxaqry
