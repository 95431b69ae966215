// odbc_call.h - handles of the ODBC driver manager, and the one place where its diagnostics become run-time errors.
#ifndef OXAQRYCLN_PLATFORM_DATABASE_ODBC_CALL_H_
#define OXAQRYCLN_PLATFORM_DATABASE_ODBC_CALL_H_

#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace oxaqrycln {

// What ADO reports for the errors of ODBC.
inline constexpr std::int32_t kDatabaseError = -2147467259;

// An allocated handle, freed with its owner.
class OdbcHandle {
 public:
  OdbcHandle() noexcept = default;
  OdbcHandle(SQLSMALLINT type, SQLHANDLE parent);
  ~OdbcHandle() { Release(); }
  OdbcHandle(OdbcHandle&& other) noexcept : type_(other.type_), handle_(std::exchange(other.handle_, nullptr)) {}
  OdbcHandle& operator=(OdbcHandle&& other) noexcept {
    std::swap(type_, other.type_);
    std::swap(handle_, other.handle_);
    return *this;
  }

  SQLHANDLE get() const noexcept { return handle_; }
  // Raises the first diagnostic of the handle, "[state] message", unless the call succeeded. SQL_NO_DATA is a success.
  void Check(SQLRETURN outcome) const;

 private:
  void Release() noexcept;
  SQLSMALLINT type_ = 0;
  SQLHANDLE handle_ = nullptr;
};

// The text in the form of the wide calls, zero-terminated, and back. A character outside the code page becomes "?" when
// lenient, else raises Type mismatch.
std::vector<SQLWCHAR> ToWide(std::string_view text);
std::string FromWide(const SQLWCHAR* text, std::size_t length, bool isLenient);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_DATABASE_ODBC_CALL_H_
