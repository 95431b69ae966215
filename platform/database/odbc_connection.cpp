#include "platform/database/odbc_connection.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/database/connection_string.h"
#include "platform/database/odbc_call.h"
#include "platform/database/odbc_recordset.h"
#include "platform/threads/call_thread.h"
#include "values/code_page.h"
#include "values/errors.h"

namespace oxaqrycln {
namespace {

constexpr std::int32_t kOpen = 1;
constexpr std::int32_t kAlreadyOpen = 3705;
constexpr std::int32_t kNotOpen = 3704;
// A letter of the code page's upper half and one that has another code in Unicode; then a backslash before a letter
// that forms no escape sequence in any database.
constexpr std::string_view kLetters = "\xE4\x80";
constexpr std::string_view kBackslash = "\\y";

SQLPOINTER AsPointer(std::chrono::seconds value) noexcept {
  return reinterpret_cast<SQLPOINTER>(value.count());  // NOLINT: ODBC's way
}

// A DSN entry may name SQLite's driver too; other drivers ignore attributes that they do not know.
std::string WithLockLimit(const std::string& odbc, std::chrono::milliseconds limit) {
  bool maySqlite = false;
  for (const auto& [name, value] : ConnectionAttributes(odbc)) {
    const std::string upper = UpperCase(name);
    if (upper == "TIMEOUT") return odbc;
    maySqlite =
        maySqlite || upper == "DSN" || (upper == "DRIVER" && UpperCase(value).find("SQLITE") != std::string::npos);
  }
  return maySqlite ? odbc + (odbc.ends_with(';') ? "" : ";") + "Timeout=" + std::to_string(limit.count()) : odbc;
}

// A driver may quote the statement or the row that failed; both may contain passwords.
std::string WithoutValues(std::string text, std::string_view statement) {
  for (const std::string_view start : {"DETAIL:", "CONTEXT:", "Failed to send", "LINE 1:"}) {
    text.resize(std::min(text.size(), text.find(start)));
  }
  // No value in the component's statements contains a quote.
  for (std::size_t open = statement.find('\''); open != std::string_view::npos;) {
    const std::size_t close = statement.find('\'', open + 1);
    if (close == std::string_view::npos) break;
    const std::string_view value = statement.substr(open, close + 1 - open);
    for (std::size_t at = text.find(value); at != std::string::npos; at = text.find(value, at + 1)) {
      text.replace(at, value.size(), "'***'");
    }
    open = statement.find('\'', close + 1);
  }
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

// The handles of one connection, and how text is exchanged with its driver. Used by one thread at a time.
class Session {
 public:
  explicit Session(const OdbcLimits& limits) : limits_(limits) {}
  ~Session() {
    if (isOpen_) SQLDisconnect(connection_.get());
  }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  void Open(const std::string& odbc) {
    environment_ = OdbcHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE);
    environment_.Check(SQLSetEnvAttr(environment_.get(), SQL_ATTR_ODBC_VERSION,
                                     reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0));  // NOLINT: ODBC's way
    Connect(odbc);
    isOpen_ = true;
    FindTextForm();
  }

  std::shared_ptr<Recordset> Execute(std::string_view statement) const {
    const OdbcHandle handle(SQL_HANDLE_STMT, connection_.get());
    // A driver without time-outs reports an error here; the statement runs all the same.
    SQLSetStmtAttr(handle.get(), SQL_ATTR_QUERY_TIMEOUT, AsPointer(limits_.statement), 0);
    if (text_ == OdbcText::Wide) {
      auto wide = ToWide(statement);
      handle.Check(SQLExecDirectW(handle.get(), wide.data(), SQL_NTS));
    } else {
      std::string utf8 = ToUtf8(statement);
      handle.Check(SQLExecDirect(handle.get(), reinterpret_cast<SQLCHAR*>(utf8.data()), SQL_NTS));
    }
    return ReadRows(handle, text_);
  }

  bool takesBackslashLiterally() const noexcept { return takesBackslashLiterally_; }

 private:
  // Drivers differ in which calls take more than ASCII: file names need the narrow ones, a driver with wide calls the
  // wide ones. The narrow ones are tried first, since the others could make a file with a wrong name.
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
    SQLSetConnectAttr(connection_.get(), SQL_ATTR_LOGIN_TIMEOUT, AsPointer(limits_.logon), 0);
    SQLSetConnectAttr(connection_.get(), SQL_ATTR_CONNECTION_TIMEOUT, AsPointer(limits_.statement), 0);
  }

