// database.h - the web user database for one command: the component on it, and statements on the same connection.
// Texts in statements and rows are those of the component's code page; those of a WebUser are UTF-8.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_USERS_DATABASE_H_
#define OXAQRYCLN_TOOLS_OXAQRY_USERS_DATABASE_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "client/users.h"
#include "component/clsQuery.h"
#include "component/query_watch.h"
#include "platform/database/database.h"
#include "tools/oxaqry/cli/settings.h"

namespace oxaqrycln::oxaqry {

// Who is meant on the command line; UTF-8.
struct UserName {
  std::string name;
  std::optional<std::int32_t> id;  // which of several users of the name
};

struct WebUser {
  std::int32_t id = 0;
  std::string name;  // UTF-8
  bool hasPassword = false;
  bool hasMembers = false;
  bool hasFlag = false;  // ChangePasswd is not Null: must or need not change the password
  // Neither a new group, which has no members yet, nor a disabled user has a password. Only users have the flag.
  bool IsGroup() const noexcept { return hasMembers || (!hasPassword && !hasFlag); }
  bool IsDisabled() const noexcept { return !hasPassword && !IsGroup(); }
  const char* Kind() const noexcept { return IsGroup() ? "group" : "user"; }
};

// What a statement returns for a text with characters outside the code page.
inline constexpr const char* kUnreadable = "(not in Windows-1252)";

class UserDatabase {
 public:
  using Row = std::vector<Variant>;
  using Values = std::vector<Variant>;

  // Raises CommandError when the database cannot be opened. No error shows the password in the connection string.
  explicit UserDatabase(const Settings& settings);
  ~UserDatabase();
  UserDatabase(const UserDatabase&) = delete;
  UserDatabase& operator=(const UserDatabase&) = delete;

  // Those of the constructor, which live as long as the caller keeps them.
  const Settings& settings() const noexcept { return settings_; }
  // The component, initialised. Its methods use the connection of the statements.
  clsQuery& query() { return *query_; }
  // The result of the method of the component that was just called. Raises CommandError when the method failed: it
  // handled an error, or the result is Empty or a negative number.
  Variant Checked(Variant result, const std::string& failure) const;

  // The client layer, on a connection of its own.
  client::Users OnLayer() const { return client::Users(settings_.ForDatabase()); }

  // Statements; a value, a whole number or a text, replaces each "?" of the statement. All raise CommandError.
  std::vector<Row> Rows(std::int32_t columnCount, std::string_view statement, const Values& values = {});
  void Execute(std::string_view statement, const Values& values = {});
  // Whether "SELECT 1 FROM ..." finds a row.
  bool Exists(const std::string& tableAndCondition, const Values& values);
  // False only for a table that does not exist, not for one that cannot be read.
  bool HasTable(const std::string& table);
  // Raises CommandError unless the table Users can be read.
  void RequireTables();

  // All users and groups by ID, and those of a name, which is UTF-8.
  std::vector<WebUser> Users();
  std::vector<WebUser> UsersNamed(const std::string& name);
  // The one that is meant; raises CommandError when there is none or more than one.
  WebUser User(const UserName& user);
  // The same for a group.
  WebUser Group(const std::string& name);

  // Text from outside for this database, from UTF-8. Both raise CommandError, which says what the text is for.
  // The name of a user or group, or of an account of the archive system.
  std::string Name(const std::string& utf8, const std::string& what) const;
  // The name of an archive or channel, which becomes an entry of the lists that pages read and a term of the expression
  // that restricts searches; "$(#CHANNEL)\ARCHIVE" for an archive of one channel.
  std::string ArchiveEntry(const std::string& utf8, const std::string& what) const;
  std::string ChannelEntry(const std::string& utf8, const std::string& what) const;

 private:
  std::string Entry(const std::string& utf8, const std::string& what) const;
  std::vector<WebUser> UsersWhere(const std::string& condition, const Values& values);
  std::string Literal(const std::string& text, const std::string& what) const;
  std::string Fill(std::string_view statement, const Values& values) const;

  const Settings& settings_;
  const std::unique_ptr<clsQuery> query_;
  const std::shared_ptr<Connection> connection_;
  QueryWatch watch_;
};

// A transaction; it is rolled back unless it is committed.
class UserTransaction {
 public:
  explicit UserTransaction(UserDatabase& database);
  ~UserTransaction();
  UserTransaction(const UserTransaction&) = delete;
  UserTransaction& operator=(const UserTransaction&) = delete;
  void Commit();

 private:
  UserDatabase& database_;
  bool isOpen_ = true;
};

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_USERS_DATABASE_H_
