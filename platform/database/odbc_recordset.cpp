#include "platform/database/odbc_recordset.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "values/code_page.h"
#include "values/errors.h"

namespace oxaqrycln {
namespace {

constexpr std::int32_t kNoCurrentRow = 3021;
constexpr std::int32_t kNoSuchColumn = 3265;
constexpr std::int32_t kClosedObject = 3704;

struct Column {
  std::string name;
  SQLSMALLINT type = 0;
};

// The result of a query, read whole: the cells row by row, and the errors met, each raised when its place is reached.
struct ResultSet {
  std::vector<Column> columns;
  std::vector<Variant> cells;
  std::map<std::size_t, RuntimeError> unreadable;  // by the cell's index
  std::optional<RuntimeError> end;                 // why there are no further rows
};

class Rows final : public Recordset {
 public:
  explicit Rows(ResultSet result) : result_(std::move(result)) {}

  bool EndOfRows() const override {
    RequireOpen();
    return row_ * result_.columns.size() >= result_.cells.size();
  }
  void MoveNext() override {
    RequireRow();
    ++row_;
    if (result_.end && EndOfRows()) throw RuntimeError(*result_.end);
  }
  void Close() override {
    RequireOpen();
    isOpen_ = false;
    result_.cells.clear();
  }
  Variant Field(std::string_view name) const override {
    RequireRow();
    const std::string upper = UpperCase(name);
    for (std::size_t i = 0; i < result_.columns.size(); ++i) {
      if (UpperCase(result_.columns[i].name) == upper) return Cell(i);
    }
    throw RuntimeError(kNoSuchColumn, "There is no column \"" + std::string(name) + "\"");
  }
  Variant Field(std::int32_t position) const override {
    RequireRow();
    if (position < 0 || static_cast<std::size_t>(position) >= result_.columns.size()) {
      throw RuntimeError(kNoSuchColumn, "There is no column " + std::to_string(position));
    }
    return Cell(static_cast<std::size_t>(position));
  }

 private:
  Variant Cell(std::size_t column) const {
    const std::size_t index = row_ * result_.columns.size() + column;
    const auto unreadable = result_.unreadable.find(index);
    if (unreadable != result_.unreadable.end()) throw RuntimeError(unreadable->second);
    return result_.cells[index];
  }
  void RequireOpen() const {
    if (!isOpen_) throw RuntimeError(kClosedObject, "The recordset is closed");
  }
  void RequireRow() const {
    if (EndOfRows()) throw RuntimeError(kNoCurrentRow, "There is no current row");
  }

  ResultSet result_;
  std::size_t row_ = 0;
  bool isOpen_ = true;
};

// Reads the values of one column of the current row.
class CellReader {
 public:
  CellReader(const OdbcHandle& statement, SQLUSMALLINT number, OdbcText text) noexcept
      : statement_(statement), number_(number), text_(text) {}

  Variant Read(SQLSMALLINT type) const {
    switch (type) {
      case SQL_BIT:
        return Fixed<SQLCHAR>(SQL_C_BIT, [](SQLCHAR value) { return Variant(value != 0); });
      case SQL_TINYINT:
      case SQL_SMALLINT:
        return Fixed<SQLINTEGER>(SQL_C_SLONG, [](std::int32_t value) { return Variant(Variant(value).ToInteger()); });
      case SQL_INTEGER:
      case SQL_BIGINT:
        return Fixed<SQLBIGINT>(SQL_C_SBIGINT, [](SQLBIGINT value) { return Number(static_cast<double>(value)); });
      case SQL_REAL:
      case SQL_FLOAT:
      case SQL_DOUBLE:
        return Fixed<double>(SQL_C_DOUBLE, [](double value) { return Variant(value); });
      case SQL_NUMERIC:
      case SQL_DECIMAL: {
        const Variant text = Text();
        return text.IsNull() ? text : Number(text.ToDouble());
      }
      case SQL_BINARY:
      case SQL_VARBINARY:
      case SQL_LONGVARBINARY:
        return Binary();
      default:
        return Text();
    }
  }

 private:
  // A whole number that fits is a Long.
  static Variant Number(double value) {
    constexpr double kMost = std::numeric_limits<std::int32_t>::max();
    if (value != std::trunc(value) || value > kMost || value < -kMost - 1) return value;
    return static_cast<std::int32_t>(value);
  }

