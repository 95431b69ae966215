// test_database.h - an empty web user database of its own for a test, in SQLite or PostgreSQL, and a page on it.
#ifndef OXAQRYCLN_TESTS_SUPPORT_TEST_DATABASE_H_
#define OXAQRYCLN_TESTS_SUPPORT_TEST_DATABASE_H_

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "component/clsQuery.h"
#include "platform/database/database.h"
#include "tests/support/temporary_directory.h"

namespace oxaqrycln::testing {

enum class Kind { Sqlite, Postgres };
// The kinds of databases to test with. Under Wine only PostgreSQL: the driver of SQLite takes paths of Linux.
std::vector<Kind> Kinds();

class TestDatabase {
 public:
  // hasTables: with the tables of the schema, which hold what the statements fill in.
  explicit TestDatabase(Kind kind, bool hasTables = true, const std::string& statements = "");
  ~TestDatabase();
  TestDatabase(const TestDatabase&) = delete;
  TestDatabase& operator=(const TestDatabase&) = delete;

  const std::string& connectionString() const noexcept { return connectionString_; }
  std::shared_ptr<Connection> Connect() const;
  // Runs statements on a connection of its own; the last one's first value.
  Variant Run(const std::string& statements) const;

 private:
  const Kind kind_;
  TemporaryDirectory directory_;
  std::string name_;
  std::string connectionString_;
};

// anna (1) is a member of Sales (10), Support (11) and another Sales (13); Support of Everybody (12).
constexpr const char* kUsers = R"(
  INSERT INTO Users(UserID,UserName) VALUES (1,'anna'), (2,'bert'), (10,'Sales'), (11,'Support'), (12,'Everybody'),
    (13,'Sales');
  INSERT INTO UserGroups VALUES (1,10), (1,11), (1,13), (11,12);)";

// Whether databases of the kind can be had here; PostgreSQL runs only while the fixture of the tests is set up.
bool IsThere(Kind kind);

// A page on the database.
struct WebPage {
  explicit WebPage(const TestDatabase& database) : WebPage(database.connectionString()) {}
  explicit WebPage(const std::string& connectionString) {
    query.strSessionID = "S1";
    query.strDebugLogPath = logs.path();
    query.strDBConnect = connectionString;
    initialised = query.Init();
  }
  std::string Log() const { return logs.Read("S1.log"); }
  bool Failed(const std::string& routine, const std::string& error = "") const {
    return Log().find("'" + routine + "()': " + error) != std::string::npos;
  }

  TemporaryDirectory logs;
  clsQuery query;
  bool initialised = false;
};

// Tests that run against every kind of database.
class OnDatabase : public ::testing::TestWithParam<Kind> {
 protected:
  void SetUp() override {
    if (!IsThere(GetParam())) GTEST_SKIP() << "no PostgreSQL server runs for the tests";
  }
};

// Tests of what only SQLite can be made to do.
class OnSqlite : public ::testing::Test {
 protected:
  void SetUp() override {
    if (Kinds().front() != Kind::Sqlite) GTEST_SKIP() << "there is no SQLite here";
  }
};

inline std::string KindName(const ::testing::TestParamInfo<Kind>& info) {
  return info.param == Kind::Sqlite ? "SQLite" : "PostgreSQL";
}

}  // namespace oxaqrycln::testing

#endif  // OXAQRYCLN_TESTS_SUPPORT_TEST_DATABASE_H_
