#include "tools/oxaqry/users/database.h"

#include <algorithm>

#include "component/objects.h"
#include "tools/oxaqry/cli/errors.h"
#include "tools/oxaqry/cli/table.h"
#include "values/code_page.h"
#include "values/errors.h"

namespace oxaqrycln::oxaqry {
namespace {

std::string Quoted(const std::string& text) { return "\"" + text + "\""; }

[[noreturn]] void Fail(const std::string& what, std::string reason) {
  std::ranges::replace(reason, '\t', ' ');
  throw CommandError(what + (reason.empty() ? "" : ": " + Printable(ToUtf8(reason))));
}

// By the state that most drivers give, or by the message of SQLite's, whose state is a general one.
bool IsMissingTable(const std::string& reason) {
  return reason.starts_with("[42P01]") || reason.starts_with("[42S02]") ||
         reason.find("no such table") != std::string::npos;
}

// A text with characters outside the code page must not end the list; a note takes its place.
Variant Readable(const Recordset& rows, std::int32_t column) {
  try {
    return rows.Field(column);
  } catch (const RuntimeError& why) {
    if (why.number() != error::kTypeMismatch) throw;
    return kUnreadable;
  }
}

}  // namespace

UserDatabase::UserDatabase(const Settings& settings)
    : settings_(settings),
      query_(settings.MakeQuery()),
      connection_(std::dynamic_pointer_cast<Connection>(CreateObject("ADODB.Connection"))),
      watch_(*query_) {
  const std::string connectionString = settings.Text("strDBConnect");
  if (connectionString.empty()) {
    throw CommandError(
        "no web user database is set: give OXAQRY_DATABASE, strDBConnect in the configuration file, or --database");
  }
  try {
    connection_->Open(connectionString);
  } catch (const RuntimeError& why) {
    Fail("the web user database cannot be opened", why.description());
  }
  watch_.UseDatabase(connection_);
  if (!query_->Init(false)) Fail("the component cannot be initialised", watch_.LastError().description);
}

UserDatabase::~UserDatabase() = default;

Variant UserDatabase::Checked(Variant result, const std::string& failure) const {
  const auto& error = watch_.LastError();
  if (error.number != 0) Fail(failure, error.description);
  const bool isNumber = result.type() == Variant::Type::Integer || result.type() == Variant::Type::Long;
  if (result.IsEmpty() || (isNumber && result.ToLong() < 0)) Fail(failure, "");
  return result;
}

std::vector<UserDatabase::Row> UserDatabase::Rows(std::int32_t columnCount, std::string_view statement,
                                                  const Values& values) {
  std::vector<Row> all;
  try {
    const auto rows = connection_->Execute(Fill(statement, values));
    for (; !rows->EndOfRows(); rows->MoveNext()) {
      Row& row = all.emplace_back();
      for (std::int32_t i = 0; i < columnCount; ++i) row.push_back(Readable(*rows, i));
    }
  } catch (const RuntimeError& why) {
    Fail("the web user database cannot be read", why.description());
  }
  return all;
}

void UserDatabase::Execute(std::string_view statement, const Values& values) {
  try {
    connection_->Execute(Fill(statement, values));
  } catch (const RuntimeError& why) {
    Fail("the web user database cannot be changed", why.description());
  }
}

bool UserDatabase::Exists(const std::string& tableAndCondition, const Values& values) {
  return !Rows(1, "SELECT 1 FROM " + tableAndCondition, values).empty();
}

bool UserDatabase::HasTable(const std::string& table) {
  try {
    connection_->Execute("SELECT 1 FROM " + table + " WHERE 1=0");
    return true;
  } catch (const RuntimeError& why) {
    if (!IsMissingTable(why.description())) Fail("the table " + table + " cannot be read", why.description());
    return false;
  }
}

void UserDatabase::RequireTables() {
  if (!HasTable("Users")) {
    throw CommandError("there is no table Users; \"oxaqry user init\" creates the tables in an empty database");
  }
}

std::vector<WebUser> UserDatabase::UsersWhere(const std::string& condition, const Values& values) {
  std::vector<WebUser> users;
  for (const Row& row : Rows(5,
                             "SELECT UserID, UserName, CASE WHEN Passwd IS NULL THEN 0 ELSE 1 END, CASE WHEN UserID IN "
                             "(SELECT GroupID FROM UserGroups) THEN 1 ELSE 0 END, CASE WHEN ChangePasswd IS NULL THEN "
                             "0 ELSE 1 END FROM Users " +
                                 condition + " ORDER BY UserID",
                             values)) {
    users.push_back(
        {row[0].ToLong(), ToUtf8(row[1].ToText()), row[2].ToLong() != 0, row[3].ToLong() != 0, row[4].ToLong() != 0});
  }
  return users;
}

std::vector<WebUser> UserDatabase::Users() { return UsersWhere("", {}); }

std::vector<WebUser> UserDatabase::UsersNamed(const std::string& name) {
  return UsersWhere("WHERE UserName=?", {Name(name, "the name")});
}

WebUser UserDatabase::User(const UserName& user) {
  const std::vector<WebUser> users = UsersNamed(user.name);
  if (users.empty()) throw CommandError("there is no user " + Quoted(user.name));
  if (!user.id && users.size() == 1) return users.front();
  std::string ids;
  for (const WebUser& each : users) {
    if (each.id == user.id) return each;
    ids += (ids.empty() ? "" : ", ") + std::to_string(each.id);
  }
  if (user.id)
    throw CommandError("the user with ID " + std::to_string(*user.id) + " is not named " + Quoted(user.name));
  throw CommandError("there are several users " + Quoted(user.name) + ": select one with --id (" + ids + ")");
}

WebUser UserDatabase::Group(const std::string& name) {
  if (name.empty()) throw CommandError("the name of the group is empty");
  std::vector<WebUser> groups = UsersNamed(name);
  std::erase_if(groups, [](const WebUser& each) { return !each.IsGroup(); });
  if (groups.empty()) {
    throw CommandError("there is no group " + Quoted(name) + "; \"oxaqry user add --group\" creates one");
  }
  if (groups.size() > 1) throw CommandError("there are several groups " + Quoted(name));
  return groups.front();
}

std::string UserDatabase::Name(const std::string& utf8, const std::string& what) const {
  if (utf8.empty()) throw CommandError(what + " is empty");
  const auto text = FromUtf8(utf8);
  if (!text) throw CommandError(what + " contains a character that is not in the code page Windows-1252");
  if (!IsPrintable(utf8)) throw CommandError(what + " contains a control character");
  Literal(*text, what);
  return *text;
}

std::string UserDatabase::Entry(const std::string& utf8, const std::string& what) const {
  std::string text = Name(utf8, what);
  if (text.find_first_of("^,") != std::string::npos) {
    throw CommandError(what + " contains \"^\" or \",\", which separate the entries of the lists that pages read");
  }
  if (text.find(';') != std::string::npos) {
    throw CommandError(what + " contains \";\", which separates the folder rights of a search");
  }
  return text;
}

std::string UserDatabase::ChannelEntry(const std::string& utf8, const std::string& what) const {
  std::string text = Entry(utf8, what);
  if (text.find_first_of("()") != std::string::npos) {
    throw CommandError(what + " contains a parenthesis, which ends the channel in the folder rights of a search");
  }
  return text;
}

std::string UserDatabase::ArchiveEntry(const std::string& utf8, const std::string& what) const {
  constexpr std::string_view kStart = "$(#";
  std::string text = Entry(utf8, what);
  if (!text.starts_with(kStart)) return text;
  const std::size_t end = text.find(")\\");
  const std::size_t close = text.find_first_of("()", kStart.size());
  if (end != close || end == kStart.size() || end == std::string::npos || end + 2 == text.size()) {
    throw CommandError(what + " is not of the form CHANNEL/ARCHIVE, with a channel without parentheses");
  }
  return text;
}

// Refuses what the component refuses, so that both accept the same names.
std::string UserDatabase::Literal(const std::string& text, const std::string& what) const {
  if (text.find('\'') != std::string::npos) {
    throw CommandError(what + " contains a single quote, which the web user database does not accept");
  }
  if (text.find('\\') != std::string::npos && !connection_->TakesBackslashLiterally()) {
    throw CommandError(what + " contains a backslash, which this database takes as an escape character");
  }
  return "'" + text + "'";
}

// A connection takes whole statements only, without parameters.
std::string UserDatabase::Fill(std::string_view statement, const Values& values) const {
  std::string filled;
  for (const Variant& value : values) {
    const std::size_t mark = statement.find('?');
    filled.append(statement.substr(0, mark));
    const bool isText = value.type() == Variant::Type::String;
    filled += isText ? Literal(value.ToText(), "a text") : std::to_string(value.ToLong());
    statement.remove_prefix(mark + 1);
  }
  return filled.append(statement);
}

UserTransaction::UserTransaction(UserDatabase& database) : database_(database) {
  database_.Execute("BEGIN TRANSACTION");
}

UserTransaction::~UserTransaction() {
  if (!isOpen_) return;
  try {
    database_.Execute("ROLLBACK");
  } catch (const CommandError&) {  // the database rolls back when the connection closes
  }
}

void UserTransaction::Commit() {
  database_.Execute("COMMIT");
  isOpen_ = false;
}

}  // namespace oxaqrycln::oxaqry
