#include <tuple>
#include <utility>

#include "tests/tools/oxaqry/users/oxaqry_database.h"

namespace oxaqrycln::oxaqry {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

using UserAccountCommands = OnDatabase;
INSTANTIATE_TEST_SUITE_P(Databases, UserAccountCommands, ::testing::Values(Kind::Sqlite, Kind::Postgres), KindName);

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

TEST(UserCommands, DistinguishALockedDatabaseFromAnEmptyOne) {
  const UserTestDatabase database(Kind::Sqlite, false);
  const auto other = database.Connect();
  other->Execute("BEGIN EXCLUSIVE");
  for (const char* command : {"list", "init"}) {
    const ToolRun run =
        RunOxaqry({"user", command}, {{"OXAQRY_DATABASE", database.connectionString() + ";Timeout=100"}});
    ExpectError(run, 1, "the table Users cannot be read: [");
    EXPECT_THAT(run.err, AllOf(HasSubstr("locked"), Not(HasSubstr("user init"))));
  }
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
                             "groups":["Sales"]}])"));
  EXPECT_EQ(JsonOf(database.User({"list", "--groups", "--json"})),
            Json::parse(R"([{"userId":2,"name":"Sales","members":["bert"]}])"));
  EXPECT_THAT(database.User({"list"}).out, AllOf(HasSubstr("bert"), HasSubstr("WEB"), Not(HasSubstr("2   Sales"))));
  EXPECT_EQ(database.User({"groups", "bert"}).out, "Sales\n");
  const std::string character = GetParam() == Kind::Sqlite ? "CHAR(321)" : "CHR(321)";  // beyond Windows-1252
  database.Run("INSERT INTO Users(UserID,UserName,Passwd) VALUES(3," + character + ",'x')");
  EXPECT_THAT(database.User({"list"}).out, AllOf(HasSubstr("bert"), HasSubstr("3   (not in Windows-1252)")));
}

TEST_P(UserAccountCommands, UnsuitableTextsAreRefusedBeforeAnyChange) {
  const UserTestDatabase database(GetParam());
  database.Must({"add", "anna", "--password-stdin"}, "secret\n");
  const char* const typed = "--password-stdin";
  const std::string injection = "x'; DELETE FROM Users; --";
  using Case = std::tuple<const char*, std::vector<std::string>, std::string, const char*>;
  for (const auto& [name, arguments, input, message] : {
           Case{"name", {"add", injection, typed}, "pw\n", "single quote"},
           Case{"group name", {"add", injection, "--group"}, "", "single quote"},
           Case{"archive user", {"add", "x", "--archive-user", injection, typed}, "a\nb\n", "single quote"},
           Case{"name that is looked up", {"must-change", injection, "on"}, "", "single quote"},
           Case{"name that logs on", {"check", injection, typed}, "pw\n", "single quote"},
           Case{"group", {"grant", "anna", "--group", injection}, "", "single quote"},
           Case{"archive", {"grant", "anna", "--archive", injection}, "", "single quote"},
           Case{"edit rights", {"grant", "anna", "--edit", injection + "=N"}, "", "single quote"},
           Case{"explained channel", {"explain", "anna", "--channel", injection}, "", "single quote"},
           Case{"divider of lists", {"grant", "anna", "--channel", "a^,^b"}, "", "separate the entries"},
           Case{"control character", {"add", "an\tna", "--group"}, "", "control character"},
           Case{"empty name", {"add", "", "--group"}, "", "name is empty"},
           Case{"empty archive user", {"add", "x", "--archive-user", "", typed}, "a\nb\n", "archive user is empty"},
           Case{"empty group", {"grant", "anna", "--group", ""}, "", "name of the group is empty"},
           Case{"nothing as an explained archive", {"explain", "anna", "--archive", ""}, "", "the archive is empty"},
           Case{"nothing as explained edit rights", {"explain", "anna", "--edit", ""}, "", "the archive is empty"},
           Case{"outside the code page", {"add", "\u4E2D", "--group"}, "", "Windows-1252"},
           Case{"empty password", {"add", "x", typed}, "\n", "password is empty"},
           Case{"no password", {"add", "x", typed}, "", "no further line"},
           Case{"no second password", {"add", "x", "--archive-user", "W", typed}, "pw\n", "no further line"},
           Case{"password that loses a character", {"passwd", "anna", typed}, "\u00FC\n", "174"},
           Case{"password that is too long", {"passwd", "anna", typed}, std::string(100, 'z') + "\n", "174"},
           Case{"password outside the code page", {"passwd", "anna", typed}, "\u4E2D\n", "Windows-1252"},
       }) {
    SCOPED_TRACE(name);
    ExpectError(database.User(arguments, input), 1, message);
  }
  EXPECT_EQ(database.Count("Users"), 1);
  EXPECT_EQ(database.User({"check", "anna", "--password-stdin"}, "secret\n").status, 0);
}

