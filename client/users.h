// users.h - the web users of a database: log-on, groups and rights. Rights fail closed: what cannot be read is an
// exception, never "no restriction". Users belong to the thread that made them. All texts are UTF-8.
#ifndef OXAQRYCLN_CLIENT_USERS_H_
#define OXAQRYCLN_CLIENT_USERS_H_

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "client/errors.h"
#include "client/settings.h"

namespace oxaqrycln::client {

class QueryAccess;

// An account of the archive system.
struct Account {
  std::string user;
  std::string password;
};
// What a user may do in an archive.
struct EditRight {
  std::string archive;
  bool canCreate = false;
  bool canEdit = false;
  bool canDelete = false;
};
// A condition that documents must meet to be shown.
struct DocumentCondition {
  std::string definition;
  std::string fieldId;
  std::string comparison;  // "=", "<", "LIKE", ...
  std::string value;
  std::string type;  // "TXT", "NUM", ...
};
// What restricts a user's searches in an archive.
struct SearchRights {
  std::vector<std::pair<std::string, std::string>> fixedValues;  // field id and the value that a search must have
  std::vector<std::string> hiddenFields;
  std::vector<std::string> fieldsWithoutMatchcode;
};

// Every method raises DatabaseFailed when the database does not carry a statement out or what it holds cannot be read.
class Users {
 public:
  // Raises BadArgument when the settings name no database, DatabaseFailed when it cannot be opened. Uses the database,
  // the session and the log directory of the settings only.
  explicit Users(const Settings& settings);
  ~Users();
  Users(Users&&) noexcept;
  Users& operator=(Users&&) noexcept;

  // The user's ID, or nothing when the name or the password is wrong.
  std::optional<std::int32_t> LogOn(std::string_view name, std::string_view password);
  // The ID of the first user of that name.
  std::optional<std::int32_t> Find(std::string_view name);
  // Returns the new user's ID. Raises BadArgument for a name or password that cannot be stored.
  std::int32_t Create(std::string_view name, std::string_view password, const std::optional<Account>& account = {});
  // False when the old password is wrong. Raises BadArgument for a password that cannot be stored.
  bool ChangePassword(std::string_view name, std::string_view old, std::string_view password);
  bool MustChangePassword(std::int32_t user);
  void SetMustChangePassword(std::int32_t user, bool must);
  // The user's account of the archive system; nothing for a user without one.
  std::optional<Account> AccountOf(std::int32_t user);

  // What a user has himself and through the groups he is a member of.
  std::vector<std::int32_t> Rights(std::int32_t user);
  std::vector<std::string> Groups(std::int32_t user);
  std::vector<std::string> Channels(std::int32_t user);
  std::vector<std::string> Archives(std::int32_t user);
  std::vector<EditRight> EditRights(std::int32_t user);
  std::vector<DocumentCondition> DocumentConditions(std::int32_t user, std::string_view channel,
                                                    std::string_view archive);
  SearchRights RightsToSearch(std::int32_t user, std::string_view channel, std::string_view archive);

  // The expression that restricts a search to what the user may see, for SearchOptions::folderRights: of each of his
  // channels the archives that are listed for him there, or the whole channel when none is. "" when he may see nothing.
  // An archive is listed as "$(#channel)\archive", or by its name for every channel.
  std::string FolderRights(std::int32_t user);

 private:
  std::unique_ptr<QueryAccess> access_;
};

}  // namespace oxaqrycln::client

#endif  // OXAQRYCLN_CLIENT_USERS_H_
