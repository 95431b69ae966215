#include <string>
#include <vector>

#include "component/text_helpers.h"
#include "tests/support/page.h"
#include "tests/userdb/test_database.h"

namespace oxaqrycln::testing {
namespace {

using DocumentRights = OnDatabase;
using SearchRights = OnDatabase;
using DefinitionsOfOthers = OnDatabase;
const auto kDatabases = ::testing::Values(Kind::Sqlite, Kind::Postgres);
INSTANTIATE_TEST_SUITE_P(Databases, DocumentRights, kDatabases, KindName);
INSTANTIATE_TEST_SUITE_P(Databases, SearchRights, kDatabases, KindName);
INSTANTIATE_TEST_SUITE_P(Databases, DefinitionsOfOthers, kDatabases, KindName);

// anna (1) is a member of Sales (10) and Support (11); Support of Everybody (12).
constexpr const char* kUsers = R"(
  INSERT INTO Users(UserID,UserName) VALUES(1,'anna');
  INSERT INTO Users(UserID,UserName) VALUES(2,'bert');
  INSERT INTO Users(UserID,UserName) VALUES(10,'Sales');
  INSERT INTO Users(UserID,UserName) VALUES(11,'Support');
  INSERT INTO Users(UserID,UserName) VALUES(12,'Everybody');
  INSERT INTO UserGroups VALUES (1,10), (1,11), (11,12))";

constexpr const char* kDocumentRights = R"(
  INSERT INTO DocRights VALUES (1,'Finance','Invoices'), (2,'Finance',''), (3,'','Invoices'), (9,'',''),
    (20,'Mail','Invoices'), (30,'','');
  INSERT INTO UserDocRights VALUES (1,1), (1,9), (10,9), (11,9), (10,2), (11,3), (11,20), (12,30);
  INSERT INTO DocRightFields VALUES (1,10,'=','one','TXT',1), (2,10,'=','two','TXT',1), (3,10,'=','three','TXT',1),
    (9,10,'=','nine','TXT',1), (20,10,'=','twenty','TXT',1), (30,10,'=','thirty','TXT',1))";

// The first field of each line.
std::string Definitions(const Variant& lines) {
  const std::string text = lines.ToText();
  std::string definitions;
  for (const std::string_view line : Split(text, '\n')) {
    if (line.empty()) continue;
    EXPECT_TRUE(line.starts_with('^') && line.ends_with("^\r")) << line;
    definitions.append(definitions.empty() ? "" : " ").append(line.substr(1, line.find('^', 1) - 1));
  }
  return definitions;
}

TEST_P(DocumentRights, AreThoseOfTheUserAndOfTheGroupsOneLevelDeepForTheArchive) {
  const TestDatabase database(GetParam());
  database.Run(kUsers);
  database.Run(kDocumentRights);
  WebPage page(database);
  struct Case {
    const char* name;
    Variant user;
    const char* channel;
    const char* archive;
    const char* definitions;
  };
  for (const Case& test : {
           Case{"own and of both groups, each once, by number", 1, "Finance", "Invoices", "1 2 3 9"},
           Case{"another archive of the channel", "1", "Finance", "Orders", "2 9"},
           Case{"the archive in another channel", 1, "Mail", "Invoices", "3 9 20"},
           Case{"only what is for all", 1, "Mail", "Inbox", "9"},
           Case{"nothing named", 1, "", "", "9"},
           Case{"a pattern is a plain name", 1, "%", "_nvoices", "9"},
           Case{"a group that is a member of a group", 11, "Mail", "Inbox", "9 30"},
           Case{"without rights", 2, "Finance", "Invoices", ""},
       }) {
    SCOPED_TRACE(test.name);
    Variant lines = "kept";
    const Variant count = page.query.GetUserDocRights(test.user, test.channel, test.archive, &lines);
    EXPECT_EQ(Definitions(lines), test.definitions) << page.Log();
    const std::string definitions = test.definitions;
    EXPECT_EQ(count, Variant::Long(static_cast<std::int32_t>(Split(definitions, ' ').size())));
  }
}

TEST_P(DocumentRights, AreALineForEachConditionByDefinitionAndGrade) {
  const TestDatabase database(GetParam());
  database.Run(kUsers);
  database.Run(R"(
    INSERT INTO DocRights VALUES (20,'',''), (9,'','');
    INSERT INTO UserDocRights VALUES (1,20), (1,9);
    INSERT INTO DocRightFields VALUES (20,12,'=','x','TXT',2), (20,12,'=','x','TXT',10), (20,12,'=','x','TXT',10),
      (20,9,'<>','X','TXT',10), (20,15,'<','1000','NUM',-1), (9,11,'LIKE','S''* "" OR ^1^','',1))");
  WebPage page(database);
  Variant lines;
  EXPECT_EQ(page.query.GetUserDocRights(1, "A", "B", &lines), Variant::Long(5)) << page.Log();
  EXPECT_EQ(lines, Variant("^9^,^11^,^LIKE^,^S'* \"\" OR ^1^^,^^\r\n"
                           "^20^,^15^,^<^,^1000^,^NUM^\r\n"
                           "^20^,^12^,^=^,^x^,^TXT^\r\n"
                           "^20^,^9^,^<>^,^X^,^TXT^\r\n"
                           "^20^,^12^,^=^,^x^,^TXT^\r\n"));
}

