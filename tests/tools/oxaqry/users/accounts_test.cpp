#include <tuple>
#include <utility>

#include "tests/tools/oxaqry/users/oxaqry_database.h"

namespace oxaqrycln::oxaqry {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

using UserAccountCommands = OnDatabase;
INSTANTIATE_TEST_SUITE_P(Databases, UserAccountCommands, ::testing::ValuesIn(Kinds()), KindName);

TEST_P(UserAccountCommands, InitMakesTheTablesOfAnEmptyDatabaseOnly) {
  const UserTestDatabase database(GetParam(), false);
  EXPECT_THAT(database.User({"list"}).err, HasSubstr("\"oxaqry user init\""));
  database.Run("CREATE TABLE Outliner (ID INTEGER)");
  EXPECT_THAT(database.User({"init"}).err, HasSubstr("already has a table \"Outliner\""));
  EXPECT_ANY_THROW(database.Count("Users"));
  // A creation that fails half way is rolled back.
  database.Run("DROP TABLE Outliner; CREATE TABLE Other (ID INTEGER); CREATE INDEX UserGroupsByGroup ON Other (ID)");
  EXPECT_THAT(database.User({"init"}).err, AllOf(HasSubstr("cannot be changed: ["), HasSubstr("already exists")));
  EXPECT_ANY_THROW(database.Count("Users"));
  database.Run("DROP TABLE Other");
  EXPECT_EQ(database.User({"init"}).out, "Created 17 tables\n");
  database.Must({"add", "Sales", "--group"});
  ExpectError(database.User({"init"}), 1, "already");
  EXPECT_EQ(database.Count("Users"), 1);
  EXPECT_EQ(database.Count("OutlinerContent") + database.Count("DocRights"), 0) << "the sample was not asked for";
}

TEST(UserCommands, SayWhyADatabaseCannotBeUsed) {
  const UserTestDatabase database(Kind::Sqlite, false);
  const auto other = database.Connect();
  other->Execute("BEGIN EXCLUSIVE");
  for (const char* command : {"list", "init"}) {
    const ToolRun run =
        RunOxaqry({"user", command}, {{"OXAQRY_DATABASE", database.connectionString() + ";Timeout=100"}});
    ExpectError(run, 1, "the table Users cannot be read: [");
    EXPECT_THAT(run.err, AllOf(HasSubstr("locked"), Not(HasSubstr("user init"))));
  }
  const ToolRun closed = RunOxaqry({"user", "list"}, {{"OXAQRY_DATABASE", "Driver=none;PWD=Geh3im"}});
  ExpectError(closed, 1, "the web user database cannot be opened: ");
  EXPECT_THAT(closed.err, Not(HasSubstr("Geh3im")));
}

TEST_P(UserAccountCommands, AddedUsersLogOnAndGroupsDoNot) {
  const UserTestDatabase database(GetParam());
  database.Must({"add", "m\u00FCller", "--archive-user", "WEB", "--password-stdin"}, "\u00A3 5\narchive pw\r\n");
  database.Must({"add", "Sales", "--group"});
  WebPage page(database);
  const Variant id = page.query.CheckLogon("m\xFCller", "\xA3 5");
  ASSERT_EQ(id, Variant::Long(1)) << page.Log();
  Variant account;
  Variant password;
  page.query.GetUserTELOUser(id, &account, &password);
  EXPECT_EQ(account, Variant("WEB"));
  EXPECT_EQ(password, Variant("archive pw"));
  EXPECT_EQ(page.query.CheckLogon("Sales", ""), Variant::Long(0)) << "a group has no password, not even an empty one";
  using Case = std::tuple<const char*, const char*, int>;
  for (const auto& [name, given, status] :
       {Case{"m\u00FCller", "\u00A3 5\n", 0}, Case{"m\u00FCller", "\u00A3 6\n", 1}, Case{"m\u00FCller", "\n", 1},
        Case{"nobody", "x\n", 1}, Case{"Sales", "\n", 1}}) {
    EXPECT_EQ(database.User({"check", name, "--password-stdin"}, given).status, status) << name << given;
  }
  database.Run("DROP TABLE UserGroups; ALTER TABLE Users RENAME COLUMN Passwd TO Gone");
  EXPECT_THAT(database.User({"check", "m\u00FCller", "--password-stdin"}, "x\n").err, HasSubstr("cannot be checked"));
}

TEST_P(UserAccountCommands, AnIdSelectsOneOfSeveralUsersOfAName) {
  const UserTestDatabase database(GetParam());
  database.Must({"add", "anna", "--password-stdin"}, "one\n");
  ExpectError(database.User({"add", "anna", "--password-stdin"}, "two\n"), 1, "--duplicate");
  database.Must({"add", "anna", "--duplicate", "--password-stdin"}, "two\n");
  EXPECT_THAT(database.User({"rights", "anna"}).err, HasSubstr("--id (1, 2)"));
  EXPECT_THAT(database.User({"rights", "anna", "--id", "3"}).err, HasSubstr("is not named"));
  database.Must({"passwd", "anna", "--id", "2", "--password-stdin"}, "three\n");
  WebPage page(database);
  for (const auto& [state, stored] : {std::pair("on", 1), {"off", 0}}) {
    database.Must({"must-change", "anna", state, "--id", "2"});
    Variant flag;
    EXPECT_EQ(page.query.GetUserChangePasswd(2, &flag), Variant::Long(1));
    EXPECT_EQ(flag, Variant::Long(stored));
  }
  EXPECT_EQ(page.query.GetUserChangePasswd(1), Variant::Long(0));
  EXPECT_EQ(page.query.CheckLogon("anna", "one"), Variant::Long(1)) << "the password of the other user has changed";
  database.Run("DELETE FROM Users WHERE UserID=1");
  EXPECT_EQ(page.query.CheckLogon("anna", "three"), Variant::Long(2));
}

// The component's own ChangePasswd does not accept the ID 40000.
TEST_P(UserAccountCommands, PasswdChangesAGroupOnlyWithMakeUser) {
  const UserTestDatabase database(GetParam());
  database.Run(
      "INSERT INTO Users(UserID,UserName) VALUES(40000,'zoe'); INSERT INTO Users(UserID,UserName) VALUES(10,'Sales');"
      "INSERT INTO UserGroups VALUES(40000,10)");
  EXPECT_THAT(database.User({"passwd", "zoe", "--password-stdin"}, "new\n").err, HasSubstr("--make-user"));
  EXPECT_EQ(database.User({"check", "zoe", "--password-stdin"}, "new\n").status, 1);
  database.Must({"passwd", "zoe", "--make-user", "--password-stdin"}, "old\n");
  database.Must({"passwd", "zoe", "--password-stdin"}, "new\n");
  EXPECT_EQ(database.User({"check", "zoe", "--password-stdin"}, "new\n").status, 0);
  EXPECT_THAT(database.User({"passwd", "Sales", "--make-user", "--password-stdin"}, "new\n").err,
              HasSubstr("is a group, which has no password"));
}

TEST_P(UserAccountCommands, ListUsersAndGroupsSeparately) {
  const UserTestDatabase database(GetParam());
  database.Must({"add", "bert", "--archive-user", "WEB", "--password-stdin"}, "secret\nhidden\n");
  database.Must({"add", "Sales", "--group"});
  database.Must({"grant", "bert", "--group", "Sales"});
  EXPECT_EQ(JsonOf(database.User({"list", "--json"})),
            Json::parse(R"([{"userId":1,"name":"bert","archiveUser":"WEB","mustChangePassword":false,
                             "disabled":false,"groups":["Sales"]}])"));
  EXPECT_EQ(JsonOf(database.User({"list", "--groups", "--json"})),
            Json::parse(R"([{"userId":2,"name":"Sales","members":["bert"]}])"));
  EXPECT_THAT(database.User({"list"}).out, AllOf(HasSubstr("bert"), HasSubstr("WEB"), Not(HasSubstr("2   Sales"))));
  EXPECT_EQ(JsonOf(database.User({"list", "bert", "--json"})).size(), 1U);
  ExpectError(database.User({"list", "Sales"}), 1, "no user \"Sales\"; it is a group: --groups");
  EXPECT_EQ(database.User({"groups", "bert"}).out, "Sales\n");
  const std::string character = GetParam() == Kind::Sqlite ? "CHAR(321)" : "CHR(321)";  // beyond Windows-1252
  database.Run("INSERT INTO Users(UserID,UserName,Passwd) VALUES(3," + character + ",'x')");
  EXPECT_THAT(database.User({"list"}).out, AllOf(HasSubstr("bert"), HasSubstr("3   (not in Windows-1252)")));
}

