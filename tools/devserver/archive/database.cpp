#include "tools/devserver/archive/database.h"

#include <algorithm>

#include "tools/devserver/protocol/errors.h"
#include "values/code_page.h"

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
  sqlite3_busy_timeout(handle, 2000);
  // A change that was answered is on the disk, whatever happens to the machine.
  Execute("PRAGMA synchronous = EXTRA; PRAGMA foreign_keys = ON; PRAGMA temp_store = MEMORY");
}

void Database::Execute(const std::string& sql) {
  if (sqlite3_exec(handle_.get(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
    throw ServerError(std::string("Database: ") + sqlite3_errmsg(handle_.get()));
  }
}

std::int64_t Database::LastRow() const { return sqlite3_last_insert_rowid(handle_.get()); }

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

Statement& Statement::BindNull(int parameter) {
  Check(sqlite3_bind_null(handle_.get(), parameter));
  return *this;
}

Statement& Statement::BindZeroBytes(int parameter, std::int64_t byteCount) {
  Check(sqlite3_bind_zeroblob64(handle_.get(), parameter, static_cast<sqlite3_uint64>(byteCount)));
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

bool Statement::IsNull(int column) const { return sqlite3_column_type(handle_.get(), column) == SQLITE_NULL; }

std::string Statement::Text(int column) const {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(handle_.get(), column));
  const auto byteCount = static_cast<std::size_t>(sqlite3_column_bytes(handle_.get(), column));
  return text == nullptr ? std::string() : FromUtf8OrQuestionMarks({text, byteCount});
}

Transaction::Transaction(Database& database) : database_(database) { database_.Execute("BEGIN IMMEDIATE"); }

Transaction::~Transaction() {
  if (!open_) return;
  try {
    database_.Execute("ROLLBACK");
  } catch (const ServerError&) {  // SQLite has rolled back by itself
  }
}

void Transaction::Commit() {
  database_.Execute("COMMIT");
  open_ = false;
}

ContentBytes::ContentBytes(Database& database, std::int64_t row, Access access) : connection_(database.handle_.get()) {
  sqlite3_blob* handle = nullptr;
  Check(sqlite3_blob_open(connection_, "main", "content", "bytes", row, access == Access::kWrite ? 1 : 0, &handle));
  handle_.reset(handle);
}

void ContentBytes::Check(int result) const {
  if (result != SQLITE_OK) throw ServerError(std::string("Database: ") + sqlite3_errmsg(connection_));
}

std::size_t ContentBytes::byteCount() const { return static_cast<std::size_t>(sqlite3_blob_bytes(handle_.get())); }

std::size_t ContentBytes::Read(char* to, std::size_t room) {
  const std::size_t count = std::min(room, byteCount() - position_);
  Check(sqlite3_blob_read(handle_.get(), to, static_cast<int>(count), static_cast<int>(position_)));
  position_ += count;
  return count;
}

void ContentBytes::Write(std::string_view bytes) {
  if (bytes.size() > byteCount() - position_) throw ServerError("The content is longer than announced");
  Check(sqlite3_blob_write(handle_.get(), bytes.data(), static_cast<int>(bytes.size()), static_cast<int>(position_)));
  position_ += bytes.size();
}

}  // namespace oxaqrycln::devserver
