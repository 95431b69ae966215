#include "client/users.h"

#include <gmock/gmock.h>

#include "client/archive.h"
#include "tests/support/test_database.h"

namespace oxaqrycln::client {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::Kind;
using ::testing::Pair;
using testing::TestDatabase;

class UsersOfADatabase : public testing::OnDatabase {};
INSTANTIATE_TEST_SUITE_P(Databases, UsersOfADatabase, ::testing::ValuesIn(testing::Kinds()), testing::KindName);

constexpr const char* kRights = R"(
  INSERT INTO UserChannels VALUES (1,'Finance'), (10,'Mail');
  INSERT INTO UserArchives VALUES (1,'$(#Finance)\Orders'), (1,'$(#Technik)\Plans');
  INSERT INTO UserRights VALUES (1,3), (10,7);
  INSERT INTO UserEditRights VALUES (1,'$(#Finance)\Orders',1,0,1);
  INSERT INTO DocRights VALUES (1,'Finance','');
  INSERT INTO DocRightFields VALUES (1,15,'<','5000','NUM',1);
  INSERT INTO UserDocRights VALUES (1,1);
  INSERT INTO SearchRights VALUES (1);
  INSERT INTO SearchRightArchives VALUES (1,'','');
  INSERT INTO SearchRightFields VALUES (1,12,'Oak',0,0), (1,20,'',1,1);
  INSERT INTO UserSearchRights VALUES (1,1))";

Users Open(const TestDatabase& database) {
  Settings settings;
  settings.database = database.connectionString();
  return Users(settings);
}

TEST_P(UsersOfADatabase, LogOnAndChangeTheirPasswords) {
  const TestDatabase database(GetParam());
  Users users = Open(database);
  const std::int32_t jo = users.Create("Jörg", "Passwort", Account{"webuser", "secret"});
  EXPECT_EQ(users.LogOn("Jörg", "Passwort"), jo);
  EXPECT_EQ(users.Find("Jörg"), jo);
  for (const auto& [name, password] :
       {std::pair{"Jörg", "wrong"}, {"nobody", "Passwort"}, {"x' OR 'a'='a", "y"}, {"Łukasz", "x"}, {"Jörg", "\xFF"}}) {
    EXPECT_EQ(users.LogOn(name, password), std::nullopt) << name;
  }
  for (const char* lost : {"Paßwort", "xÿ"}) {
    EXPECT_THROW(users.Create("Anna", lost), BadArgument) << lost;
    EXPECT_THROW(users.ChangePassword("Jörg", "Passwort", lost), BadArgument) << lost;
  }
  EXPECT_FALSE(users.ChangePassword("Jörg", "wrong", "new"));
  EXPECT_TRUE(users.ChangePassword("Jörg", "Passwort", "new"));
  EXPECT_EQ(users.LogOn("Jörg", "new"), jo);
  EXPECT_FALSE(users.MustChangePassword(jo));
  users.SetMustChangePassword(jo, true);
  EXPECT_TRUE(users.MustChangePassword(jo));
  EXPECT_EQ(users.AccountOf(jo)->password, "secret");
  EXPECT_EQ(users.AccountOf(users.Create("Anna", "x")), std::nullopt);
  EXPECT_THROW(users.Create("o'neil", "x"), BadArgument);
  database.Run("ALTER TABLE Users RENAME TO Gone");
  EXPECT_THROW(users.LogOn("Jörg", "new"), DatabaseFailed) << "a dead database is no wrong password";
}

TEST_P(UsersOfADatabase, HaveRightsThatFailClosed) {
  const TestDatabase database(GetParam(), true, std::string(testing::kUsers) + kRights);
  Users users = Open(database);
  EXPECT_THAT(users.Rights(1), ::testing::UnorderedElementsAre(3, 7));
  EXPECT_THAT(users.Groups(1), ::testing::UnorderedElementsAre("Sales", "Support"));
  EXPECT_TRUE(users.EditRights(1).at(0).canDelete && !users.EditRights(1)[0].canEdit);
  EXPECT_EQ(users.EditRights(1)[0].archive, "$(#Finance)\\Orders");
  EXPECT_EQ(users.DocumentConditions(1, "Finance", "Orders").at(0).value, "5000");
  EXPECT_THAT(users.RightsToSearch(1, "A", "B").fixedValues, ElementsAre(Pair("12", "Oak")));
  EXPECT_THAT(users.RightsToSearch(1, "A", "B").hiddenFields, ElementsAre("20"));
  // Only channels that the user sees, and of them the archives that are listed.
  EXPECT_EQ(users.FolderRights(1), "$(#Finance)\\Orders;$(#Mail);");
  EXPECT_EQ(users.FolderRights(2), "");
  database.Run("INSERT INTO UserChannels VALUES (2,'A)$(#B')");
  EXPECT_THROW(users.FolderRights(2), DatabaseFailed);
  database.Run("DROP TABLE UserArchives; DROP TABLE UserSearchRights; DROP TABLE UserDocRights");
  EXPECT_THROW(users.FolderRights(1), DatabaseFailed);
  EXPECT_THROW(users.RightsToSearch(1, "A", "B"), DatabaseFailed);
  EXPECT_THROW(users.DocumentConditions(1, "A", "B"), DatabaseFailed);
}

TEST_P(UsersOfADatabase, ReachOutliners) {
  const TestDatabase database(GetParam());
  Settings settings;
  settings.database = database.connectionString();
  Archive archive(settings);
  EXPECT_THAT(archive.Outline("Finance", "Invoices"), IsEmpty());
  EXPECT_THAT(archive.Nodes("1"), IsEmpty());
  EXPECT_THROW(Users{Settings{}}, BadArgument);
}

}  // namespace
}  // namespace oxaqrycln::client
