#include "tests/tools/oxaqry/user_test_database.h"

namespace oxaqrycln::testing {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

using UserImport = OnDatabase;
INSTANTIATE_TEST_SUITE_P(Databases, UserImport, ::testing::Values(Kind::Sqlite, Kind::Postgres), KindName);

TEST_P(UserImport, TakesEveryFormOfAField) {
  const UserTestDatabase database(GetParam());
  database.Must({"add", "Sales", "--group"});
  database.Must({"add", "Support, second", "--group"});
  const std::string csv =
      "\xEF\xBB\xBFgroups,name,password,archive_password,archive_user\r\n"
      "Sales,anna,pw1,,\r\n"
      "\r\n"
      "\"Sales;Support, second;Sales\",\"M\u00FCller, \"\"Max\"\"\",\"p,w\"\"2\",web pw,WEB\n"
      ",cara,pw3,,";
  const ToolRun run = database.User({"import", "-", "--json"}, csv);
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "{\n  \"imported\": 3\n}\n");
  WebPage page(database);
  EXPECT_EQ(page.query.CheckLogon("anna", "pw1"), Variant::Long(3));
  const Variant id = page.query.CheckLogon("M\xFCller, \"Max\"", "p,w\"2");
  EXPECT_EQ(id, Variant::Long(4));
  EXPECT_EQ(page.query.CheckLogon("cara", "pw3"), Variant::Long(5));
  Variant account;
  Variant password;
  page.query.GetUserTELOUser(id, &account, &password);
  EXPECT_EQ(account, Variant("WEB"));
  EXPECT_EQ(password, Variant("web pw"));
  EXPECT_EQ(page.query.GetUserGroups(id), Variant::Long(2));
  EXPECT_EQ(database.Count("UserGroups"), 3);
}

TEST_P(UserImport, NamesTheLineOfWhatIsWrongAndWritesNothing) {
  const UserTestDatabase database(GetParam());
  database.Must({"add", "anna", "--password-stdin"}, "pw\n");
  struct Case {
    const char* name;
    const char* csv;
    const char* message;
  };
  const std::string loss = "name,password\nbert,pw\ncara,\u00FC\n";
  const std::vector<Case> cases{
      {"nothing", "", "no header line"},
      {"unknown column", "name,password,colour\n", "line 1: column 3 is unknown"},
      {"column twice", "name,password,name\n", "line 1: the column \"name\" stands there twice"},
      {"column missing", "name,groups\n", "line 1: the columns \"name\" and \"password\" are needed"},
      {"field missing", "name,password\nbert,pw\ncara\n", "line 3: the number of fields is 1 instead of 2"},
      {"field too many", "name,password\nbert,pw,x\n", "line 2: the number of fields is 3 instead of 2"},
      {"no name", "name,password\nbert,pw\n,pw\n", "line 3: the name is empty"},
      {"no password", "name,password\nbert,\n", "line 2: the password is empty"},
      {"loss in the encoding", loss.c_str(), "line 3: the password cannot be kept"},
      {"no UTF-8", "name,password\nbert,pw\nca\xFFra,pw\n", "line 3: "},
      {"injection", "name,password\nbert,pw\n\"x'); DELETE FROM Users; --\",pw\n", "line 3: the name holds a single"},
      {"name in the file twice", "name,password\nbert,pw\nbert,pw\n", "line 3: the name \"bert\" stands"},
      {"known name", "name,password\nbert,pw\nanna,pw\n", "line 3: there is a user \"anna\" already"},
      {"unknown group", "name,password,groups\nbert,pw,Sales\n", "line 2: there is no group \"Sales\""},
      {"empty group", "name,password,groups\nbert,pw,;\n", "line 2: the list of groups holds an empty name"},
      {"user for a group", "name,password,groups\nbert,pw,anna\n", "line 2: there is no group \"anna\""},
      {"archive password alone", "name,password,archive_password\nbert,pw,x\n", "line 2: there is an archive password"},
      {"archive user alone", "name,password,archive_user\nbert,pw,W\n", "line 2: the archive password is empty"},
      {"quote inside", "name,password\nbert,p\"w\n", "line 2: a quote stands inside"},
      {"text behind a quote", "name,password\n\"bert\"x,pw\n", "line 2: behind a closing quote"},
      {"quote without an end", "name,password\nbert,pw\n\"cara,pw\ndirk,pw\n", "line 3: a quoted field has no end"},
      {"line behind one of two", "name,password\n\"be\nrt\",pw\n", "line 2: the name holds a control character"},
      {"error behind a field of two lines", "password,name\n\"p\nw\",bert\npw\n", "line 4: the number of fields is 1"},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.name);
    const ToolRun run = database.User({"import", "-"}, test.csv);
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, AllOf(StartsWith("oxaqry: "), HasSubstr(test.message)));
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(database.Count("Users"), 1);
  }
}

TEST_P(UserImport, IsUndoneWhenTheDatabaseRefusesARow) {
  const UserTestDatabase database(GetParam());
  database.Must({"add", "Sales", "--group"});
  database.Run("CREATE UNIQUE INDEX OneAccount ON Users (TELOUser)");
  const std::string csv =
      "name,password,archive_user,archive_password,groups\n"
      "anna,pw,WEB,pw,Sales\nbert,pw,WEB2,pw,\ncara,pw,WEB,pw,\ndirk,pw,WEB3,pw,\n";
  const ToolRun run = database.User({"import", "-"}, csv);
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.err, HasSubstr("line 4: the user cannot be created: ["));
  EXPECT_EQ(database.Count("Users"), 1);
  EXPECT_EQ(database.Count("UserGroups"), 0);
  database.Run("DROP INDEX OneAccount");
  EXPECT_EQ(database.User({"import", "-"}, csv).status, 0);
  EXPECT_EQ(database.Count("Users"), 5);
}

}  // namespace
}  // namespace oxaqrycln::testing
