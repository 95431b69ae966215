#include <string>
#include <tuple>

#include "tests/support/page.h"
#include "tests/support/test_database.h"
#include "values/text_parts.h"

namespace oxaqrycln::testing {
namespace {

using Definitions = OnDatabase;
INSTANTIATE_TEST_SUITE_P(Databases, Definitions, ::testing::ValuesIn(Kinds()), KindName);
using DefinitionsInSqlite = OnSqlite;

const std::string kDocumentRights = std::string(kUsers) + R"(
  INSERT INTO DocRights VALUES (1,'Finance','Invoices'), (2,'Finance',''), (3,'','Invoices'), (9,'',''),
    (20,'Mail','Invoices'), (30,'','');
  INSERT INTO UserDocRights VALUES (1,1), (1,9), (10,9), (11,9), (10,2), (11,3), (11,20), (12,30);
  INSERT INTO DocRightFields SELECT DocRightID, 10, '=', 'v', 'TXT', 1 FROM DocRights)";

TEST_P(Definitions, OfDocumentRightsIncludeThoseOfTheUsersGroups) {
  const TestDatabase database(GetParam(), true, kDocumentRights);
  WebPage page(database);
  using Case = std::tuple<const char*, Variant, const char*, const char*, std::string>;
  for (const auto& [name, user, channel, archive, definitions] : {
           Case{"own and of both groups, each once, by number", 1, "Finance", "Invoices", "1 2 3 9"},
           Case{"another archive of the channel", "1", "Finance", "Orders", "2 9"},
           Case{"the archive in another channel", 1, "Mail", "Invoices", "3 9 20"},
           Case{"only what is for all", 1, "Mail", "Inbox", "9"},
           Case{"nothing named", 1, "", "", "9"},
           Case{"a pattern is a plain name", 1, "%", "_nvoices", "9"},
           Case{"so is what only looks like syntax", 1, "\" OR 1=1 --", "/* ; */", "9"},
           Case{"a group that is a member of a group", 11, "Mail", "Inbox", "9 30"},
           Case{"without rights", 2, "Finance", "Invoices", ""},
       }) {
    std::string expected;
    for (const auto each : Split(definitions, ' '))
      expected.append("^").append(each).append("^,^10^,^=^,^v^,^TXT^\r\n");
    Variant lines = "kept";
    const Variant count = page.query.GetUserDocRights(user, channel, archive, &lines);
    EXPECT_EQ(lines, Variant(expected)) << name << page.Log();
    EXPECT_EQ(count, Variant::Long(static_cast<std::int32_t>(Split(definitions, ' ').size())));
  }
}

TEST_P(Definitions, OfDocumentRightsAreALineForEachConditionOrderedByDefinitionAndGrade) {
  const TestDatabase database(GetParam(), true, std::string(kUsers) + R"(
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

TEST_P(Definitions, OfSearchRightsThatApplyGiveTheirFields) {
  const TestDatabase database(GetParam(), true, std::string(kUsers) + R"(
    INSERT INTO SearchRights VALUES (1), (2), (3), (4);
    INSERT INTO SearchRightArchives VALUES (1,'Finance','Invoices'), (1,'Finance',''), (2,'',''), (4,'','Orders');
    INSERT INTO UserSearchRights VALUES (1,1), (10,1), (11,2), (1,3), (12,4);
    INSERT INTO SearchRightFields VALUES (1,100,'Oak',0,0), (1,100,'Oak',0,0), (1,100,'oak',0,0), (1,20,'',1,1),
      (2,100,'Oak',1,0), (2,20,'',1,0), (2,7,' ',2,-1), (2,8,'',0,0), (3,9,'nowhere',1,1), (4,6,'ordered',1,1))");
  WebPage page(database);
  using Case = std::tuple<const char*, int, const char*, int, const char*, const char*, const char*>;
  const char* const both = "^7^,^ ^\r\n^100^,^Oak^\r\n^100^,^oak^\r\n";
  const char* const ordered = "^6^,^ordered^\r\n^7^,^ ^\r\n^100^,^Oak^\r\n";
  for (const auto& [name, user, archive, count, fixedValues, hidden, noMatchcode] : {
           Case{"both definitions", 1, "Invoices", 4, both, "^20^,^100^", "^20^"},
           Case{"one by the group alone", 10, "Invoices", 2, "^100^,^Oak^\r\n^100^,^oak^\r\n", "^20^", "^20^"},
           Case{"a group of a group", 11, "Orders", 5, ordered, "^6^,^20^,^100^", "^6^"},
           Case{"none", 2, "Invoices", 0, "", "", ""},
       }) {
    SCOPED_TRACE(name);
    Variant out[] = {"kept", 7, {}};
    EXPECT_EQ(page.query.GetUserSearchRights(user, "Finance", archive, &out[0], &out[1], &out[2]), Variant::Long(count))
        << page.Log();
    EXPECT_EQ(out[0], Variant(fixedValues));
    EXPECT_EQ(out[1], Variant(hidden));
    EXPECT_EQ(out[2], Variant(noMatchcode));
  }
}

TEST_P(Definitions, MayContainNullsTextsAndBooleans) {
  const TestDatabase database(GetParam(), false, R"(
    CREATE TABLE UserGroups (UserID INTEGER, GroupID INTEGER);
    CREATE TABLE UserDocRights (UserID INTEGER, DocRightID INTEGER);
    CREATE TABLE DocRights (DocRightID INTEGER, Channel VARCHAR(50), Archive VARCHAR(50));
    CREATE TABLE DocRightFields (DocRightID INTEGER, FieldID VARCHAR(50), Operator VARCHAR(50), Val VARCHAR(50),
      Type VARCHAR(50), Grade INTEGER);
    CREATE TABLE UserSearchRights (UserID INTEGER, SearchRightID INTEGER);
    CREATE TABLE SearchRightArchives (SearchRightID INTEGER, Channel VARCHAR(50), Archive VARCHAR(50));
    CREATE TABLE SearchRightFields (SearchRightID INTEGER, FieldID VARCHAR(50), Val VARCHAR(50), HideField BOOLEAN,
      NoMatchcode BOOLEAN);
    INSERT INTO UserGroups VALUES (1,NULL);
    INSERT INTO UserDocRights VALUES (1,1), (1,2), (1,NULL);
    INSERT INTO DocRights VALUES (1,NULL,NULL), (2,NULL,'Orders'), (NULL,NULL,NULL);
    INSERT INTO DocRightFields VALUES (1,'Amount','<',NULL,NULL,1), (1,'20',NULL,'v','TXT',1),
      (1,'9','=','v','TXT',1), (1,'zone','=','v','TXT',NULL), (2,'1','=','orders','TXT',1);
    INSERT INTO UserSearchRights VALUES (1,1);
    INSERT INTO SearchRightArchives VALUES (1,'Mail','Inbox'), (1,'Finance',NULL);
    INSERT INTO SearchRightFields VALUES (1,'zone',NULL,TRUE,NULL), (1,'7','v',NULL,TRUE))");
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

TEST_P(Definitions, AreNotReadForValuesThatCouldChangeAStatement) {
  const TestDatabase database(GetParam(), true, kDocumentRights);
  WebPage page(database);
  for (const Variant& id : {Variant("1 OR 1=1"), Variant("1) OR (1=1"), Variant(""), Variant::Null()}) {
    ExpectFailure(page.query, id, "Finance", "Invoices");
  }
  for (const Variant& text :
       {Variant("x' OR '1'='1"), Variant("'"), Variant(std::string("a\0b", 3)), Variant(Missing)}) {
    ExpectFailure(page.query, 1, text, "Invoices");
    ExpectFailure(page.query, 1, "Finance", text);
  }
  EXPECT_EQ(page.Log().find("-2147467259"), std::string::npos) << "the database saw a statement: " << page.Log();
}

TEST_F(DefinitionsInSqlite, ThatCannotAllBeReadGiveNothing) {
  const TestDatabase database(Kind::Sqlite, true, R"(
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
