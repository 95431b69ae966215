// Users are removed, renamed, disabled and exported; grants are compared with the archives of a query server.
#include <filesystem>
#include <tuple>

#include "tests/tools/oxaqry/scripted_archive.h"
#include "tests/tools/oxaqry/users/oxaqry_database.h"

namespace oxaqrycln::oxaqry {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

using UserMaintenance = OnDatabase;
INSTANTIATE_TEST_SUITE_P(Databases, UserMaintenance, ::testing::ValuesIn(Kinds()), KindName);

constexpr const char* kTablesOfUsers[] = {"UserGroups",   "UserRights",    "UserEditRights",  "UserArchives",
                                          "UserChannels", "UserDocRights", "UserSearchRights"};

// anna (1) is a member of Sales (2); both have an entry in every table.
void AddAnnaWithEverything(const UserTestDatabase& database) {
  database.Must({"add", "anna", "--password-stdin"}, "pw\n");
  database.Must({"add", "Sales", "--group"});
  database.Run("INSERT INTO DocRights VALUES(7,'',''); INSERT INTO SearchRights VALUES(7)");
  database.Must({"grant", "anna", "--group", "Sales"});
  for (const char* name : {"anna", "Sales"}) {
    database.Must({"grant", name, "--right", "3", "--edit", "A=N", "--archive", "A", "--channel", "C", "--doc-right",
                   "7", "--search-right", "7"});
  }
}

TEST_P(UserMaintenance, RemoveTakesEveryEntryOfOneUserOrNothing) {
  const UserTestDatabase database(GetParam());
  AddAnnaWithEverything(database);
  ExpectError(database.User({"remove", "Sales", "--yes"}), 1, "has members");
  ExpectError(database.User({"remove", "anna"}), 2, "--yes");
  const ToolRun refused = database.With({}, {"user", "remove", "anna"}, "n\n", {.in = true});
  EXPECT_THAT(refused.err, AllOf(HasSubstr("Remove the user anna (ID 1)"), HasSubstr("nothing was changed")));
  database.Run("CREATE TABLE Orders (Customer INTEGER REFERENCES Users (UserID)); INSERT INTO Orders VALUES (1)");
  if (GetParam() == Kind::Postgres) {  // the driver of SQLite checks no references by default
    ExpectError(database.User({"remove", "anna", "--yes"}), 1, "cannot be changed");
    for (const char* table : kTablesOfUsers) EXPECT_GE(database.Count(table), 1) << table;
  }
  database.Run("DROP TABLE Orders");
  EXPECT_EQ(database.With({}, {"user", "remove", "anna"}, "y\n", {.in = true}).status, 0);
  for (const char* table : kTablesOfUsers) {
    const bool isMembership = std::string_view(table) == "UserGroups";
    EXPECT_EQ(database.Count(table), isMembership ? 0 : 1) << table;
    EXPECT_EQ(database.Count(std::string(table) + " WHERE UserID=1"), 0) << table;
  }
  EXPECT_EQ(database.Run("SELECT MAX(UserID) FROM Users WHERE UserName='Sales'"), Variant::Long(2));
}

TEST_P(UserMaintenance, RemoveWithForceTakesTheMembershipsOfAGroup) {
  const UserTestDatabase database(GetParam());
  AddAnnaWithEverything(database);
  database.Run("DROP TABLE UserDocRights");  // as in a database made by other means
  database.Must({"remove", "Sales", "--force", "--yes"});
  EXPECT_EQ(database.Count("UserGroups"), 0);
  EXPECT_EQ(database.User({"check", "anna", "--password-stdin"}, "pw\n").status, 0);
}

TEST_P(UserMaintenance, RenamedUsersLogOnByTheNewNameOnly) {
  const UserTestDatabase database(GetParam());
  AddAnnaWithEverything(database);
  ExpectError(database.User({"rename", "anna", "Sales"}), 1, "already is a group \"Sales\": --duplicate");
  ExpectError(database.User({"rename", "anna", "an'na"}), 1, "single quote");
  database.Must({"rename", "anna", "m\u00FCller"});
  WebPage page(database);
  EXPECT_EQ(page.query.CheckLogon("m\xFCller", "pw"), Variant::Long(1));
  EXPECT_EQ(page.query.CheckLogon("anna", "pw"), Variant::Long(0));
  EXPECT_EQ(page.query.GetUserRights(1), Variant::Long(1));
}

TEST_P(UserMaintenance, NoPasswordLogsADisabledUserOn) {
  const UserTestDatabase database(GetParam());
  AddAnnaWithEverything(database);
  ExpectError(database.User({"disable", "Sales", "--yes"}), 1, "is a group, which has no password");
  ExpectError(database.User({"disable", "anna"}), 2, "--yes");
  database.Must({"disable", "anna", "--yes"});
  EXPECT_THAT(database.User({"disable", "anna"}).out, HasSubstr("already disabled"));
  WebPage page(database);
  for (const char* password : {"pw", "", "NULL"}) {
    EXPECT_EQ(page.query.CheckLogon("anna", password), Variant::Long(0)) << password;
    EXPECT_EQ(page.query.ChangePasswd("anna", password, "new"), Variant::Integer(0)) << password;
  }
  EXPECT_EQ(page.query.CheckLogon("anna", "new"), Variant::Long(0));
  EXPECT_EQ(JsonOf(database.User({"list", "--json"}))[0]["disabled"], true) << "it is no group";
  ExpectError(database.User({"grant", "Sales", "--group", "anna"}), 1, "no group \"anna\"");
  database.Must({"passwd", "anna", "--password-stdin"}, "again\n");
  EXPECT_EQ(page.query.CheckLogon("anna", "again"), Variant::Long(1));
  EXPECT_EQ(database.Count("UserRights"), 2);
  database.Must({"add", "anna", "--duplicate", "--password-stdin"}, "second\n");
  EXPECT_THAT(database.User({"disable", "anna", "--id", "1", "--yes"}).err, HasSubstr("other users of that name"));
}

TEST_P(UserMaintenance, AnImportTakesWhatAnExportHasWritten) {
  const UserTestDatabase database(GetParam());
  for (const char* group : {"Sales", "a;b", "Twice"}) database.Must({"add", group, "--group"});
  database.Must({"add", "Twice", "--group", "--duplicate"});
  database.Must({"add", "M\u00FCller, \"Max\"", "--archive-user", "WEB", "--password-stdin"}, "p,w\"2\nweb pw\n");
  database.Run(
      "INSERT INTO UserGroups VALUES(5,1); INSERT INTO UserGroups VALUES(5,2); INSERT INTO UserGroups VALUES(5,3);"
      "INSERT INTO Users(UserID,UserName,Passwd,TELOUser) SELECT 6,'bert',Passwd,'W' FROM Users WHERE UserID=5;"
      "INSERT INTO Users(UserID,UserName,Passwd) SELECT 7,'bert',Passwd FROM Users WHERE UserID=5;"
      "INSERT INTO Users(UserID,UserName,Passwd) VALUES(8,'cara','no code')");
  const TemporaryDirectory directory;
  const std::string file = directory.File("users.csv");
  const Json notes = JsonOf(database.User({"export", file, "--json"}))["notExported"];
  std::string found;
  for (const Json& note : notes) {
    const std::string reason = note["reason"];
    found += note["userId"].dump() + (note["exported"] == true ? " " : " - ") + reason.substr(0, 20) + "\n";
  }
  EXPECT_EQ(found,
            "1 - a group\n2 - a group\n3 - a group\n4 - a group\n5 without the group \"a\n5 without the group \"T\n"
            "6 without the archive \n7 - another user of that\n8 - the password is not \n");
  namespace fs = std::filesystem;
  EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  ExpectError(database.User({"export", file}), 1, "exists");
  const ToolRun streamed = database.User({"export", "-"});
  EXPECT_EQ(streamed.out, directory.Read("users.csv"));
  EXPECT_THAT(streamed.err, HasSubstr("cara (ID 8) is not exported: the password is not an encoded one"));

  const UserTestDatabase second(GetParam());
  second.Must({"add", "Sales", "--group"});
  ASSERT_EQ(second.User({"import", file}).out, "Imported 2 users\n");
  WebPage page(second);
  const Variant id = page.query.CheckLogon("M\xFCller, \"Max\"", "p,w\"2");
  EXPECT_EQ(id, Variant::Long(2));
  Variant account;
  Variant password;
  page.query.GetUserTELOUser(id, &account, &password);
  EXPECT_EQ(account, Variant("WEB"));
  EXPECT_EQ(password, Variant("web pw"));
  EXPECT_EQ(second.Count("UserGroups"), 1);
}

TEST_P(UserMaintenance, GrantsOfUnknownNamesWarnAndUnreachableServersDoNotFail) {
  const UserTestDatabase database(GetParam());
  database.Must({"add", "Sales", "--group"});
  ScriptedArchive server({{"GetAllArchivesExt", ScriptedArchive::Lines({"#Finance,money", "Invoices,sent"})}});
  const std::vector<std::string> grant{"user",
                                       "grant",
                                       "Sales",
                                       "--channel",
                                       "Finance",
                                       "--channel",
                                       "Finances",
                                       "--archive",
                                       "Invoices",
                                       "--archive",
                                       R"($(#Finance)\Invoices)",
                                       "--edit",
                                       "Orders=N"};
  const ToolRun warned = database.With({{"OXAQRY_REMOTE_HOSTS", server.Hosts()}}, grant);
  EXPECT_EQ(warned.status, 0);
  EXPECT_EQ(warned.err,
            "oxaqry: warning: the query servers list no channel \"Finances\"\n"
            "oxaqry: warning: the query servers list no archive \"Orders\"\n");
  const ToolRun unchecked = database.With({{"OXAQRY_REMOTE_HOSTS", "127.0.0.1,1"}}, Joined(grant, {"--json"}));
  EXPECT_EQ(unchecked.status, 0);
  EXPECT_THAT(Json::parse(unchecked.err, nullptr, false)["warning"].get<std::string>(),
              HasSubstr("not checked: the query servers did not answer"));
  EXPECT_EQ(database.Command(grant).err, "");
}

using UserFile = OnSqlite;

TEST_F(UserFile, OfSqliteIsReadableByItsOwnerOnly) {
  const TemporaryDirectory directory;
  const std::string file = directory.File("web users.sqlite");
  directory.Write("web users.sqlite", "");
  namespace fs = std::filesystem;
  fs::permissions(file, fs::perms::all);
  const ToolRun run = RunOxaqry({"user", "init"}, {{"OXAQRY_DATABASE", "Driver={SQLite3};Database=" + file}});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

}  // namespace
}  // namespace oxaqrycln::oxaqry
