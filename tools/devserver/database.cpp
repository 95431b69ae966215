#include "tools/devserver/database.h"

#include "platform/code_page.h"
#include "tools/devserver/errors.h"

namespace oxaqrycln::devserver {
namespace {

// Converts character by character, so that one foreign character does not cost the text.
std::string FromUtf8OrQuestionMarks(std::string_view utf8) {
  if (auto whole = FromUtf8(utf8)) return *whole;
  std::string text;
  for (std::size_t start = 0, end = 0; start < utf8.size(); start = end) {
    end = start + 1;
    while (end < utf8.size() && (static_cast<unsigned char>(utf8[end]) & 0xC0U) == 0x80U) ++end;
    text += FromUtf8(utf8.substr(start, end - start)).value_or("?");
  }
  return text;
}

}  // namespace

Database::Database(const std::string& file) {
  sqlite3* handle = nullptr;
  const std::string name = file.empty() ? ":memory:" : file;
  const int result = sqlite3_open_v2(name.c_str(), &handle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
  handle_.reset(handle);
  if (result != SQLITE_OK) throw ServerError("Database '" + name + "': " + sqlite3_errstr(result));
  sqlite3_extended_result_codes(handle, 0);
}

void Database::Execute(const std::string& sql) {
  if (sqlite3_exec(handle_.get(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
    throw ServerError(std::string("Database: ") + sqlite3_errmsg(handle_.get()));
  }
}

Statement::Statement(Database& database, std::string_view sql) : connection_(database.handle_.get()) {
  sqlite3_stmt* handle = nullptr;
  Check(sqlite3_prepare_v2(connection_, sql.data(), static_cast<int>(sql.size()), &handle, nullptr));
  handle_.reset(handle);
}

void Statement::Check(int result) {
  if (result != SQLITE_OK) throw ServerError(std::string("Database: ") + sqlite3_errmsg(connection_));
}

Statement& Statement::Bind(int parameter, std::int64_t number) {
  Check(sqlite3_bind_int64(handle_.get(), parameter, number));
  return *this;
}

Statement& Statement::Bind(int parameter, std::string_view text) { return BindUtf8(parameter, ToUtf8(text)); }

Statement& Statement::BindUtf8(int parameter, std::string_view text) {
  // A null pointer would bind NULL instead of the empty text.
  const char* data = text.empty() ? "" : text.data();
  Check(sqlite3_bind_text(handle_.get(), parameter, data, static_cast<int>(text.size()), SQLITE_TRANSIENT));
  return *this;
}

bool Statement::Next() {
  const int result = sqlite3_step(handle_.get());
  if (result == SQLITE_ROW) return true;
  Check(result == SQLITE_DONE ? SQLITE_OK : result);
  return false;
}

void Statement::Run() {
  Next();
  Check(sqlite3_reset(handle_.get()));
}

std::int64_t Statement::Number(int column) const { return sqlite3_column_int64(handle_.get(), column); }

std::string Statement::Text(int column) const {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(handle_.get(), column));
  const auto byteCount = static_cast<std::size_t>(sqlite3_column_bytes(handle_.get(), column));
  return text == nullptr ? std::string() : FromUtf8OrQuestionMarks({text, byteCount});
}

}  // namespace oxaqrycln::devserver
