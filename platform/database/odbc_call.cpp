#include "platform/database/odbc_call.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "values/code_page.h"
#include "values/errors.h"

namespace oxaqrycln {

OdbcHandle::OdbcHandle(SQLSMALLINT type, SQLHANDLE parent) : type_(type) {
  if (SQL_SUCCEEDED(SQLAllocHandle(type, parent, &handle_))) return;
  handle_ = nullptr;
  throw RuntimeError(kDatabaseError, "The ODBC driver manager has no handle left");
}

void OdbcHandle::Release() noexcept {
  if (handle_ != nullptr) SQLFreeHandle(type_, std::exchange(handle_, nullptr));
}

void OdbcHandle::Check(SQLRETURN outcome) const {
  if (SQL_SUCCEEDED(outcome) || outcome == SQL_NO_DATA) return;
  std::array<SQLWCHAR, 6> state{};
  std::array<SQLWCHAR, 2048> message{};
  SQLINTEGER native = 0;
  SQLSMALLINT length = 0;
  const SQLRETURN found = SQLGetDiagRecW(type_, handle_, 1, state.data(), &native, message.data(),
                                         static_cast<SQLSMALLINT>(message.size()), &length);
  if (!SQL_SUCCEEDED(found)) throw RuntimeError(kDatabaseError, "The database failed without saying why");
  const auto kept =
      std::min<std::size_t>(static_cast<std::size_t>(std::max<SQLSMALLINT>(length, 0)), message.size() - 1);
  std::string text = FromWide(message.data(), kept, true);
  for (char& each : text) each = each == '\r' || each == '\n' ? ' ' : each;  // one line of the log
  text.erase(text.find_last_not_of(' ') + 1);
  throw RuntimeError(kDatabaseError, "[" + FromWide(state.data(), 5, true) + "] " + text);
}

std::vector<SQLWCHAR> ToWide(std::string_view text) {
  std::vector<SQLWCHAR> wide;
  wide.reserve(text.size() + 1);
  for (const char each : text) wide.push_back(static_cast<SQLWCHAR>(ToUnicode(each)));
  wide.push_back(0);
  return wide;
}

std::string FromWide(const SQLWCHAR* text, std::size_t length, bool isLenient) {
  std::string narrow;
  narrow.reserve(length);
  for (std::size_t i = 0; i < length; ++i) {
    const auto character = FromUnicode(text[i]);
    if (!character && !isLenient) {
      throw RuntimeError(error::kTypeMismatch, "The database holds a character that has no place in the code page");
    }
    narrow += character.value_or('?');
  }
  return narrow;
}

}  // namespace oxaqrycln
