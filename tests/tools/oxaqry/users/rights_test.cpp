#include <tuple>

#include "tests/tools/oxaqry/users/oxaqry_database.h"

namespace oxaqrycln::oxaqry {
namespace {

using ::testing::HasSubstr;

using UserRightCommands = OnDatabase;
INSTANTIATE_TEST_SUITE_P(Databases, UserRightCommands, ::testing::ValuesIn(Kinds()), KindName);

// anna (1), a member of the group Sales (2); Support (3) has no members.
void AddAnnaAndGroups(const UserTestDatabase& database) {
  database.Must({"add", "anna", "--password-stdin"}, "pw\n");
  database.Must({"add", "Sales", "--group"});
  database.Must({"add", "Support", "--group"});
  database.Must({"grant", "anna", "--group", "Sales"});
}

TEST_P(UserRightCommands, GrantAndRevokeChangeWhatTheComponentReports) {
  const UserTestDatabase database(GetParam());
  AddAnnaAndGroups(database);
  const std::vector<std::string> grant{"grant",     "anna",     "--right",   "3",       "--right", "4",
                                       "--archive", "Invoices", "--channel", "Finance", "--edit",  "Invoices=ND"};
  database.Must(grant);
  database.Must({"grant", "Sales", "--right", "7", "--archive", "Plans=old"});
  EXPECT_EQ(JsonOf(database.User({"grant", "anna", "--right", "3", "--right", "5", "--json"}))["changes"],
            Json::parse(R"([{"kind":"right","entry":"3","changed":false},
                            {"kind":"right","entry":"5","changed":true}])"));
  database.Must(grant);  // changes nothing
  const Json rights = JsonOf(database.User({"rights", "anna", "--json"}));
  EXPECT_EQ(rights["rights"].size(), 4U);
  EXPECT_EQ(rights["editRights"], Json::parse(R"([{"archive":"Invoices","new":true,"edit":false,"delete":true}])"));
  EXPECT_EQ(rights["archives"].size(), 2U);
  EXPECT_EQ(rights["channels"], Json::parse(R"(["Finance"])"));
  EXPECT_THAT(database.User({"rights", "anna"}).out, HasSubstr("edit     Invoices   new, delete\n"));

  std::vector<std::string> revoke = grant;
  revoke[0] = "revoke";
  database.Must(revoke);
  database.Run("INSERT INTO UserRights(UserID,RightID) VALUES(1,-5)");
  EXPECT_EQ(
      database.User({"revoke", "anna", "--right", "5", "--right", "-5", "--right", "99", "--group", "Support"}).out,
      "Revoked right 5\nRevoked right -5\nRight 99 was not granted\nGroup Support was not granted\n");
  EXPECT_EQ(JsonOf(database.User({"rights", "anna", "--json"}))["rights"], Json::parse("[7]"));
  EXPECT_EQ(JsonOf(database.User({"rights", "anna", "--json"}))["archives"], Json::parse(R"(["Plans=old"])"));
  database.Must({"revoke", "anna", "--group", "Sales"});
  const Json nothing = JsonOf(database.User({"rights", "anna", "--json"}));
  for (const char* kind : {"rights", "editRights", "archives", "channels"}) EXPECT_TRUE(nothing[kind].empty()) << kind;
}

TEST_P(UserRightCommands, EditRightsChangeLetterByLetter) {
  const UserTestDatabase database(GetParam());
  AddAnnaAndGroups(database);
  database.Run("INSERT INTO UserEditRights(UserID,Archive,New,Edit,Del) VALUES(1,'A',2,-1,0)");
  using Case = std::tuple<const char*, const char*, const char*>;  // the last one: the numbers of new, edit and delete
  for (const auto& [command, letters, numbers] :
       {Case{"grant", "A=D", "2-11"}, Case{"grant", "A=N", "2-11"}, Case{"revoke", "A=NE", "0-11"},
        Case{"grant", "A=E", "011"}, Case{"revoke", "A=ED", ""}}) {
    database.Must({command, "anna", "--edit", letters});
    std::string stored;
    for (const char* column : {"New", "Edit", "Del"}) {
      const Variant number = database.Run("SELECT " + std::string(column) + " FROM UserEditRights");
      if (!number.IsEmpty()) stored += number.ToText();
    }
    EXPECT_EQ(stored, numbers) << command << letters;
    EXPECT_EQ(database.Count("UserEditRights"), stored.empty() ? 0 : 1);
  }
}

TEST_P(UserRightCommands, AGrantThatFailsInPartChangesNothing) {
  const UserTestDatabase database(GetParam());
  AddAnnaAndGroups(database);
  using Case = std::tuple<const char*, const char*, const char*>;
  for (const auto& [name, group, message] :
       {Case{"anna", "Nowhere", "no group \"Nowhere\""}, Case{"anna", "anna", "no group \"anna\""},
        Case{"Support", "Sales", "groups of groups"}}) {
    ExpectError(database.User({"grant", name, "--right", "5", "--edit", "A=N", "--group", group}), 1, message);
    EXPECT_EQ(database.Count("UserRights") + database.Count("UserEditRights"), 0);
    EXPECT_EQ(database.Count("UserGroups"), 1);
  }
}

TEST_P(UserRightCommands, OnlyEntriesThatASearchCanBeRestrictedToAreGrantedButAllCanBeRevoked) {
  const UserTestDatabase database(GetParam());
  AddAnnaAndGroups(database);
  using Case = std::tuple<const char*, const char*, const char*>;
  for (const auto& [option, entry, message] :
       {Case{"--channel", "Mail;Finance", "contains \";\""}, Case{"--channel", "Mail (old)", "contains a parenthesis"},
        Case{"--archive", "Mail/In;box", "contains \";\""}, Case{"--archive", "Mail (old)/Inbox", "CHANNEL/ARCHIVE"},
        Case{"--archive", "$(#Mail", "CHANNEL/ARCHIVE"}, Case{"--edit", "Mail;/Inbox=N", "contains \";\""}}) {
    SCOPED_TRACE(entry);
    ExpectError(database.User({"grant", "anna", "--right", "5", option, entry}), 1, message);
  }
  EXPECT_EQ(database.Count("UserRights"), 0);
  database.Must({"grant", "anna", "--archive", "Mail/Inbox (old)"});
  database.Run("INSERT INTO UserChannels(UserID,Channel) VALUES(1,'Mail (old)')");
  database.Must({"explain", "anna", "--channel", "Mail (old)"});
  database.Must({"revoke", "anna", "--channel", "Mail (old)"});
  EXPECT_EQ(database.Count("UserChannels"), 0);
}

TEST_P(UserRightCommands, ExplainNamesTheEntriesThatCount) {
  const UserTestDatabase database(GetParam());
  AddAnnaAndGroups(database);
  database.Must({"grant", "anna", "--right", "3", "--right", "-4"});
  database.Must({"grant", "Sales", "--right", "3", "--right", "7", "--edit", "A=NE", "--channel", "Finance"});
  database.Must({"grant", "Support", "--right", "8"});
  database.Run("INSERT INTO UserEditRights(UserID,Archive,New,Edit,Del) VALUES(1,'A',-1,0,0)");
  using Case = std::tuple<std::vector<std::string>, bool, const char*>;
  for (const auto& [right, isHeld, sources] : {
           Case{{"3"}, true, "own Sales "},
           Case{{"7"}, true, "Sales "},
           Case{{"8"}, false, ""},
           Case{{"-4"}, true, "own "},
           Case{{"--channel", "Finance"}, true, "Sales "},
           Case{{"--archive", "Finance"}, false, ""},
           Case{{"--edit", "A"}, true, "own Sales "},
       }) {
    SCOPED_TRACE(right.back());
    const ToolRun run = database.User(Joined({"explain", "anna", "--json"}, right));
    EXPECT_EQ(run.status, isHeld ? 0 : 1) << run.err;
    Json json = Json::parse(run.out, nullptr, false);
    EXPECT_EQ(json["held"], isHeld);
    std::string found;
    for (const Json& each : json["sources"])
      found += (each["source"] == "own" ? "own" : std::string(each["name"])) + " ";
    EXPECT_EQ(found, sources);
  }
  const std::string text = database.User({"explain", "anna", "--edit", "A"}).out;
  EXPECT_THAT(text, HasSubstr("anna has edit rights in A\n"));
  EXPECT_THAT(text, HasSubstr("sum, allowed above 0      0    1     0\n"));
}

}  // namespace
}  // namespace oxaqrycln::oxaqry
