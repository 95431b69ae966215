#include "userdb/sql_values.h"

#include <algorithm>
#include <string_view>

#include "values/errors.h"

namespace oxaqrycln {
namespace {

bool IsDigit(char character) noexcept { return character >= '0' && character <= '9'; }

bool IsLetter(char character) noexcept {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') || character == '_';
}

}  // namespace

std::string SqlText(const Connection& database, const Variant& value) {
  const std::string text = value.ToText();
  if (text.find('\'') != std::string::npos || text.find('\0') != std::string::npos) {
    throw RuntimeError(error::kInvalidProcedureCall, "A text for the database contains a quote or a NUL");
  }
  if (text.find('\\') != std::string::npos && !database.TakesBackslashLiterally()) {
    throw RuntimeError(
        error::kInvalidProcedureCall,
        "A text for the database contains a backslash, which this database takes as an escape character");
  }
  return "'" + text + "'";
}

std::string SqlNumber(const Variant& value) {
  std::string text = value.ToText();
  std::string_view digits = text;
  if (digits.starts_with('-') || digits.starts_with('+')) digits.remove_prefix(1);
  if (digits.empty() || !std::ranges::all_of(digits, IsDigit)) {
    throw RuntimeError(error::kTypeMismatch, "A value for the database is not a whole number");
  }
  return text;
}

std::string SqlName(const Variant& value) {
  std::string name = value.ToText();
  const bool isPlain = !name.empty() && IsLetter(name.front()) &&
                       std::ranges::all_of(name, [](char each) { return IsLetter(each) || IsDigit(each); });
  if (!isPlain) {
    throw RuntimeError(error::kInvalidProcedureCall, "The name of a table or column is not a plain identifier");
  }
  return name;
}

}  // namespace oxaqrycln
