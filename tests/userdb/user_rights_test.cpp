#include <algorithm>
#include <vector>

#include "tests/support/page.h"
#include "tests/userdb/test_database.h"

namespace oxaqrycln::testing {
namespace {

using UserRights = OnDatabase;
INSTANTIATE_TEST_SUITE_P(Databases, UserRights, ::testing::Values(Kind::Sqlite, Kind::Postgres), KindName);

// anna (1) is a member of Sales (10), Support (11) and another Sales (13); Support of Everybody (12).
constexpr const char* kUsersAndRights = R"(
  INSERT INTO Users(UserID,UserName) VALUES(1,'anna');
  INSERT INTO Users(UserID,UserName) VALUES(2,'bert');
  INSERT INTO Users(UserID,UserName) VALUES(10,'Sales');
  INSERT INTO Users(UserID,UserName) VALUES(11,'Support');
  INSERT INTO Users(UserID,UserName) VALUES(12,'Everybody');
  INSERT INTO Users(UserID,UserName) VALUES(13,'Sales');
  INSERT INTO UserGroups VALUES(1,10);
  INSERT INTO UserGroups VALUES(1,11);
  INSERT INTO UserGroups VALUES(1,13);
  INSERT INTO UserGroups VALUES(11,12);
  INSERT INTO UserRights VALUES(1,3);
  INSERT INTO UserRights VALUES(10,3);
  INSERT INTO UserRights VALUES(11,7);
  INSERT INTO UserRights VALUES(12,99);
  INSERT INTO UserEditRights VALUES(1,'Invoices',0,0,1);
  INSERT INTO UserEditRights VALUES(10,'Invoices',1,0,0);
  INSERT INTO UserEditRights VALUES(11,'Plans',1,-1,0);
  INSERT INTO UserEditRights VALUES(10,'Plans',-1,1,1);
  INSERT INTO UserEditRights VALUES(13,'Mails',0,2,0);
  INSERT INTO UserEditRights VALUES(1,'Zero',-1,0,0);
  INSERT INTO UserArchives VALUES(1,'Invoices');
  INSERT INTO UserArchives VALUES(11,'Invoices');
  INSERT INTO UserChannels VALUES(1,'Finance');
  INSERT INTO UserChannels VALUES(10,'Finance'))";

// Lines that a database gives in any order.
std::string Sorted(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t from = 0; from < text.size(); from = text.find("\r\n", from) + 2) {
    lines.push_back(text.substr(from, text.find("\r\n", from) + 2 - from));
  }
  std::ranges::sort(lines);
  std::string sorted;
  for (const std::string& line : lines) sorted += line;
  return sorted;
}

TEST_P(UserRights, AreThoseOfTheUserAndOfTheGroupsOneLevelDeep) {
  const TestDatabase database(GetParam());
  database.Run(kUsersAndRights);
  WebPage page(database);
  clsQuery& query = page.query;
  Variant output;
  EXPECT_EQ(query.GetUserRights(1, &output), Variant::Long(2)) << page.Log();
  EXPECT_TRUE(output == Variant("^3^,^7^") || output == Variant("^7^,^3^")) << output.ToText();
  EXPECT_EQ(query.GetUserEditRights("1", &output), Variant::Long(4));
  EXPECT_EQ(Sorted(output.ToText()), "Invoices,N,D\r\nMails,E\r\nPlans,D\r\nZero\r\n");
  EXPECT_EQ(query.GetUserGroups(1, &output), Variant::Long(2));
  EXPECT_TRUE(output == Variant("[Sales],[Support]") || output == Variant("[Support],[Sales]")) << output.ToText();
  EXPECT_EQ(query.GetUserArchives(1, &output), Variant::Long(1));
  EXPECT_EQ(output, Variant("^Invoices^"));
  EXPECT_EQ(query.GetUserChannels(1, &output), Variant::Long(1));
  EXPECT_EQ(output, Variant("^Finance^"));
  EXPECT_EQ(query.GetUserChannels(2, &output), Variant::Long(0));
  EXPECT_EQ(output, Variant(""));
}

TEST(UserRightsInSqlite, ThatCannotBeReadToTheEndKeepWhatWasRead) {
  const TestDatabase database(Kind::Sqlite);
  database.Run("INSERT INTO Users(UserID,UserName) VALUES(1,'anna')");
  for (const char* name : {"'A'", "'B'", "CHAR(321)"}) {  // the last one has no place in the code page
    database.Run(std::string("INSERT INTO UserArchives VALUES(1,") + name + ")");
    database.Run(std::string("INSERT INTO UserEditRights VALUES(1,") + name + ",1,0,0)");
  }
  WebPage page(database);
  Variant output;
  EXPECT_EQ(page.query.GetUserArchives(1, &output), Variant());
  EXPECT_EQ(output, Variant("^A^,^B^"));
  EXPECT_EQ(page.query.GetUserEditRights(1, &output), Variant());
  EXPECT_EQ(output, Variant("A,N\r\nB,N\r\n"));
  EXPECT_TRUE(page.Failed("GetUserArchives", "13 - ")) << page.Log();
}

TEST(UserRightsInSqlite, WhoseStatementFailsBehindTheFirstRowsKeepWhatWasRead) {
  const TestDatabase database(Kind::Sqlite);
  database.Run(R"(
    DROP TABLE UserRights;
    CREATE TABLE Numbers (N INTEGER);
    INSERT INTO Numbers VALUES(-3);
    INSERT INTO Numbers VALUES(-7);
    INSERT INTO Numbers VALUES(-9223372036854775807 - 1);
    CREATE VIEW UserRights AS SELECT 1 AS UserID, ABS(N) AS RightID FROM Numbers)");
  WebPage page(database.connectionString() + ";StepAPI=1");  // the driver computes a row when it is fetched
  Variant output;
  EXPECT_EQ(page.query.GetUserRights(1, &output), Variant()) << page.Log();
  EXPECT_EQ(output, Variant("^3^,^7^"));
  EXPECT_TRUE(page.Failed("GetUserRights", "-2147467259 - [")) << page.Log();
}

TEST_P(UserRights, TheSchemaTakesTheirKeysSeriously) {
  const TestDatabase database(GetParam());
  database.Run(kUsersAndRights);
  const auto connection = database.Connect();
  for (const char* doubled :
       {"INSERT INTO Users(UserID,UserName) VALUES(1,'again')", "INSERT INTO UserGroups VALUES(1,10)",
        "INSERT INTO UserRights VALUES(1,3)", "INSERT INTO UserChannels VALUES(10,'Finance')"}) {
    EXPECT_ANY_THROW(connection->Execute(doubled)) << doubled;
  }
}

}  // namespace
}  // namespace oxaqrycln::testing
