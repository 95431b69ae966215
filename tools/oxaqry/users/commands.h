// user_commands.h - the commands on web users, their groups and rights, in the web user database.
// As those of commands.h; texts that a person gave are UTF-8.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_USERS_COMMANDS_H_
#define OXAQRYCLN_TOOLS_OXAQRY_USERS_COMMANDS_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/oxaqry/cli/output.h"
#include "tools/oxaqry/users/database.h"
#include "tools/oxaqry/users/password.h"

namespace oxaqrycln::oxaqry {

// Makes the tables in a database that has none of them; with the sample also rights and outliners to try.
int InitUsers(const Settings& settings, bool withSample, const Output& output);

struct AddUserRequest {
  std::string name;
  bool isGroup = false;                    // a group has no password
  std::optional<std::string> archiveUser;  // its password is asked for
  bool mayDuplicate = false;               // also where the name exists
  PasswordSource passwords;
};
int AddUser(const Settings& settings, const AddUserRequest& request, const Output& output);

struct PasswordRequest {
  UserName user;
  PasswordSource passwords;
  bool mayMakeUser = false;  // also for a group without members, which is a user then
};
int SetUserPassword(const Settings& settings, const PasswordRequest& request, const Output& output);
// 1 when the password is wrong or there is no such user.
int CheckUser(const Settings& settings, const PasswordRequest& request, const Output& output);
int SetMustChange(const Settings& settings, const UserName& name, bool mustChange, const Output& output);
// All or none of the users of a file; "-" is standard input.
int ImportUsers(const Settings& settings, const std::string& path, const Output& output);

// Users, or groups with their members.
int ListUsers(const Settings& settings, bool groups, const Output& output);
int ListGroupsOf(const Settings& settings, const UserName& name, const Output& output);
// What the user may do himself and through his groups.
int ShowRights(const Settings& settings, const UserName& name, const Output& output);

// What restricts the user in an archive, by definitions of his own and of his groups.
struct UserArchive {
  UserName user;
  std::string channel;
  std::string archive;
};
int ShowDocumentRights(const Settings& settings, const UserArchive& request, const Output& output);
int ShowSearchRights(const Settings& settings, const UserArchive& request, const Output& output);

// What can be granted to a user or group.
struct Grants {
  std::vector<std::int32_t> rights;
  std::vector<std::int32_t> documentRights;
  std::vector<std::int32_t> searchRights;
  std::vector<std::string> edits;  // ARCHIVE=LETTERS, the letters of N (new), E (edit), D (delete)
  std::vector<std::string> archives;
  std::vector<std::string> channels;
  std::vector<std::string> groups;
  bool IsEmpty() const noexcept {
    return rights.empty() && documentRights.empty() && searchRights.empty() && edits.empty() && archives.empty() &&
           channels.empty() && groups.empty();
  }
};
// All of it or nothing; what the user has already, or has not, stays so.
int GrantToUser(const Settings& settings, const UserName& user, const Grants& grants, const Output& output);
int RevokeFromUser(const Settings& settings, const UserName& user, const Grants& grants, const Output& output);

// One thing that a user may have; exactly one is given.
struct ExplainRequest {
  UserName user;
  std::optional<std::int32_t> right;
  std::optional<std::string> edit;  // an archive
  std::optional<std::string> archive;
  std::optional<std::string> channel;
};
// Whose entries give it to the user; 1 when he does not have it.
int ExplainRight(const Settings& settings, const ExplainRequest& request, const Output& output);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_USERS_COMMANDS_H_
