#include <tuple>

#include "tests/tools/oxaqry/users/oxaqry_database.h"

namespace oxaqrycln::oxaqry {
namespace {

using UserImport = OnDatabase;
INSTANTIATE_TEST_SUITE_P(Databases, UserImport, ::testing::ValuesIn(Kinds()), KindName);

TEST_P(UserImport, AcceptsEveryFormOfAField) {
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

TEST_P(UserImport, NamesTheLineOfAnErrorAndWritesNothing) {
  const UserTestDatabase database(GetParam());
  database.Must({"add", "anna", "--password-stdin"}, "pw\n");
  using Case = std::tuple<const char*, const char*, const char*>;
  const char* const loss = "name,password\nbert,pw\ncara,\u00FC\n";
  for (const auto& [name, csv, message] : {
           Case{"empty file", "", "no header line"},
           Case{"unknown column", "name,password,colour\n", "line 1: column 3 is unknown"},
           Case{"column twice", "name,password,name\n", "line 1: the column \"name\" occurs twice"},
           Case{"column missing", "name,groups\n", "line 1: the columns \"name\" and \"password\" are required"},
           Case{"field missing", "name,password\nbert,pw\ncara\n", "line 3: the number of fields is 1 instead of 2"},
           Case{"loss in the encoding", loss, "line 3: the password cannot be stored"},
           Case{"not UTF-8", "name,password\nbert,pw\nca\xFFra,pw\n", "line 3: "},
           Case{"name in the file twice", "name,password\nbert,pw\nbert,pw\n",
                "line 3: the name \"bert\" occurs twice"},
           Case{"known name", "name,password\nbert,pw\nanna,pw\n", "line 3: there already is a user \"anna\""},
           Case{"unknown group", "name,password,groups\nbert,pw,Sales\n", "line 2: there is no group \"Sales\""},
           Case{"empty group", "name,password,groups\nbert,pw,;\n",
                "line 2: the list of groups contains an empty name"},
           Case{"archive password alone", "name,password,archive_password\nbert,pw,x\n",
                "line 2: there is an archive password"},
           Case{"archive user alone", "name,password,archive_user\nbert,pw,W\n",
                "line 2: the archive password is empty"},
           Case{"quote inside", "name,password\nbert,p\"w\n", "line 2: a field contains a quote"},
           Case{"text after a quote", "name,password\n\"bert\"x,pw\n", "line 2: a closing quote is not followed by"},
           Case{"quote without an end", "name,password\nbert,pw\n\"cara,pw\ndirk,pw\n",
                "line 3: a quoted field has no closing quote"},
           Case{"error after a field of two lines", "password,name\n\"p\nw\",bert\npw\n",
                "line 4: the number of fields is 1"},
       }) {
    SCOPED_TRACE(name);
    ExpectError(database.User({"import", "-"}, csv), 1, message);
    EXPECT_EQ(database.Count("Users"), 1);
  }
}

TEST_P(UserImport, IsRolledBackWhenTheDatabaseRefusesARow) {
  const UserTestDatabase database(GetParam());
  database.Must({"add", "Sales", "--group"});
  database.Run("CREATE UNIQUE INDEX OneAccount ON Users (TELOUser)");
  const std::string csv =
      "name,password,archive_user,archive_password,groups\n"
      "anna,pw,WEB,pw,Sales\nbert,pw,WEB2,pw,\ncara,pw,WEB,pw,\ndirk,pw,WEB3,pw,\n";
  ExpectError(database.User({"import", "-"}, csv), 1, "line 4: the user cannot be created: [");
  EXPECT_EQ(database.Count("Users"), 1);
  EXPECT_EQ(database.Count("UserGroups"), 0);
  database.Run("DROP INDEX OneAccount");
  EXPECT_EQ(database.User({"import", "-"}, csv).status, 0);
  EXPECT_EQ(database.Count("Users"), 5);
}

}  // namespace
}  // namespace oxaqrycln::oxaqry
