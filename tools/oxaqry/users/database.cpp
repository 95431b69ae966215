#include "tools/oxaqry/users/database.h"

#include <algorithm>

#include "component/objects.h"
#include "platform/database/database.h"
#include "platform/database/odbc_connection.h"
#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/cli/value_json.h"
#include "userdb/sql_values.h"
#include "values/code_page.h"
#include "values/errors.h"

namespace oxaqrycln::oxaqry {
namespace {

constexpr const char* kConnectionId = "ADODB.Connection";

// The component makes its connection from the registry; while this lives, it gets the one that the tool holds.
class ConnectionForComponent {
 public:
  explicit ConnectionForComponent(std::shared_ptr<Connection> connection) {
    RegisterObject(kConnectionId, [connection = std::move(connection)] { return connection; });
  }
  ~ConnectionForComponent() { RegisterObject(kConnectionId, MakeOdbcConnection); }
  ConnectionForComponent(const ConnectionForComponent&) = delete;
  ConnectionForComponent& operator=(const ConnectionForComponent&) = delete;
};

std::string Quoted(const std::string& text) { return "\"" + text + "\""; }

// By the state that most drivers give, or the words of SQLite's, whose state tells nothing.
bool TellsMissingTable(const std::string& reason) {
  return reason.starts_with("[42P01]") || reason.starts_with("[42S02]") ||
         reason.find("no such table") != std::string::npos;
}

// A text beyond the code page hides no other: something else stands in its place.
Variant Readable(const Recordset& rows, std::int32_t column) {
  try {
    return rows.Field(column);
  } catch (const RuntimeError& why) {
    if (why.number() != error::kTypeMismatch) throw;
    return "(not in Windows-1252)";
  }
}

}  // namespace

// Keeps what the database said last, which the component's methods only log.
class UserDatabase::Watched final : public Connection {
 public:
  void Open(std::string_view connectionString) override {
    Watch([&] { connection_->Open(connectionString); });
  }
  std::shared_ptr<Recordset> Execute(std::string_view statement) override {
    std::shared_ptr<Recordset> rows;
    Watch([&] { rows = connection_->Execute(statement); });
    return rows;
  }
  std::int32_t State() const override { return connection_->State(); }
  bool TakesBackslashLiterally() const override { return connection_->TakesBackslashLiterally(); }
  void Close() override { connection_->Close(); }

  // UTF-8; "" when it worked.
  const std::string& reason() const noexcept { return reason_; }

 private:
  template <typename Action>
  void Watch(Action&& action) {
    reason_.clear();
    try {
      action();
    } catch (const RuntimeError& error) {
      std::string reason = error.description();
      std::ranges::replace(reason, '\t', ' ');
      reason_ = Printable(reason);
      throw;
    }
  }

