#include "tests/support/page.h"
#include "tests/userdb/test_database.h"

namespace oxaqrycln::testing {
namespace {

using UserRights = OnDatabase;
INSTANTIATE_TEST_SUITE_P(Databases, UserRights, ::testing::Values(Kind::Sqlite, Kind::Postgres), KindName);

// anna (1) is a member of Sales (10) and Support (11); Support of Everybody (12).
constexpr const char* kUsersAndRights = R"(
  INSERT INTO Users(UserID,UserName) VALUES(1,'anna');
  INSERT INTO Users(UserID,UserName) VALUES(2,'bert');
  INSERT INTO Users(UserID,UserName) VALUES(10,'Sales');
  INSERT INTO Users(UserID,UserName) VALUES(11,'Support');
  INSERT INTO Users(UserID,UserName) VALUES(12,'Everybody');
  INSERT INTO UserGroups VALUES(1,10);
  INSERT INTO UserGroups VALUES(1,11);
  INSERT INTO UserGroups VALUES(11,12);
  INSERT INTO UserRights VALUES(1,3);
  INSERT INTO UserRights VALUES(10,3);
  INSERT INTO UserRights VALUES(11,7);
  INSERT INTO UserRights VALUES(12,99);
  INSERT INTO UserEditRights VALUES(1,'Invoices',0,0,1);
  INSERT INTO UserEditRights VALUES(10,'Invoices',1,0,0);
  INSERT INTO UserEditRights VALUES(11,'Plans',1,-1,0);
  INSERT INTO UserEditRights VALUES(10,'Plans',-1,1,1);
  INSERT INTO UserArchives VALUES(1,'Invoices');
  INSERT INTO UserArchives VALUES(11,'Invoices');
  INSERT INTO UserChannels VALUES(10,'Finance'))";

TEST_P(UserRights, AreThoseOfTheUserAndOfTheGroupsOneLevelDeep) {
  const TestDatabase database(GetParam());
  database.Run(kUsersAndRights);
  WebPage page(database);
  clsQuery& query = page.query;
  Variant output;
  EXPECT_EQ(query.GetUserRights(1, &output), Variant::Long(2)) << page.Log();
  EXPECT_TRUE(output == Variant("^3^,^7^") || output == Variant("^7^,^3^")) << output.ToText();
  EXPECT_EQ(query.GetUserEditRights("1", &output), Variant::Long(2));
  EXPECT_TRUE(output == Variant("Invoices,N,D\r\nPlans,D\r\n") || output == Variant("Plans,D\r\nInvoices,N,D\r\n"))
      << output.ToText();
  EXPECT_EQ(query.GetUserGroups(1, &output), Variant::Long(2));
  EXPECT_TRUE(output == Variant("[Sales],[Support]") || output == Variant("[Support],[Sales]")) << output.ToText();
  EXPECT_EQ(query.GetUserArchives(1, &output), Variant::Long(1));
  EXPECT_EQ(output, Variant("^Invoices^"));
  EXPECT_EQ(query.GetUserChannels(1, &output), Variant::Long(1));
  EXPECT_EQ(output, Variant("^Finance^"));
  EXPECT_EQ(query.GetUserChannels(2, &output), Variant::Long(0));
  EXPECT_EQ(output, Variant(""));
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