  template <typename Value, typename Make>
  Variant Fixed(SQLSMALLINT type, Make&& make) const {
    Value value{};
    SQLLEN length = 0;
    statement_.Check(SQLGetData(statement_.get(), number_, type, &value, sizeof value, &length));
    return length == SQL_NULL_DATA ? Variant::Null() : make(value);
  }

  // Bytes of any length, read in pieces whose terminators are dropped; false for Null.
  bool Pieces(SQLSMALLINT type, std::size_t terminator, std::string& bytes) const {
    std::array<char, 8192> piece;  // NOLINT: filled by the driver
    for (;;) {
      SQLLEN length = 0;
      const SQLRETURN outcome = SQLGetData(statement_.get(), number_, type, piece.data(), piece.size(), &length);
      statement_.Check(outcome);
      if (outcome == SQL_NO_DATA) return true;
      if (length == SQL_NULL_DATA) return false;
      const std::size_t room = piece.size() - terminator;
      const bool isCut = length == SQL_NO_TOTAL || static_cast<std::size_t>(length) > room;
      bytes.append(piece.data(), isCut ? room : static_cast<std::size_t>(length));
      if (!isCut) return true;
    }
  }

  Variant Text() const {
    std::string bytes;
    if (text_ == OdbcText::Wide) {
      if (!Pieces(SQL_C_WCHAR, sizeof(SQLWCHAR), bytes)) return Variant::Null();
      return FromWide(reinterpret_cast<const SQLWCHAR*>(bytes.data()), bytes.size() / sizeof(SQLWCHAR), false);
    }
    if (!Pieces(SQL_C_CHAR, 1, bytes)) return Variant::Null();
    auto text = FromUtf8(bytes);
    if (!text) {
      throw RuntimeError(error::kTypeMismatch, "The database holds a text that has no place in the code page");
    }
    return *std::move(text);
  }

  Variant Binary() const {
    std::string bytes;
    if (!Pieces(SQL_C_BINARY, 0, bytes)) return Variant::Null();
    return Variant::Bytes(bytes.begin(), bytes.end());
  }

  const OdbcHandle& statement_;
  const SQLUSMALLINT number_;
  const OdbcText text_;
};

Column Describe(const OdbcHandle& statement, SQLUSMALLINT number) {
  std::array<SQLWCHAR, 256> name{};
  Column column;
  SQLSMALLINT length = 0;
  SQLULEN size = 0;
  SQLSMALLINT digits = 0;
  SQLSMALLINT nullable = 0;
  statement.Check(SQLDescribeColW(statement.get(), number, name.data(), static_cast<SQLSMALLINT>(name.size()), &length,
                                  &column.type, &size, &digits, &nullable));
  column.name = FromWide(name.data(), std::min(static_cast<std::size_t>(length), name.size() - 1), true);
  return column;
}

// False after the last row. An error after some rows is raised when those rows have been read.
bool FetchRow(const OdbcHandle& statement, ResultSet& result) {
  const SQLRETURN outcome = SQLFetch(statement.get());
  try {
    statement.Check(outcome);
  } catch (const RuntimeError& why) {
    if (result.cells.empty()) throw;
    result.end = why;
    return false;
  }
  return outcome != SQL_NO_DATA;
}

}  // namespace

std::shared_ptr<Recordset> ReadRows(const OdbcHandle& statement, OdbcText text) {
  SQLSMALLINT count = 0;
  statement.Check(SQLNumResultCols(statement.get(), &count));
  ResultSet result;
  for (SQLSMALLINT i = 1; i <= count; ++i) {
    result.columns.push_back(Describe(statement, static_cast<SQLUSMALLINT>(i)));
  }
  while (count > 0 && FetchRow(statement, result)) {
    for (SQLSMALLINT i = 0; i < count; ++i) {
      const CellReader reader(statement, static_cast<SQLUSMALLINT>(i + 1), text);
      try {
        result.cells.push_back(reader.Read(result.columns[static_cast<std::size_t>(i)].type));
      } catch (const RuntimeError& why) {
        result.unreadable.emplace(result.cells.size(), why);
        result.cells.push_back(Variant::Null());
      }
    }
  }
  return std::make_shared<Rows>(std::move(result));
}

}  // namespace oxaqrycln
