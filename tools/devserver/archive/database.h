// database.h - the archive's SQLite database, through SQLiteCpp, which reports every failure as an SQLite::Exception.
// Text is UTF-8 in the database and Windows-1252 elsewhere; only this header converts it.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_DATABASE_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_DATABASE_H_

#include <SQLiteCpp/SQLiteCpp.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace oxaqrycln::devserver {

using SQLite::Database;

// Opens or creates the file; "" is a database in memory.
Database OpenDatabase(const std::string& file);

// Changes that take effect together when committed, or not at all.
class Transaction : public SQLite::Transaction {
 public:
  explicit Transaction(Database& database) : SQLite::Transaction(database, SQLite::TransactionBehavior::IMMEDIATE) {}
};

// A text that is UTF-8 already.
struct Utf8 {
  std::string_view text;
};

// A prepared statement whose text values are converted. Columns count from 0.
class Statement : public SQLite::Statement {
 public:
  // The values of the parameters, in order: numbers, texts, or a std::optional of one, which is NULL when empty.
  template <typename... Values>
  Statement(const Database& database, const std::string& sql, const Values&... values)
      : SQLite::Statement(database, sql) {
    BindAll(values...);
  }

  // Runs a statement that returns no rows, with these values or, without any, with those of the constructor.
  template <typename... Values>
  void Run(const Values&... values) {
    BindAll(values...);
    exec();
    reset();
  }

  std::int64_t Number(int column) const { return getColumn(column).getInt64(); }
  // A character without a place in the code page becomes "?".
  std::string Text(int column) const;
  // The texts of all columns.
  std::vector<std::string> Texts() const;

 private:
  template <typename... Values>
  void BindAll(const Values&... values) {
    [[maybe_unused]] int parameter = 0;
    (BindOne(++parameter, values), ...);
  }
  void BindOne(int parameter, std::int64_t number) { bind(parameter, number); }
  void BindOne(int parameter, std::string_view text);
  void BindOne(int parameter, Utf8 text) { bind(parameter, std::string(text.text)); }
  template <typename Value>
  void BindOne(int parameter, const std::optional<Value>& value) {
    value ? BindOne(parameter, *value) : bind(parameter);
  }
};

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_DATABASE_H_