TEST_P(SearchRights, AreTheFieldsOfTheDefinitionsThatApply) {
  const TestDatabase database(GetParam());
  database.Run(kUsers);
  database.Run(R"(
    INSERT INTO SearchRights VALUES (1), (2), (3), (4);
    INSERT INTO SearchRightArchives VALUES (1,'Finance','Invoices'), (1,'Finance',''), (2,'',''), (4,'','Orders');
    INSERT INTO UserSearchRights VALUES (1,1), (10,1), (11,2), (1,3), (12,4);
    INSERT INTO SearchRightFields VALUES (1,100,'Oak',0,0), (1,100,'Oak',0,0), (1,100,'oak',0,0), (1,20,'',1,1),
      (2,100,'Oak',1,0), (2,20,'',1,0), (2,7,' ',2,-1), (2,8,'',0,0), (3,9,'nowhere',1,1), (4,6,'ordered',1,1))");
  WebPage page(database);
  struct Case {
    const char* name;
    int user;
    const char* archive;
    std::int32_t count;
    const char* fixedValues;
    const char* hidden;
    const char* noMatchcode;
  };
  const char* const both = "^7^,^ ^\r\n^100^,^Oak^\r\n^100^,^oak^\r\n";
  for (const Case& test : {
           Case{"both definitions", 1, "Invoices", 4, both, "^20^,^100^", "^20^"},
           Case{"one by the group alone", 10, "Invoices", 2, "^100^,^Oak^\r\n^100^,^oak^\r\n", "^20^", "^20^"},
           Case{"a group of a group", 11, "Orders", 5, "^6^,^ordered^\r\n^7^,^ ^\r\n^100^,^Oak^\r\n", "^6^,^20^,^100^",
                "^6^"},
           Case{"none", 2, "Invoices", 0, "", "", ""},
       }) {
    SCOPED_TRACE(test.name);
    Variant fixedValues = "kept";
    Variant hidden = 7;
    Variant noMatchcode;
    EXPECT_EQ(page.query.GetUserSearchRights(test.user, "Finance", test.archive, &fixedValues, &hidden, &noMatchcode),
              Variant::Long(test.count))
        << page.Log();
    EXPECT_EQ(fixedValues, Variant(test.fixedValues));
    EXPECT_EQ(hidden, Variant(test.hidden));
    EXPECT_EQ(noMatchcode, Variant(test.noMatchcode));
  }
}

TEST_P(DefinitionsOfOthers, MayHoldNullsTextsAndTruthValues) {
  const TestDatabase database(GetParam(), false);
  const std::string flag = GetParam() == Kind::Sqlite ? "BIT" : "BOOLEAN";
  const std::string yes = GetParam() == Kind::Sqlite ? "1" : "TRUE";
  database.Run(R"(
    CREATE TABLE UserGroups (UserID INTEGER, GroupID INTEGER);
    CREATE TABLE UserDocRights (UserID INTEGER, DocRightID INTEGER);
    CREATE TABLE DocRights (DocRightID INTEGER, Channel VARCHAR(50), Archive VARCHAR(50));
    CREATE TABLE DocRightFields (DocRightID INTEGER, FieldID VARCHAR(50), Operator VARCHAR(50), Val VARCHAR(50),
      Type VARCHAR(50), Grade INTEGER);
    CREATE TABLE UserSearchRights (UserID INTEGER, SearchRightID INTEGER);
    CREATE TABLE SearchRightArchives (SearchRightID INTEGER, Channel VARCHAR(50), Archive VARCHAR(50));
    CREATE TABLE SearchRightFields (SearchRightID INTEGER, FieldID VARCHAR(50), Val VARCHAR(50), HideField )" +
               flag + ", NoMatchcode " + flag + R"();
    INSERT INTO UserGroups VALUES (1,NULL);
    INSERT INTO UserDocRights VALUES (1,1), (1,2), (1,NULL);
    INSERT INTO DocRights VALUES (1,NULL,NULL), (2,NULL,'Orders'), (NULL,NULL,NULL);
    INSERT INTO DocRightFields VALUES (1,'Amount','<',NULL,NULL,1), (1,'20',NULL,'v','TXT',1),
      (1,'9','=','v','TXT',1), (1,'zone','=','v','TXT',NULL), (2,'1','=','orders','TXT',1);
    INSERT INTO UserSearchRights VALUES (1,1);
    INSERT INTO SearchRightArchives VALUES (1,'Mail','Inbox'), (1,'Finance',NULL);
    INSERT INTO SearchRightFields VALUES(1,'zone',NULL,)" +
               yes + ",NULL);INSERT INTO SearchRightFields VALUES(1,'7','v',NULL," + yes + ")");
  WebPage page(database);
  Variant lines;
  EXPECT_EQ(page.query.GetUserDocRights(1, "Finance", "Invoices", &lines), Variant::Long(4)) << page.Log();
  EXPECT_EQ(lines, Variant("^1^,^zone^,^=^,^v^,^TXT^\r\n^1^,^9^,^=^,^v^,^TXT^\r\n^1^,^20^,^^,^v^,^TXT^\r\n"
                           "^1^,^Amount^,^<^,^^,^^\r\n"));
  EXPECT_EQ(page.query.GetUserDocRights(1, "Finance", "Orders"), Variant::Long(5));
  Variant hidden;
  Variant noMatchcode;
  EXPECT_EQ(page.query.GetUserSearchRights(1, "Finance", "Any", &lines, &hidden, &noMatchcode), Variant::Long(2));
  EXPECT_EQ(lines, Variant("^7^,^v^\r\n"));
  EXPECT_EQ(hidden, Variant("^zone^"));
  EXPECT_EQ(noMatchcode, Variant("^7^"));
  EXPECT_EQ(page.query.GetUserSearchRights(1, "Mail", "Sent"), Variant::Long(0));
}

