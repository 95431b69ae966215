// user_database.h - the web user database for one command: the component on it, and statements on the same connection.
// Texts in statements and rows are those of the component's code page.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_USERS_DATABASE_H_
#define OXAQRYCLN_TOOLS_OXAQRY_USERS_DATABASE_H_

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "component/clsQuery.h"
#include "tools/oxaqry/cli/settings.h"

namespace oxaqrycln::oxaqry {

// Who is meant on the command line; UTF-8.
struct UserName {
  std::string name;
  std::optional<std::int32_t> id;  // which of several users of the name
};

struct WebUser {
  std::int32_t id = 0;
  std::string name;
  bool hasPassword = false;
  bool hasMembers = false;
  // A group may have members before it has any, so that the lack of a password tells it, too.
  bool IsGroup() const noexcept { return hasMembers || !hasPassword; }
};

class UserDatabase {
 public:
  enum class Tables { Expected, Any };
  using Row = std::vector<Variant>;

  // Raises CommandError when it cannot be opened, or its table Users cannot be read where the tables are expected. No
  // error tells the password in the connection string.
  explicit UserDatabase(const Settings& settings, Tables tables = Tables::Expected);
  ~UserDatabase();
  UserDatabase(const UserDatabase&) = delete;
  UserDatabase& operator=(const UserDatabase&) = delete;

  // The component, initialised. What its methods do, they do on the connection of the statements.
  clsQuery& query() { return *query_; }
  // Raises CommandError with what the database said last, if it said anything.
  [[noreturn]] void Fail(const std::string& what) const;
  // Raises CommandError when the database refused anything since the last call or statement here.
  void CheckMethod(const std::string& what) const;

  // All raise CommandError.
  std::vector<Row> Rows(const std::string& statement, std::int32_t columnCount);
  void Execute(const std::string& statement);
  // False only for a table that does not exist, not for one that cannot be read.
  bool HasTable(const std::string& table);

  // All users of a name, which is UTF-8, by ID.
  std::vector<WebUser> UsersNamed(const std::string& name);
  // The one that is meant; raises CommandError when there is none or it may be several.
  WebUser User(const UserName& user);
  // The same for a group, which a user with a password and without members is not.
  WebUser Group(const std::string& name);

  // Texts from outside for this database, from UTF-8. Both raise CommandError, which says what the text is for.
  // The name of a user or group, or of an account of the archive system.
  std::string Name(const std::string& utf8, const std::string& what) const;
  // The name of an archive or channel, which must keep its place in the lists that pages read.
  std::string Entry(const std::string& utf8, const std::string& what) const;
  // A text that one of these has returned, between the quotes of a statement.
  std::string Literal(const std::string& text) const;

 private:
  class Watched;

  std::shared_ptr<Watched> connection_;
  std::unique_ptr<clsQuery> query_;
};

// Everything until Commit, or nothing.
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
