// database.h - the web user database as the component sees it: a connection made as "ADODB.Connection".
#ifndef OXAQRYCLN_PLATFORM_DATABASE_DATABASE_H_
#define OXAQRYCLN_PLATFORM_DATABASE_DATABASE_H_

#include <cstdint>
#include <memory>
#include <string_view>

#include "values/variant.h"

namespace oxaqrycln {

// The rows of a query, one current at a time. Failures are RuntimeErrors.
class Recordset : public Object {
 public:
  virtual bool EndOfRows() const = 0;
  virtual void MoveNext() = 0;
  virtual void Close() = 0;
  // A column of the current row by its name, whatever the letter case, or by its position from 0.
  virtual Variant Field(std::string_view name) const = 0;
  virtual Variant Field(std::int32_t position) const = 0;
};

class Connection : public Object {
 public:
  static constexpr std::int32_t kClosed = 0;

  virtual void Open(std::string_view connectionString) = 0;
  // The rows of a query; no row for any other statement.
  virtual std::shared_ptr<Recordset> Execute(std::string_view statement) = 0;
  // 0 when closed.
  virtual std::int32_t State() const = 0;
  // False where a backslash in a quoted text of a statement is an escape character. It could then escape the closing
  // quote, so the component refuses texts that contain one.
  virtual bool TakesBackslashLiterally() const { return true; }
  virtual void Close() = 0;
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_DATABASE_DATABASE_H_