// Both methods fail, with their outputs "".
void ExpectFailure(clsQuery& query, const Variant& user, const Variant& channel, const Variant& archive) {
  Variant outputs[] = {"kept", "kept", "kept", "kept"};
  EXPECT_EQ(query.GetUserDocRights(user, channel, archive, &outputs[0]), Variant());
  EXPECT_EQ(query.GetUserSearchRights(user, channel, archive, &outputs[1], &outputs[2], &outputs[3]), Variant());
  for (const Variant& output : outputs) EXPECT_EQ(output, Variant(""));
}

TEST_P(DocumentRights, AndSearchRightsRefuseWhatCouldChangeAStatement) {
  const TestDatabase database(GetParam());
  database.Run(kUsers);
  database.Run(kDocumentRights);
  WebPage page(database);
  for (const char* id :
       {"1 OR 1=1", "1) OR (1=1", "1; DROP TABLE DocRights", "", " 1", "1.5", "--1", "UserID", "'1'"}) {
    SCOPED_TRACE(id);
    ExpectFailure(page.query, id, "Finance", "Invoices");
  }
  for (const std::string& text : {std::string("x' OR '1'='1"), std::string("'"), std::string("a\0b", 3)}) {
    ExpectFailure(page.query, 1, text, "Invoices");
    ExpectFailure(page.query, 1, "Finance", text);
  }
  ExpectFailure(page.query, 1, Missing, "Invoices");
  ExpectFailure(page.query, Variant::Null(), "Finance", "Invoices");
  EXPECT_EQ(page.Log().find("-2147467259"), std::string::npos) << "the database saw a statement: " << page.Log();
  // What only looks like syntax is a name like any other.
  Variant lines;
  EXPECT_EQ(page.query.GetUserDocRights(1, "\" OR 1=1 --", "/* ; */", &lines), Variant::Long(1)) << page.Log();
  EXPECT_EQ(Definitions(lines), "9");
}

TEST(DocumentRightsInSqlite, ThatCannotBeReadToTheEndGiveNothing) {
  const TestDatabase database(Kind::Sqlite);
  database.Run(kUsers);
  database.Run(R"(
    INSERT INTO DocRights VALUES (1,'','');
    INSERT INTO UserDocRights VALUES (1,1);
    INSERT INTO DocRightFields VALUES (1,1,'=','readable','TXT',1), (1,2,'=',CHAR(321),'TXT',2);
    INSERT INTO SearchRights VALUES (1);
    INSERT INTO SearchRightArchives VALUES (1,'','');
    INSERT INTO UserSearchRights VALUES (1,1);
    INSERT INTO SearchRightFields VALUES (1,1,'readable',1,1), (1,2,CHAR(321),0,0))");
  WebPage page(database);
  ExpectFailure(page.query, 1, "A", "B");
  EXPECT_TRUE(page.Failed("GetUserDocRights", "13 - ")) << page.Log();
  EXPECT_TRUE(page.Failed("GetUserSearchRights", "13 - ")) << page.Log();
}

}  // namespace
}  // namespace oxaqrycln::testing
