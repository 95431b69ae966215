// database.h - the archive's SQLite database: one connection, and its prepared statements.
// Text is Windows-1252 outside and UTF-8 inside; the conversion happens here and nowhere else.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_DATABASE_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_DATABASE_H_

#include <sqlite3.h>

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

 private:
  friend class Statement;
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

  // Moves to the next row; false after the last one. Run is for statements that give no row; it makes the statement
  // ready for its next values.
  bool Next();
  void Run();

  std::int64_t Number(int column) const;
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

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_DATABASE_H_