  const std::shared_ptr<Connection> connection_ = MakeOdbcConnection();
  std::string reason_;
};

UserDatabase::UserDatabase(const Settings& settings, Tables tables)
    : connection_(std::make_shared<Watched>()), query_(settings.MakeQuery()) {
  if (settings.Text("strDBConnect").empty()) {
    throw CommandError(
        "no web user database is set: give OXAQRY_DATABASE, strDBConnect in the configuration file, or --database");
  }
  {
    const ConnectionForComponent forComponent(connection_);
    if (!query_->Init()) Fail("the web user database cannot be opened");
  }
  if (tables == Tables::Expected && !HasTable("Users")) {
    Fail("the table Users cannot be read, which \"oxaqry user init\" makes in an empty database");
  }
}

UserDatabase::~UserDatabase() = default;

void UserDatabase::Fail(const std::string& what) const {
  const std::string& reason = connection_->reason();
  throw CommandError(what + (reason.empty() ? "" : ": " + reason));
}

void UserDatabase::CheckMethod(const std::string& what) const {
  if (!connection_->reason().empty()) Fail(what);
}

std::vector<UserDatabase::Row> UserDatabase::Rows(const std::string& statement, std::int32_t columnCount) {
  std::vector<Row> all;
  try {
    const auto rows = connection_->Execute(statement);
    for (; !rows->EndOfRows(); rows->MoveNext()) {
      Row& row = all.emplace_back();
      for (std::int32_t i = 0; i < columnCount; ++i) row.push_back(Readable(*rows, i));
    }
  } catch (const RuntimeError&) {
    Fail("the web user database cannot be read");
  }
  return all;
}

void UserDatabase::Execute(const std::string& statement) {
  try {
    connection_->Execute(statement);
  } catch (const RuntimeError&) {
    Fail("the web user database cannot be changed");
  }
}

bool UserDatabase::HasTable(const std::string& table) {
  try {
    connection_->Execute("SELECT 1 FROM " + table + " WHERE 1=0");
    return true;
  } catch (const RuntimeError&) {
    if (!TellsMissingTable(connection_->reason())) Fail("the table " + table + " cannot be read");
    return false;
  }
}

std::vector<WebUser> UserDatabase::UsersNamed(const std::string& name) {
  const std::string text = Literal(Name(name, "the name"));
  std::vector<WebUser> users;
  for (const Row& row : Rows("SELECT UserID, UserName, CASE WHEN Passwd IS NULL THEN 0 ELSE 1 END, CASE WHEN UserID IN "
                             "(SELECT GroupID FROM UserGroups) THEN 1 ELSE 0 END FROM Users WHERE UserName=" +
                                 text + " ORDER BY UserID",
                             4)) {
    users.push_back({row[0].ToLong(), row[1].ToText(), row[2].ToLong() != 0, row[3].ToLong() != 0});
  }
  return users;
}

WebUser UserDatabase::User(const UserName& user) {
  const std::vector<WebUser> users = UsersNamed(user.name);
  if (users.empty()) throw CommandError("there is no user " + Quoted(user.name));
  if (!user.id) {
    if (users.size() == 1) return users.front();
    std::string ids;
    for (const WebUser& each : users) ids += (ids.empty() ? "" : ", ") + std::to_string(each.id);
    throw CommandError("there are several users " + Quoted(user.name) + ": tell which one is meant with --id (" + ids +
                       ")");
  }
  for (const WebUser& each : users) {
    if (each.id == *user.id) return each;
  }
  throw CommandError("the user " + std::to_string(*user.id) + " is not named " + Quoted(user.name));
}

WebUser UserDatabase::Group(const std::string& name) {
  if (name.empty()) throw CommandError("the name of the group is empty");
  std::vector<WebUser> groups;
  for (WebUser& each : UsersNamed(name)) {
    if (each.IsGroup()) groups.push_back(std::move(each));
  }
  if (groups.empty()) {
    throw CommandError("there is no group " + Quoted(name) + ", which \"oxaqry user add --group\" makes");
  }
  if (groups.size() > 1) throw CommandError("there are several groups " + Quoted(name));
  return groups.front();
}

std::string UserDatabase::Name(const std::string& utf8, const std::string& what) const {
  if (utf8.empty()) throw CommandError(what + " is empty");
  const auto text = FromUtf8(utf8);
  if (!text) throw CommandError(what + " holds a character that has no place in the code page Windows-1252");
  if (!IsPrintable(*text)) throw CommandError(what + " holds a control character");
  if (text->find('\'') != std::string::npos) {
    throw CommandError(what + " holds a single quote, which the web user database does not take");
  }
  if (text->find('\\') != std::string::npos && !connection_->TakesBackslashLiterally()) {
    throw CommandError(what + " holds a backslash, which this database takes as an escape character");
  }
  return *text;
}

std::string UserDatabase::Entry(const std::string& utf8, const std::string& what) const {
  std::string text = Name(utf8, what);
  if (text.find_first_of("^,") != std::string::npos) {
    throw CommandError(what + " holds \"^\" or \",\", which divide the lists that pages read");
  }
  return text;
}

std::string UserDatabase::Literal(const std::string& text) const { return SqlText(*connection_, text); }

UserTransaction::UserTransaction(UserDatabase& database) : database_(database) {
  database_.Execute("BEGIN TRANSACTION");
}

UserTransaction::~UserTransaction() {
  if (!isOpen_) return;
  try {
    database_.Execute("ROLLBACK");
  } catch (const CommandError&) {  // the database undoes it when the connection ends
  }
}

void UserTransaction::Commit() {
  database_.Execute("COMMIT");
  isOpen_ = false;
}

}  // namespace oxaqrycln::oxaqry