TEST_P(UserAccountCommands, RefuseUnsuitableTextsAndWrongUsageBeforeAnyChange) {
  const UserTestDatabase database(GetParam());
  database.Must({"add", "anna", "--password-stdin"}, "secret\n");
  const char* const typed = "--password-stdin";
  const char* const injection = "x'; DELETE FROM Users; --";
  const char* const nested = R"(Provider=MSDASQL;Extended Properties="DSN=web;Password=x")";
  struct Case {
    int status;
    std::vector<std::string> arguments;
    const char* message;
    const char* input = "";
  };
  for (const Case& each : {
           Case{1, {"add", injection, typed}, "single quote", "pw\n"},
           Case{1, {"add", "x", "--archive-user", injection, typed}, "single quote", "a\nb\n"},
           Case{1, {"check", injection, typed}, "single quote", "pw\n"},
           Case{1, {"grant", "anna", "--archive", injection}, "single quote"},
           Case{1, {"grant", "anna", "--channel", "a^,^b"}, "separate the entries"},
           Case{1, {"add", "an\tna", "--group"}, "control character"},
           Case{1, {"add", "", "--group"}, "name is empty"},
           Case{1, {"grant", "anna", "--group", ""}, "name of the group is empty"},
           Case{1, {"explain", "anna", "--archive", ""}, "the archive is empty"},
           Case{1, {"add", "\u4E2D", "--group"}, "Windows-1252"},
           Case{1, {"add", "x", typed}, "password is empty", "\n"},
           Case{1, {"add", "x", typed}, "no further line"},
           Case{1, {"passwd", "anna", typed}, "174", "\u00FC\n"},
           Case{1, {"passwd", "anna", typed}, "Windows-1252", "\u4E2D\n"},
           Case{2, {"foo"}, "unknown command \"user foo\""},
           Case{2, {"add", "new"}, "--password-stdin"},
           Case{2, {"list", "--database", "DSN=web; pwd ={x y}"}, "can be read by everybody"},
           Case{2, {"list", "--database", nested}, "can be read by everybody"},
           Case{2, {"add", "new", "--group", "--archive-user", "W"}, "--group"},
           Case{2, {"must-change", "anna", "perhaps"}, "STATE"},
           Case{2, {"grant", "anna"}, "--right"},
           Case{2, {"grant", "anna", "--right", "1 OR 1=1"}, "whole number"},
           Case{2, {"grant", "anna", "--right", "2147483648"}, "--right"},
           Case{2, {"grant", "anna", "--right", "010"}, "whole number"},
           Case{2, {"rights", "anna", "--id", "x"}, "--id: \"x\" is not a whole number"},
           Case{2, {"grant", "anna", "--edit", "A="}, "ARCHIVE=LETTERS"},
           Case{2, {"revoke", "anna", "--edit", "A=NX"}, "\"NX\""},
           Case{2, {"explain", "anna"}, "give one right"},
           Case{2, {"explain", "anna", "1", "--archive", "A"}, "give one right"},
       }) {
    SCOPED_TRACE(::testing::PrintToString(each.arguments) + each.input);
    ExpectError(database.User(each.arguments, each.input), each.status, each.message);
  }
  EXPECT_EQ(database.Count("Users"), 1);
  EXPECT_EQ(database.User({"check", "anna", "--password-stdin"}, "secret\n").status, 0);
}

}  // namespace
}  // namespace oxaqrycln::oxaqry