TEST(UserCommandLine, ReportsWrongUsage) {
  const UserTestDatabase database(Kind::Sqlite);
  database.Must({"add", "x", "--group"});
  using Case = std::tuple<const char*, std::vector<std::string>, const char*>;
  for (const auto& [name, arguments, message] : {
           Case{"unknown command", {"foo"}, "unknown command \"user foo\""},
           Case{"unknown option", {"--jsn"}, "unknown option \"--jsn\""},
           Case{"no terminal", {"add", "new"}, "--password-stdin"},
           Case{"password as an argument", {"add", "new", "--password", "y"}, "--password"},
           Case{
               "connection with a password", {"list", "--database", "DSN=web; pwd ={x y}"}, "can be read by everybody"},
           Case{"connection with a nested password",
                {"list", "--database", R"(Provider=MSDASQL;Extended Properties="DSN=web;Password=x")"},
                "can be read by everybody"},
           Case{"group with an account", {"add", "new", "--group", "--archive-user", "W"}, "--group"},
           Case{"no state", {"must-change", "x", "perhaps"}, "STATE"},
           Case{"no right", {"grant", "x"}, "--right"},
           Case{"right that is not a number", {"grant", "x", "--right", "1 OR 1=1"}, "whole number"},
           Case{"right that is a sign", {"grant", "x", "--right", "-"}, "whole number"},
           Case{"right that is too large", {"grant", "x", "--right", "2147483648"}, "--right"},
           Case{"edit rights without letters", {"grant", "x", "--edit", "A="}, "ARCHIVE=LETTERS"},
           Case{"unknown letter", {"revoke", "x", "--edit", "A=NX"}, "\"NX\""},
           Case{"nothing to explain", {"explain", "x"}, "give one right"},
           Case{"two things to explain", {"explain", "x", "1", "--archive", "A"}, "give one right"},
       }) {
    SCOPED_TRACE(name);
    ExpectError(database.User(arguments), 2, message);
  }
}

TEST_P(UserAccountCommands, NoErrorShowsThePasswordOfTheConnection) {
  const UserTestDatabase database(GetParam());
  const std::string password = "Geh3im;x";
  const std::string connection =
      "Driver={PostgreSQL Unicode};Server=127.0.0.1;Port=1;UID=web;Database=x;PWD={" + password + "}";
  for (const std::string& text : {connection, database.connectionString() + ";PWD=Geh3im;x;Driver=none",
                                  "Provider=Unknown;Password=\"" + password + "\"", "PWD={" + password}) {
    const ToolRun run = RunOxaqry({"user", "list"}, {{"OXAQRY_DATABASE", text}});
    ExpectError(run, 1, "the web user database cannot be opened: ");
    EXPECT_THAT(run.err, Not(HasSubstr("Geh3im")));
  }
}

}  // namespace
}  // namespace oxaqrycln::oxaqry
