#include "tests/tools/oxaqry/user_test_database.h"
#include "tools/oxaqry/value_json.h"

namespace oxaqrycln::testing {
namespace {

using ::testing::HasSubstr;

using UserRightCommands = OnDatabase;
INSTANTIATE_TEST_SUITE_P(Databases, UserRightCommands, ::testing::Values(Kind::Sqlite, Kind::Postgres), KindName);

// anna (1), a member of the group Sales (2); Support (3) has no members.
void AddAnnaAndGroups(const UserTestDatabase& database) {
  database.Must({"add", "anna", "--password-stdin"}, "pw\n");
  database.Must({"add", "Sales", "--group"});
  database.Must({"add", "Support", "--group"});
  database.Must({"grant", "anna", "--group", "Sales"});
}

Json Rights(const UserTestDatabase& database, const char* name) {
  const ToolRun run = database.User({"rights", name, "--json"});
  Json json = Json::parse(run.out, nullptr, false);
  EXPECT_TRUE(json.is_object()) << run.err;
  return json;
}

TEST_P(UserRightCommands, GrantAndRevokeAreWhatTheComponentSees) {
  const UserTestDatabase database(GetParam());
  AddAnnaAndGroups(database);
  const std::vector<std::string> grant{"grant",     "anna",     "--right",   "3",       "--right", "4",
                                       "--archive", "Invoices", "--channel", "Finance", "--edit",  "Invoices=ND"};
  database.Must(grant);
  database.Must({"grant", "Sales", "--right", "7", "--archive", "Plans=old"});
  EXPECT_EQ(Json::parse(database.User({"grant", "anna", "--right", "3", "--right", "5", "--json"}).out)["changes"],
            Json::parse(R"([{"kind":"right","entry":"3","changed":false},
                            {"kind":"right","entry":"5","changed":true}])"));
  database.Must(grant);  // what is there stays
  const Json rights = Rights(database, "anna");
  EXPECT_EQ(rights["rights"].size(), 4U);
  EXPECT_EQ(rights["editRights"], Json::parse(R"([{"archive":"Invoices","new":true,"edit":false,"delete":true}])"));
  EXPECT_EQ(rights["archives"].size(), 2U);
  EXPECT_EQ(rights["channels"], Json::parse(R"(["Finance"])"));
  EXPECT_THAT(database.User({"rights", "anna"}).out, HasSubstr("edit     Invoices   new, delete\n"));

  std::vector<std::string> revoke = grant;
  revoke[0] = "revoke";
  database.Must(revoke);
  database.Run("INSERT INTO UserRights(UserID,RightID) VALUES(1,-5)");
  database.Must({"revoke", "anna", "--right", "5", "--right", "-5", "--right", "99", "--group", "Support"});
  EXPECT_EQ(Rights(database, "anna")["rights"], Json::parse("[7]"));
  EXPECT_EQ(Rights(database, "anna")["archives"], Json::parse(R"(["Plans=old"])"));
  database.Must({"revoke", "anna", "--group", "Sales"});
  const Json nothing = Rights(database, "anna");
  for (const char* kind : {"rights", "editRights", "archives", "channels"}) EXPECT_TRUE(nothing[kind].empty()) << kind;
}

TEST_P(UserRightCommands, EditRightsChangeLetterByLetter) {
  const UserTestDatabase database(GetParam());
  AddAnnaAndGroups(database);
  struct Case {
    const char* command;
    const char* letters;
    const char* numbers;  // new, edit, delete, then the number of entries
  };
  database.Run("INSERT INTO UserEditRights(UserID,Archive,New,Edit,Del) VALUES(1,'A',2,-1,0)");
  const std::vector<Case> cases{
      {"grant", "A=D", "2-11"}, {"grant", "A=N", "2-11"},   {"revoke", "A=NE", "0-11"},
      {"grant", "A=E", "011"},  {"revoke", "A=ED", "none"},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(std::string(test.command) + " " + test.letters);
    database.Must({test.command, "anna", "--edit", test.letters});
    std::string numbers = "none";
    if (database.Count("UserEditRights") == 1) {
      numbers.clear();
      for (const char* column : {"New", "Edit", "Del"}) {
        numbers += database.Run("SELECT " + std::string(column) + " FROM UserEditRights").ToText();
      }
    }
    EXPECT_EQ(numbers, test.numbers);
  }
}

TEST_P(UserRightCommands, AGrantThatFailsInPartChangesNothing) {
  const UserTestDatabase database(GetParam());
  AddAnnaAndGroups(database);
  struct Case {
    const char* name;
    const char* group;
    const char* message;
  };
  for (const Case& test : {Case{"anna", "Nowhere", "no group \"Nowhere\""}, Case{"anna", "anna", "no group \"anna\""},
                           Case{"Support", "Sales", "groups of groups"}}) {
    SCOPED_TRACE(test.message);
    const ToolRun run = database.User({"grant", test.name, "--right", "5", "--edit", "A=N", "--group", test.group});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr(test.message));
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(database.Count("UserRights") + database.Count("UserEditRights"), 0);
    EXPECT_EQ(database.Count("UserGroups"), 1);
  }
}

TEST_P(UserRightCommands, ExplainNamesTheEntriesThatCount) {
  const UserTestDatabase database(GetParam());
  AddAnnaAndGroups(database);
  database.Must({"grant", "anna", "--right", "3", "--right", "-4"});
  database.Must({"grant", "Sales", "--right", "3", "--right", "7", "--edit", "A=NE", "--channel", "Finance"});
  database.Must({"grant", "Support", "--right", "8"});
  database.Run("INSERT INTO UserEditRights(UserID,Archive,New,Edit,Del) VALUES(1,'A',-1,0,0)");
  struct Case {
    std::vector<std::string> right;
    bool isHeld;
    std::vector<std::string> sources;
  };
  const std::vector<Case> cases{
      {{"3"}, true, {"own", "Sales"}},
      {{"7"}, true, {"Sales"}},
      {{"8"}, false, {}},
      {{"-4"}, true, {"own"}},
      {{"--channel", "Finance"}, true, {"Sales"}},
      {{"--archive", "Finance"}, false, {}},
      {{"--edit", "A"}, true, {"own", "Sales"}},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.right.back());
    std::vector<std::string> arguments{"explain", "anna", "--json"};
    arguments.insert(arguments.end(), test.right.begin(), test.right.end());
    const ToolRun run = database.User(arguments);
    EXPECT_EQ(run.status, test.isHeld ? 0 : 1) << run.err;
    const Json json = Json::parse(run.out, nullptr, false);
    ASSERT_TRUE(json.is_object());
    EXPECT_EQ(json["held"], test.isHeld);
    std::vector<std::string> sources;
    for (const Json& each : json["sources"]) sources.push_back(each["source"] == "own" ? "own" : each["name"]);
    EXPECT_EQ(sources, test.sources);
  }
  const std::string text = database.User({"explain", "anna", "--edit", "A"}).out;
  EXPECT_THAT(text, HasSubstr("anna has edit rights in A\n"));
  EXPECT_THAT(text, HasSubstr("sum, allowed above 0      0    1     0\n"));
}

}  // namespace
}  // namespace oxaqrycln::testing
