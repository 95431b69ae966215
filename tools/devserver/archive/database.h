// database.h - the archive's SQLite database: one connection, and its prepared statements.
// Text is Windows-1252 outside and UTF-8 inside; the conversion happens here and nowhere else.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_DATABASE_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_DATABASE_H_

#include <sqlite3.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace oxaqrycln::devserver {

// Every function raises ServerError with SQLite's message on failure.
class Database {
 public:
  // Opens or creates the file; "" is a database in memory.
  explicit Database(const std::string& file);

  // Runs statements without results.
  void Execute(const std::string& sql);
  // The number of the row inserted last.
  std::int64_t LastRow() const;

 private:
  friend class Statement;
  friend class ContentBytes;
  struct Close {
    void operator()(sqlite3* handle) const { sqlite3_close(handle); }
  };
  std::unique_ptr<sqlite3, Close> handle_;
};

// One prepared statement. Parameters count from 1, columns from 0.
class Statement {
 public:
  Statement(Database& database, std::string_view sql);

  Statement& Bind(int parameter, std::int64_t number);
  Statement& Bind(int parameter, std::string_view text);
  Statement& BindUtf8(int parameter, std::string_view text);
  Statement& BindNull(int parameter);
  // That many zero bytes, to be written by ContentBytes.
  Statement& BindZeroBytes(int parameter, std::int64_t byteCount);

  // Moves to the next row; false after the last one. Run is for statements that give no row; it makes the statement
  // ready for its next values.
  bool Next();
  void Run();

  std::int64_t Number(int column) const;
  bool IsNull(int column) const;
  // A character without a place in the code page becomes "?".
  std::string Text(int column) const;

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* handle) const { sqlite3_finalize(handle); }
  };
  void Check(int result);

  sqlite3* connection_;
  std::unique_ptr<sqlite3_stmt, Finalize> handle_;
};

// Changes that happen all together, when committed, or not at all.
class Transaction {
 public:
  explicit Transaction(Database& database);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  void Commit();

 private:
  Database& database_;
  bool open_ = true;
};

// The bytes of one row of the table content, read or written piece by piece.
class ContentBytes {
 public:
  enum class Access { kRead, kWrite };
  ContentBytes(Database& database, std::int64_t row, Access access);

  std::size_t byteCount() const;
  // Moves up to room bytes out or in, from where the last move ended. Read gives 0 at the end only; Write raises
  // ServerError behind it.
  std::size_t Read(char* to, std::size_t room);
  void Write(std::string_view bytes);

 private:
  struct Close {
    void operator()(sqlite3_blob* handle) const { sqlite3_blob_close(handle); }
  };
  void Check(int result) const;

  sqlite3* connection_;
  std::unique_ptr<sqlite3_blob, Close> handle_;
  std::size_t position_ = 0;
};

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_DATABASE_H_
