#include <atomic>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include "support/text_helpers.h"
#include "tests/support/test_database.h"

namespace oxaqrycln::testing {
namespace {

using UserAccounts = OnDatabase;
INSTANTIATE_TEST_SUITE_P(Databases, UserAccounts, ::testing::ValuesIn(Kinds()), KindName);

TEST_P(UserAccounts, AreCreatedAndLogOn) {
  const TestDatabase database(GetParam());
  WebPage page(database);
  clsQuery& query = page.query;
  EXPECT_EQ(query.GetNextDBObjectID("UserID", "Users"), Variant::Long(1)) << page.Log();
  EXPECT_EQ(query.WriteUserToDB("anna", "Secret"), Variant::Long(1));
  EXPECT_EQ(query.WriteUserToDB("bert", "", "archive", "pwd"), Variant::Long(2));
  EXPECT_EQ(query.WriteUserToDB("cora", "x", "archive"), Variant::Long(3));  // half an account is none
  EXPECT_EQ(query.WriteUserToDB("dora", "x", Missing, "pwd"), Variant::Long(4));
  EXPECT_EQ(database.Run("SELECT COUNT(*) FROM Users WHERE TELOUser IS NOT NULL OR TELOPasswd IS NOT NULL"),
            Variant::Long(1));
  EXPECT_EQ(query.WriteUserToDB("eva", Missing), Variant::Integer(-1));
  EXPECT_TRUE(page.Failed("WriteUserToDB", "449 - ")) << page.Log();
  EXPECT_EQ(query.GetNextDBObjectID("UserID", "Users"), Variant::Long(5));
  EXPECT_EQ(database.Run("SELECT Passwd FROM Users WHERE UserID=1"), Variant(Encode("Secret")));
  database.Run(R"(INSERT INTO Users(UserID,UserName) VALUES (9,'nopass');
    INSERT INTO Users(UserID,UserName,Passwd,TELOPasswd) SELECT 10, 'odd', 'ZZ', TELOPasswd FROM Users WHERE UserID=2;
    INSERT INTO Users(UserID,UserName,TELOUser,TELOPasswd) VALUES (2147483647,'last','archive','ZZ'))");
  using Logon = std::tuple<const char*, Variant, int>;
  for (const auto& [user, password, id] :
       {Logon{"anna", "Secret", 1}, Logon{"anna", "secret", 0}, Logon{"anna", "", 0}, Logon{"anna", Missing, 1},
        Logon{"bert", "", 2}, Logon{"bert", Variant::Null(), 0}, Logon{"nobody", Missing, 0}, Logon{"nopass", "", 0},
        Logon{"nopass", Missing, 9}, Logon{"odd", "", 0}}) {
    EXPECT_EQ(query.CheckLogon(user, password), Variant::Long(id)) << user << password.IsMissing();
  }
  EXPECT_TRUE(page.Failed("Decode", "13 - ")) << page.Log();
  using Account = std::tuple<Variant, int, const char*, const char*>;
  for (const auto& [id, count, user, password] :
       {Account{77, 0, "kept", "kept"}, Account{"2", 1, "archive", "pwd"}, Account{3, 1, "", ""},
        Account{10, 1, "", ""}, Account{2147483647, 1, "archive", ""}}) {
    Variant out[] = {"kept", "kept"};
    EXPECT_EQ(query.GetUserTELOUser(id, &out[0], &out[1]), Variant::Long(count));
    EXPECT_EQ(out[0], Variant(user));
    EXPECT_EQ(out[1], Variant(password));
  }
  EXPECT_EQ(query.WriteUserToDB("eva", "x"), Variant::Integer(-1));  // no ID is left
  EXPECT_TRUE(page.Failed("GetNextDBObjectID", "6 - Overflow")) << page.Log();
}

TEST_P(UserAccounts, ChangeTheirPasswordsAndFlags) {
  const TestDatabase database(GetParam());
  WebPage page(database);
  clsQuery& query = page.query;
  query.WriteUserToDB("anna", "old");
  query.WriteUserToDB("anna", "other");
  query.WriteUserToDB("bert", "old");
  EXPECT_EQ(query.ChangePasswd("anna", "wrong", "new"), Variant::Integer(0));
  EXPECT_EQ(query.ChangePasswd("anna", Missing, "new"), Variant::Integer(0));
  EXPECT_EQ(query.ChangePasswd("anna", "old", "new"), Variant::Integer(1));
  EXPECT_EQ(database.Run("SELECT COUNT(*) FROM Users WHERE Passwd='" + Encode("new") + "'"), Variant::Long(2));
  EXPECT_EQ(query.CheckLogon("bert", "old"), Variant::Long(3));
  database.Run("INSERT INTO Users(UserID,UserName,Passwd) VALUES(32768,'late','" + Encode("old") + "')");
  EXPECT_EQ(query.ChangePasswd("late", "old", "new"), Variant::Integer(0));
  EXPECT_TRUE(page.Failed("ChangePasswd", "6 - Overflow")) << page.Log();
  EXPECT_EQ(query.CheckLogon("late", "old"), Variant::Long(32768));

  Variant flag = "kept";
  EXPECT_EQ(query.GetUserChangePasswd(1, &flag), Variant::Long(0));
  EXPECT_EQ(flag, Variant::Integer(0));
  EXPECT_EQ(query.SetUserChangePasswd(99, -1), Variant::Long(1));
  for (const auto& [value, stored] : {std::pair<Variant, int>(-2, -2), {true, 1}, {false, 0}}) {
    EXPECT_EQ(query.SetUserChangePasswd(1, value), Variant::Long(1));
    EXPECT_EQ(query.GetUserChangePasswd(1, &flag), Variant::Long(1));
    EXPECT_EQ(flag.ToInteger(), stored);
  }
  EXPECT_EQ(query.GetUserChangePasswd(3, &flag), Variant::Long(0));  // another user's stays
}

TEST_P(UserAccounts, ReportARefusedPasswordChangeWithoutLoggingThePassword) {
  const TestDatabase database(GetParam());
  WebPage page(database);
  page.query.WriteUserToDB("anna", "OldSecret");
  database.Connect()->Execute(GetParam() == Kind::Sqlite
                                  ? "CREATE TRIGGER Refuse BEFORE UPDATE ON Users BEGIN SELECT RAISE(FAIL,'no'); END"
                                  : "ALTER TABLE Users ADD CHECK (Passwd='" + Encode("OldSecret") + "')");
  EXPECT_EQ(page.query.ChangePasswd("anna", "OldSecret", "NewSecret"), Variant::Integer(0));
  EXPECT_TRUE(page.Failed("ChangePasswd", "-2147467259 - [")) << page.Log();
  EXPECT_EQ(page.Log().find(Encode("Secret").substr(6)), std::string::npos) << page.Log();
  EXPECT_EQ(page.query.CheckLogon("anna", "OldSecret"), Variant::Long(1));
}

TEST_P(UserAccounts, KeepCodePageTextAsUnicode) {
  const TestDatabase database(GetParam());
  WebPage page(database);
  const std::string name = "M\xFCller \\ \x80 %_\"; --";
  EXPECT_EQ(page.query.WriteUserToDB(name, "p"), Variant::Long(1)) << page.Log();
  EXPECT_EQ(page.query.CheckLogon(name, "p"), Variant::Long(1));
  EXPECT_EQ(page.query.CheckLogon("M\xFCller"), Variant::Long(0));
  const char* const hex = GetParam() == Kind::Sqlite
                              ? "SELECT HEX(UserName) FROM Users"
                              : "SELECT UPPER(ENCODE(CONVERT_TO(UserName,'UTF8'),'hex')) FROM Users";
  EXPECT_EQ(database.Run(hex), Variant("4DC3BC6C6C6572205C20E282AC20255F223B202D2D"));
}

TEST_P(UserAccounts, RefuseValuesThatCouldChangeAStatement) {
  const TestDatabase database(GetParam());
  WebPage page(database);
  clsQuery& query = page.query;
  query.WriteUserToDB("anna", "p");
  const Variant failed = Variant::Integer(-1);
  const Variant none = Variant::Long(0);
  for (const std::string& text : {std::string("x' OR '1'='1"), std::string("'"), std::string("a\0b", 3)}) {
    EXPECT_EQ(query.WriteUserToDB(text, "p"), failed);
    EXPECT_EQ(query.WriteUserToDB("x", "p", text, "p"), failed);
    EXPECT_EQ(query.CheckLogon(text), none);
    EXPECT_EQ(query.ChangePasswd(text, "p", "n"), Variant::Integer(0));
  }
  for (const char* id : {"1 OR 1=1", "1; DROP TABLE Users", "", "-", "+", " 1", "1.5", "0x1", "1e1", "--1", "UserID"}) {
    SCOPED_TRACE(id);
    for (const Variant& result : {query.GetUserTELOUser(id), query.GetUserChangePasswd(id),
                                  query.SetUserChangePasswd(id, 1), query.SetUserChangePasswd(1, id)}) {
      EXPECT_EQ(result, none);
    }
    for (const Variant& result : {query.GetUserRights(id), query.GetUserEditRights(id), query.GetUserGroups(id),
                                  query.GetUserArchives(id), query.GetUserChannels(id)}) {
      EXPECT_EQ(result, Variant());
    }
  }
  for (const char* name : {"UserID) FROM Users; DROP TABLE Users; --", "Users, UserGroups", "", "1"}) {
    EXPECT_EQ(query.GetNextDBObjectID(name, "Users"), none) << name;
    EXPECT_EQ(query.GetNextDBObjectID("UserID", name), none) << name;
  }
  EXPECT_EQ(page.Log().find("-2147467259"), std::string::npos) << "the database saw a statement: " << page.Log();
  EXPECT_EQ(database.Run("SELECT COUNT(*) FROM Users WHERE ChangePasswd IS NULL"), Variant::Long(1));
}

TEST_P(UserAccounts, CreatedAtTheSameTimeGetDifferentIdsOrNone) {
  const TestDatabase database(GetParam());
  std::atomic<int> created = 0;
  std::vector<std::thread> threads;
  for (int t = 0; t < 8; ++t) {
    threads.emplace_back([&] {
      WebPage page(database);
      for (int i = 0; i < 5; ++i) created += page.query.WriteUserToDB("u", "p").ToLong() > 0 ? 1 : 0;
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_GT(created, 0);
  EXPECT_EQ(database.Run("SELECT COUNT(*) FROM Users"), Variant::Long(created));
  EXPECT_EQ(database.Run("SELECT MAX(UserID) FROM Users"), Variant::Long(created));
}

TEST(BackslashAsEscape, IsRefusedWhereItWouldHideTheEndOfAText) {
  if (!IsThere(Kind::Postgres)) GTEST_SKIP() << "no PostgreSQL server runs for the tests";
  const TestDatabase database(Kind::Postgres);
  const std::string name = database.Run("SELECT current_database()").ToText();
  for (const bool isRefused : {false, true}) {
    database.Run("DELETE FROM Users; ALTER DATABASE " + name +
                 " SET standard_conforming_strings=" + (isRefused ? "off" : "on"));
    SCOPED_TRACE(isRefused);
    WebPage page(database);
    clsQuery& query = page.query;
    const auto id = [isRefused](int given) { return isRefused ? Variant::Integer(-1) : Variant::Long(given); };
    EXPECT_EQ(query.WriteUserToDB("M\xFCller \x80", "p"), Variant::Long(1)) << page.Log();  // text is still Unicode
    EXPECT_EQ(query.WriteUserToDB("domain\\user", "p"), id(2));
    EXPECT_EQ(query.CheckLogon("domain\\user"), Variant::Long(isRefused ? 0 : 2));
    // The quote behind the backslash would belong to the text, and what follows would be a statement.
    EXPECT_EQ(query.WriteUserToDB("x\\", "", ", NULL, NULL, NULL); DELETE FROM Users; --", "p"), id(3));
    EXPECT_EQ(query.ChangePasswd("x\\", "p", "q"), Variant::Integer(0));
    EXPECT_EQ(database.Run("SELECT COUNT(*) FROM Users"), Variant::Long(isRefused ? 1 : 3));
    EXPECT_EQ(page.Failed("WriteUserToDB", "5 - A text for the database contains a backslash"), isRefused);
  }
}

}  // namespace
}  // namespace oxaqrycln::testing