  // Determined by the round trip of a literal. A database that preserves neither form is used with the wide calls, and
  // is assumed to take a backslash as an escape character.
  void FindTextForm() {
    for (const OdbcText form : {OdbcText::Wide, OdbcText::Utf8}) {
      text_ = form;
      const std::string returned = ReturnedProbe();
      if (!returned.starts_with(kLetters)) continue;
      takesBackslashLiterally_ = returned.substr(kLetters.size()) == kBackslash;
      return;
    }
    text_ = OdbcText::Wide;
  }

  // The literal as the database returns it; "" when it refuses it.
  std::string ReturnedProbe() const {
    try {
      const auto rows = Execute("SELECT '" + std::string(kLetters) + std::string(kBackslash) + "'");
      return rows->EndOfRows() ? std::string() : rows->Field(0).ToText();
    } catch (const RuntimeError&) {
      return {};
    }
  }

  const OdbcLimits limits_;
  OdbcHandle environment_;
  OdbcHandle connection_;
  OdbcText text_ = OdbcText::Wide;
  bool takesBackslashLiterally_ = false;
  bool isOpen_ = false;
};

class OdbcConnection final : public Connection {
 public:
  explicit OdbcConnection(const OdbcLimits& limits) : limits_(limits) {}
  ~OdbcConnection() override { Disconnect(); }

  void Open(std::string_view connectionString) override {
    if (session_ != nullptr) throw RuntimeError(kAlreadyOpen, "The connection is open already");
    const std::string odbc = WithLockLimit(OdbcConnectionString(connectionString), limits_.lock);
    const auto session = std::make_shared<Session>(limits_);
    try {
      InTime([session, odbc] { session->Open(odbc); }, limits_.logon + limits_.grace);
    } catch (const RuntimeError& why) {
      throw RuntimeError(why.number(), WithoutPasswords(why.description(), connectionString));
    }
    session_ = session;
  }

  std::shared_ptr<Recordset> Execute(std::string_view statement) override {
    RequireOpen();
    const auto rows = std::make_shared<std::shared_ptr<Recordset>>();
    try {
      InTime([session = session_, rows, text = std::string(statement)] { *rows = session->Execute(text); },
             limits_.statement + limits_.grace);
    } catch (const RuntimeError& why) {
      throw RuntimeError(why.number(), WithoutValues(why.description(), statement));
    }
    return *rows;
  }

  std::int32_t State() const override { return session_ != nullptr ? kOpen : kClosed; }

  bool TakesBackslashLiterally() const override { return session_ != nullptr && session_->takesBackslashLiterally(); }

  void Close() override {
    RequireOpen();
    Disconnect();
  }

 private:
  void RequireOpen() const {
    if (session_ == nullptr) throw RuntimeError(kNotOpen, "The connection is closed");
  }

  // The call must own a share of the session that it uses.
  void InTime(std::function<void()> call, std::chrono::seconds limit) {
    if (thread_ == nullptr) thread_ = std::make_unique<CallThread>();
    if (thread_->Run(std::move(call), limit)) return;
    thread_.reset();
    session_.reset();
    throw RuntimeError(kDatabaseError, "The database has not answered for " + std::to_string(limit.count()) +
                                           " seconds; the connection is given up");
  }

  // A driver may try to log off from a server that no longer answers.
  void Disconnect() noexcept {
    if (session_ == nullptr) return;
    try {
      InTime([session = std::move(session_)]() mutable { session.reset(); }, limits_.grace);
    } catch (...) {  // it counts as closed all the same
    }
    session_.reset();
  }

  const OdbcLimits limits_;
  std::unique_ptr<CallThread> thread_;
  std::shared_ptr<Session> session_;
};

}  // namespace

std::shared_ptr<Connection> MakeOdbcConnection() { return MakeOdbcConnectionWith(OdbcLimits()); }

std::shared_ptr<Connection> MakeOdbcConnectionWith(const OdbcLimits& limits) {
  return std::make_shared<OdbcConnection>(limits);
}

}  // namespace oxaqrycln
