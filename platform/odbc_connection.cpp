#include "platform/odbc_connection.h"

#include <algorithm>
#include <array>
#include <string>

#include "platform/code_page.h"
#include "platform/connection_string.h"
#include "platform/errors.h"
#include "platform/odbc_call.h"
#include "platform/odbc_recordset.h"

namespace oxaqrycln {
namespace {

constexpr std::int32_t kOpen = 1;
constexpr std::int32_t kAlreadyOpen = 3705;
constexpr std::int32_t kNotOpen = 3704;
constexpr SQLULEN kLogonSeconds = 15;
constexpr SQLULEN kStatementSeconds = 30;
constexpr const char* kSqliteTimeout = "Timeout=2000";  // milliseconds
// A letter of the code page's upper half and one that Unicode has elsewhere.
constexpr std::string_view kProbe = "\xE4\x80";

SQLPOINTER AsPointer(SQLULEN value) noexcept { return reinterpret_cast<SQLPOINTER>(value); }  // NOLINT: ODBC's way

// A file that another program has locked is waited for for seconds, not for minutes as SQLite's driver does unless the
// connection string tells it. The entry of a DSN says it itself.
std::string WithShortLocks(const std::string& odbc) {
  bool isSqlite = false;
  for (const auto& [name, value] : ConnectionAttributes(odbc)) {
    if (UpperCase(name) == "TIMEOUT") return odbc;
    if (UpperCase(name) == "DRIVER") isSqlite = UpperCase(value).find("SQLITE") != std::string::npos;
  }
  return isSqlite ? odbc + (odbc.ends_with(';') ? "" : ";") + kSqliteTimeout : odbc;
}

class OdbcConnection final : public Connection {
 public:
  ~OdbcConnection() override { Disconnect(); }

  void Open(std::string_view connectionString) override {
    if (isOpen_) throw RuntimeError(kAlreadyOpen, "The connection is open already");
    const std::string odbc = WithShortLocks(OdbcConnectionString(connectionString));
    try {
      environment_ = OdbcHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE);
      environment_.Check(SQLSetEnvAttr(environment_.get(), SQL_ATTR_ODBC_VERSION, AsPointer(SQL_OV_ODBC3), 0));
      Connect(odbc);
      isOpen_ = true;
      FindTextForm();
    } catch (const RuntimeError& why) {
      Disconnect();
      throw RuntimeError(why.number(), WithoutPasswords(why.description(), connectionString));
    }
  }

  std::shared_ptr<Recordset> Execute(std::string_view statement) override {
    if (!isOpen_) throw RuntimeError(kNotOpen, "The connection is closed");
    const OdbcHandle handle(SQL_HANDLE_STMT, connection_.get());
    // A driver that knows no time-out says so; the statement runs all the same.
    SQLSetStmtAttr(handle.get(), SQL_ATTR_QUERY_TIMEOUT, AsPointer(kStatementSeconds), 0);
    if (text_ == OdbcText::Wide) {
      auto wide = ToWide(statement);
      handle.Check(SQLExecDirectW(handle.get(), wide.data(), SQL_NTS));
    } else {
      std::string utf8 = ToUtf8(statement);
      handle.Check(SQLExecDirect(handle.get(), reinterpret_cast<SQLCHAR*>(utf8.data()), SQL_NTS));
    }
    return ReadRows(handle, text_);
  }

  std::int32_t State() const override { return isOpen_ ? kOpen : kClosed; }

  void Close() override {
    if (!isOpen_) throw RuntimeError(kNotOpen, "The connection is closed");
    Disconnect();
  }

 private:
  // Drivers differ in which calls take more than ASCII: a file name wants the narrow ones, a driver with wide calls the
  // wide ones. The narrow ones come first, since the others could make a file of a wrong name.
  void Connect(const std::string& odbc) {
    const bool isAscii = std::ranges::all_of(odbc, [](char each) { return static_cast<unsigned char>(each) < 0x80; });
    if (!isAscii && SQL_SUCCEEDED(ConnectNarrow(ToUtf8(odbc)))) return;
    NewConnection();
    auto wide = ToWide(odbc);
    connection_.Check(
        SQLDriverConnectW(connection_.get(), nullptr, wide.data(), SQL_NTS, nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT));
  }

  SQLRETURN ConnectNarrow(std::string utf8) {
    NewConnection();
    return SQLDriverConnect(connection_.get(), nullptr, reinterpret_cast<SQLCHAR*>(utf8.data()), SQL_NTS, nullptr, 0,
                            nullptr, SQL_DRIVER_NOPROMPT);
  }

  void NewConnection() {
    connection_ = OdbcHandle();
    connection_ = OdbcHandle(SQL_HANDLE_DBC, environment_.get());
    SQLSetConnectAttr(connection_.get(), SQL_ATTR_LOGIN_TIMEOUT, AsPointer(kLogonSeconds), 0);
    SQLSetConnectAttr(connection_.get(), SQL_ATTR_CONNECTION_TIMEOUT, AsPointer(kStatementSeconds), 0);
  }

  // Found out by the round trip of a literal. A database that keeps neither form is used in the wide one.
  void FindTextForm() {
    for (const OdbcText form : {OdbcText::Wide, OdbcText::Utf8}) {
      text_ = form;
      if (KeepsProbe()) return;
    }
    text_ = OdbcText::Wide;
  }

  bool KeepsProbe() {
    try {
      const auto rows = Execute("SELECT '" + std::string(kProbe) + "'");
      return !rows->EndOfRows() && rows->Field(0) == Variant(kProbe);
    } catch (const RuntimeError&) {
      return false;
    }
  }

  void Disconnect() noexcept {
    if (connection_.get() != nullptr && isOpen_) SQLDisconnect(connection_.get());
    isOpen_ = false;
    connection_ = OdbcHandle();
    environment_ = OdbcHandle();
  }

  OdbcHandle environment_;
  OdbcHandle connection_;
  OdbcText text_ = OdbcText::Wide;
  bool isOpen_ = false;
};

}  // namespace

std::shared_ptr<Connection> MakeOdbcConnection() { return std::make_shared<OdbcConnection>(); }

}  // namespace oxaqrycln
