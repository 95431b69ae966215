#include <gmock/gmock.h>

#include "tests/support/page.h"
#include "tests/support/test_database.h"
#include "values/text_parts.h"

namespace oxaqrycln::testing {
namespace {

using ::testing::UnorderedElementsAre;

using UserRights = OnDatabase;
INSTANTIATE_TEST_SUITE_P(Databases, UserRights, ::testing::ValuesIn(Kinds()), KindName);
using UserRightsInSqlite = OnSqlite;

const std::string kUsersAndRights = std::string(kUsers) + R"(
  INSERT INTO UserRights VALUES (1,3), (10,3), (11,7), (12,99);
  INSERT INTO UserEditRights VALUES (1,'Invoices',0,0,1), (10,'Invoices',1,0,0), (11,'Plans',1,-1,0),
    (10,'Plans',-1,1,1), (13,'Mails',0,2,0), (1,'Zero',-1,0,0);
  INSERT INTO UserArchives VALUES (1,'Invoices'), (11,'Invoices');
  INSERT INTO UserChannels VALUES (1,'Finance'), (10,'Finance'))";

TEST_P(UserRights, AreThoseOfTheUserAndOfTheUsersGroups) {
  const TestDatabase database(GetParam(), true, kUsersAndRights);
  WebPage page(database);
  clsQuery& query = page.query;
  Variant output;
  std::string text;
  const auto parts = [&](char separator) { return Split(text = output.ToText(), separator); };
  EXPECT_EQ(query.GetUserRights(1, &output), Variant::Long(2)) << page.Log();
  EXPECT_THAT(parts(','), UnorderedElementsAre("^3^", "^7^"));
  EXPECT_EQ(query.GetUserEditRights("1", &output), Variant::Long(4));
  EXPECT_THAT(parts('\n'), UnorderedElementsAre("Invoices,N,D\r", "Mails,E\r", "Plans,D\r", "Zero\r", ""));
  EXPECT_EQ(query.GetUserGroups(1, &output), Variant::Long(2));
  EXPECT_THAT(parts(','), UnorderedElementsAre("[Sales]", "[Support]"));
  EXPECT_EQ(query.GetUserArchives(1, &output), Variant::Long(1));
  EXPECT_EQ(output, Variant("^Invoices^"));
  EXPECT_EQ(query.GetUserChannels(1, &output), Variant::Long(1));
  EXPECT_EQ(output, Variant("^Finance^"));
  EXPECT_EQ(query.GetUserChannels(2, &output), Variant::Long(0));
  EXPECT_EQ(output, Variant(""));
}

TEST_F(UserRightsInSqlite, ThatCannotAllBeReadKeepTheFirstOnes) {
  // The last one has no place in the code page.
  const TestDatabase database(Kind::Sqlite, true, R"(
    INSERT INTO UserArchives VALUES (1,'A'), (1,'B'), (1,CHAR(321));
    INSERT INTO UserEditRights SELECT UserID, Archive, 1, 0, 0 FROM UserArchives)");
  WebPage page(database);
  Variant output;
  EXPECT_EQ(page.query.GetUserArchives(1, &output), Variant());
  EXPECT_EQ(output, Variant("^A^,^B^"));
  EXPECT_EQ(page.query.GetUserEditRights(1, &output), Variant());
  EXPECT_EQ(output, Variant("A,N\r\nB,N\r\n"));
  EXPECT_TRUE(page.Failed("GetUserArchives", "13 - ")) << page.Log();
  database.Run("DROP TABLE UserChannels");
  EXPECT_EQ(page.query.GetUserChannels(1, &output), Variant());
  EXPECT_EQ(output, Variant(""));
}

TEST_F(UserRightsInSqlite, KeepTheFirstRowsOfAStatementThatFails) {
  const TestDatabase database(Kind::Sqlite, true, R"(
    DROP TABLE UserRights;
    CREATE TABLE Numbers (N INTEGER);
    INSERT INTO Numbers VALUES (-3), (-7), (-9223372036854775807 - 1);
    CREATE VIEW UserRights AS SELECT 1 AS UserID, ABS(N) AS RightID FROM Numbers)");
  WebPage page(database.connectionString() + ";StepAPI=1");  // the driver computes a row when it is fetched
  Variant output;
  EXPECT_EQ(page.query.GetUserRights(1, &output), Variant()) << page.Log();
  EXPECT_EQ(output, Variant("^3^,^7^"));
  EXPECT_TRUE(page.Failed("GetUserRights", "-2147467259 - [")) << page.Log();
}

TEST_P(UserRights, HaveKeysThatTheSchemaEnforces) {
  const TestDatabase database(GetParam(), true, kUsersAndRights);
  for (const char* doubled :
       {"INSERT INTO Users(UserID,UserName) VALUES(1,'again')", "INSERT INTO UserGroups VALUES(1,10)",
        "INSERT INTO UserRights VALUES(1,3)", "INSERT INTO UserChannels VALUES(10,'Finance')"}) {
    EXPECT_ANY_THROW(database.Run(doubled)) << doubled;
  }
}

}  // namespace
}  // namespace oxaqrycln::testing
