#include <dlfcn.h>
#include <signal.h>

#include <chrono>
#include <utility>

#include "component/objects.h"
#include "platform/database/connection_string.h"
#include "platform/database/odbc_connection.h"
#include "tests/support/page.h"
#include "tests/support/scripted_server.h"
#include "tests/support/temporary_directory.h"
#include "tests/support/test_database.h"
#include "values/errors.h"

namespace oxaqrycln::testing {
namespace {

using namespace std::chrono_literals;

// The error of a call, "" without one.
template <typename Call>
std::string ErrorOf(Call&& call) {
  try {
    call();
  } catch (const RuntimeError& why) {
    return std::to_string(why.number()) + " - " + why.description();
  }
  return {};
}

TEST(ConnectionStrings, AreThoseOfTheDriverManagerOrOfTwoProviders) {
  using Case = std::pair<const char*, const char*>;
  for (const auto& [text, expected] :
       {Case{"Driver={SQLite3};Database=/x y", "Driver={SQLite3};Database=/x y"},
        Case{"Provider=MSDASQL;DSN=web;no equals", ""},
        Case{"provider=msdasql.1; Data Source=web ;User ID=u;Password=\"p;w\"", "DSN=web;UID={u};PWD={p;w};"},
        Case{"Provider=MSDASQL;Driver=SQLite3;Database=my users.sqlite;Password=a+b%41",
             "Driver={SQLite3};Database=my users.sqlite;PWD={a+b%41};"},
        Case{"Provider=MSDASQL;Extended Properties=\"Driver={X};Server=s\"", "Driver={X};Server=s;"},
        Case{"Provider=SQLOLEDB;Data Source=host;Initial Catalog=db;Integrated Security=SSPI;Persist Security "
             "Info=False",
             "Driver={SQL Server};SERVER=host;DATABASE=db;Trusted_Connection=Yes;"},
        Case{"Provider=SQLOLEDB;Driver={ODBC Driver 18};Server=h;Password={a}}b}",
             "Driver={ODBC Driver 18};SERVER=h;PWD={a}}b};"},
        Case{"Provider=Other.4;Data Source=x;Password=secret", ""}, Case{"Provider=MSDASQL;=x", ""},
        Case{"Provider=MSDASQL;DSN={open", ""}}) {
    std::string odbc;
    const std::string error = ErrorOf([&, from = text] { odbc = OdbcConnectionString(from); });
    EXPECT_EQ(error.empty(), *expected != '\0') << text << error;
    EXPECT_EQ(odbc, expected);
    EXPECT_EQ(error.find("secret"), std::string::npos);
  }
  EXPECT_NE(ErrorOf([] { OdbcConnectionString("Provider=Other.4"); }).find("\"OTHER.4\""), std::string::npos);
  EXPECT_EQ(WithoutPasswords("user u, password a;b, a;b!", "UID=u;PWD={a;b}"), "user u, password ***, ***!");
  EXPECT_EQ(WithoutPasswords("no secret", "Extended Properties=\"Driver={X};PWD=secret\""), "no ***");
  EXPECT_EQ(WithoutPasswords("where e is meant, e", "PWD=e"), "where *** is meant, ***");
  EXPECT_EQ(ConnectionPasswords("Driver=X;pqopt={sslmode=require password = 'a \\'b' user=u lost};PWD="),
            (std::vector<std::string>{"a 'b", "lost"}));
  EXPECT_EQ(ConnectionPasswords("pqopt={\n lost\r\n=x password=a'b \n}"), (std::vector<std::string>{"a'b"}));
}

using OdbcConnection = OnDatabase;
INSTANTIATE_TEST_SUITE_P(Databases, OdbcConnection, ::testing::ValuesIn(Kinds()), KindName);

TEST_P(OdbcConnection, ReadsTextsOfAnyLengthNullsAndNumbersByTheirKind) {
  const TestDatabase database(GetParam(), false);
  const auto connection = database.Connect();
  connection->Execute("CREATE TABLE T (I INTEGER, S SMALLINT, D DOUBLE PRECISION, N NUMERIC(10,2), V VARCHAR(40000))");
  std::string text;
  for (int i = 0; i < 40'000; ++i) text += static_cast<char>(i % 7 == 0 ? 0xFC : 'a' + i % 26);
  connection->Execute("INSERT INTO T VALUES(70000,7,1.5,2.25,'" + text + "')");
  connection->Execute("INSERT INTO T(I) VALUES(NULL)");
  const auto rows = connection->Execute("SELECT I, S, D, N, V FROM T ORDER BY CASE WHEN I IS NULL THEN 1 ELSE 0 END");
  EXPECT_EQ(rows->Field("i"), Variant::Long(70000));
  EXPECT_EQ(rows->Field(1), Variant::Integer(7));
  EXPECT_EQ(rows->Field("D"), Variant(1.5));
  EXPECT_EQ(rows->Field("N").ToDouble(), 2.25);
  EXPECT_TRUE(rows->Field("v") == Variant(text));
  EXPECT_NE(ErrorOf([&] { rows->Field("none"); }).find("3265 - "), std::string::npos);
  EXPECT_NE(ErrorOf([&] { rows->Field(5); }).find("3265 - "), std::string::npos);
  rows->MoveNext();
  for (int i = 0; i < 5; ++i) EXPECT_TRUE(rows->Field(i).IsNull()) << i;
  rows->MoveNext();
  EXPECT_TRUE(rows->EndOfRows());
  EXPECT_NE(ErrorOf([&] { rows->Field(0); }).find("3021 - "), std::string::npos);
  rows->Close();
  EXPECT_NE(ErrorOf([&] { rows->EndOfRows(); }).find("3704 - "), std::string::npos);
  EXPECT_EQ(connection->State(), 1);
  connection->Close();
  EXPECT_EQ(connection->State(), 0);
  EXPECT_NE(ErrorOf([&] { connection->Execute("SELECT 1"); }).find("3704 - "), std::string::npos);
}

TEST_P(OdbcConnection, TellsWhatDoesNotFitAndNoTextsOfAStatement) {
  const TestDatabase database(GetParam(), false);
  const auto connection = database.Connect();
  const std::string polish = GetParam() == Kind::Sqlite ? "CHAR(321)" : "CHR(321)";
  const std::string large = GetParam() == Kind::Sqlite ? "INTEGER" : "BIGINT";
  connection->Execute("CREATE TABLE T (I " + large + ", C VARCHAR(9))");
  connection->Execute("INSERT INTO T VALUES (3000000000,'a'), (-3," + polish + ")");
  const auto rows = connection->Execute("SELECT I, C FROM T ORDER BY I DESC");
  EXPECT_EQ(rows->Field("I"), Variant(3e9));
  EXPECT_EQ(rows->Field("C"), Variant("a"));
  rows->MoveNext();
  EXPECT_EQ(rows->Field("I"), Variant::Long(-3));
  EXPECT_NE(ErrorOf([&] { rows->Field("C"); }).find("no place in the code page"), std::string::npos);
  const std::string error = ErrorOf([&] { connection->Execute("SELECT 'Hidden' FROM None WHERE x='Hidden'"); });
  EXPECT_NE(error.find("-2147467259 - ["), std::string::npos) << error;
  EXPECT_EQ(error.find("Hidden"), std::string::npos) << error;
}

TEST(OdbcConnection, ToAServerThatStopsWithoutAWordIsGivenUp) {
  if (!IsThere(Kind::Postgres)) GTEST_SKIP() << "no PostgreSQL server runs for the tests";
  const TestDatabase database(Kind::Postgres);
  const auto connection = MakeOdbcConnectionWith({15s, 1s, 1s});
  connection->Open(database.connectionString());
  const auto server = static_cast<pid_t>(connection->Execute("SELECT pg_backend_pid()")->Field(0).ToLong());
  ASSERT_EQ(kill(server, SIGSTOP), 0);
  EXPECT_NE(ErrorOf([&] { connection->Execute("SELECT 1"); }).find("has not answered for 2 seconds"),
            std::string::npos);
  EXPECT_EQ(connection->State(), Connection::kClosed);
  EXPECT_NE(ErrorOf([&] { connection->Execute("SELECT 1"); }).find("3704 - "), std::string::npos);
  kill(server, SIGCONT);
  connection->Open(database.connectionString());
  EXPECT_EQ(connection->Execute("SELECT 1")->Field(0), Variant::Long(1));
}

std::string ErrorOfOpening(const std::string& text) {
  return ErrorOf([&] { std::dynamic_pointer_cast<Connection>(CreateObject("ADODB.Connection"))->Open(text); });
}

std::string PostgresAt(int port) {
  return "Driver={PostgreSQL Unicode};Server=127.0.0.1;UID=secret;PWD=secret;Database=x;Port=" + std::to_string(port);
}

TEST(OdbcConnection, ThatCannotBeOpenedSaysWhyWithoutThePassword) {
  const std::string driver = ErrorOfOpening("Driver={No such driver};PWD=secret");
  EXPECT_NE(driver.find("No such driver"), std::string::npos) << driver;
  const std::string refused = ErrorOfOpening(PostgresAt(UnusedPort()));
  EXPECT_NE(refused.find("-2147467259 - ["), std::string::npos) << refused;
  for (const std::string& each : {driver, refused, ErrorOfOpening("Provider=No such driver;PWD=secret")}) {
    EXPECT_EQ(each.find("secret"), std::string::npos) << each;
  }
}

TEST(OdbcConnection, ToAServerThatNeverAnswersEndsWithTheLogonTimeout) {
  if (!IsThere(Kind::Postgres)) GTEST_SKIP() << "no PostgreSQL driver";
  ScriptedServer server([](Peer& peer) { peer.Pause(40'000); });
  const auto connection = MakeOdbcConnectionWith({.logon = 1s});
  EXPECT_NE(ErrorOf([&] { connection->Open(PostgresAt(server.port())); }).find("timeout"), std::string::npos);
}

TEST(LockedSqliteFile, EndsInAnError) {
  const TestDatabase database(Kind::Sqlite);
  RegisterObject("ADODB.Connection", [] { return MakeOdbcConnectionWith({.lock = std::chrono::milliseconds(20)}); });
  WebPage page(database);
  // Through an entry of the driver manager, too.
  const TemporaryDirectory entries;
  const std::string path = database.connectionString().substr(database.connectionString().rfind('=') + 1);
  entries.Write("odbc.ini", "[Web]\nDriver=SQLite3\nDatabase=" + path);
  dlopen("libodbcinst.so.2", RTLD_LAZY);  // stays, or a leak checker takes its cache of entries for lost
  setenv("ODBCINI", entries.File("odbc.ini").c_str(), 1);  // NOLINT: no other thread runs
  WebPage other("DSN=Web");
  RegisterObject("ADODB.Connection", MakeOdbcConnection);
  ASSERT_TRUE(other.initialised) << other.Log();
  const auto locker = database.Connect();
  locker->Execute("BEGIN EXCLUSIVE");
  for (WebPage* const each : {&page, &other}) {
    EXPECT_EQ(each->query.WriteUserToDB("a", "b"), Variant::Integer(-1));
    EXPECT_NE(each->Log().find("database is locked"), std::string::npos) << each->Log();
  }
  locker->Execute("COMMIT");
  EXPECT_EQ(page.query.WriteUserToDB("a", "b"), Variant::Long(1));
}

}  // namespace
}  // namespace oxaqrycln::testing
