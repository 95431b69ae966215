#include <array>
#include <string>
#include <vector>

#include "tests/support/in_own_thread.h"
#include "tests/support/page.h"
#include "tests/userdb/test_database.h"

namespace oxaqrycln::testing {
namespace {

using Outliners = OnDatabase;
using OutlinersOfOthers = OnDatabase;
const auto kDatabases = ::testing::Values(Kind::Sqlite, Kind::Postgres);
INSTANTIATE_TEST_SUITE_P(Databases, Outliners, kDatabases, KindName);
INSTANTIATE_TEST_SUITE_P(Databases, OutlinersOfOthers, kDatabases, KindName);

// Outliner 1 has two levels that are described, outliner 2 one, and a node whose parent is of outliner 1.
constexpr const char* kTree = R"(
  INSERT INTO Outliner VALUES (1,'Customers'), (2,'Types');
  INSERT INTO OutlinerNodes VALUES (1,1,12,'Customer','TXT','1'), (1,2,14,'Year','NUM','yes'),
    (2,1,13,'Type','TXT','1');
  INSERT INTO OutlinerContent VALUES (10,1,1,NULL,'papermill',1), (11,1,1,NULL,'Optician',0), (12,1,1,NULL,'Zoo',0),
    (20,1,2,10,'2026',0), (21,1,2,10,'2025',-1), (22,1,2,11,'2026',0), (30,1,3,20,'deep',0), (40,2,1,NULL,'Letter',0),
    (41,2,2,12,'of another outliner',0))";

constexpr const char* kTablesOfOthers = R"(
  CREATE TABLE Outliner (ID INTEGER, DisplayName VARCHAR(50));
  CREATE TABLE OutlinerArchives (OutlinerID INTEGER, Channel VARCHAR(50), Archive VARCHAR(50));
  CREATE TABLE OutlinerNodes (OutlinerID INTEGER, NodeLevel INTEGER, FieldID VARCHAR(50), Description VARCHAR(50),
    DataType VARCHAR(50), Search INTEGER);
  CREATE TABLE OutlinerContent (ID INTEGER, OutlinerID INTEGER, NodeLevel INTEGER, ParentID INTEGER,
    Content VARCHAR(50), Expand INTEGER))";

// The nodes as they are walked, a line each: the outputs in their order, then the content.
std::string Walk(clsQuery& query) {
  std::string text;
  for (int i = 0; i < 100; ++i) {
    std::array<Variant, 7> outputs;
    const std::string content = query.GetOutlinerContentNext(&outputs[0], &outputs[1], &outputs[2], &outputs[3],
                                                             &outputs[4], &outputs[5], &outputs[6]);
    if (outputs[0].IsEmpty()) {
      EXPECT_EQ(content, "");
      EXPECT_TRUE(outputs[6].IsEmpty());
      return text;
    }
    std::string types;
    for (const Variant& output : outputs) {
      types.append(output.TypeName()).append(" ");
      text += output.ToText() + " ";
    }
    EXPECT_EQ(types, "Long Integer String String String Boolean Long ");
    text += content + "\n";
  }
  ADD_FAILURE() << "the walk does not end";
  return text;
}

TEST_P(Outliners, AreListedByNameForTheArchivesTheyAreOfferedFor) {
  const TestDatabase database(GetParam());
  database.Connect()->Execute("INSERT INTO Outliner VALUES(1,'\xC4pfel')");
  database.Run(R"(
    INSERT INTO Outliner VALUES (2,'birnen'), (3,'Apfel'), (4,'apfel'), (20,'Zoo ^''"'), (5,'Zoo ^''"'),
      (6,'never offered');
    INSERT INTO OutlinerArchives VALUES (1,'Finance','Invoices'), (1,'Finance',''), (1,'',''), (2,'Finance',''),
      (3,'','Invoices'), (4,'Mail','Invoices'), (20,'',''), (5,'',''))");
  WebPage page(database);
  struct Case {
    const char* channel;
    const char* archive;
    std::int32_t count;
    const char* lines;
  };
  const std::string zoo = "^5^,^Zoo ^'\"^\r\n^20^,^Zoo ^'\"^\r\n";
  for (const Case& test : {Case{"Finance", "Invoices", 5, "^3^,^Apfel^\r\n^2^,^birnen^\r\n"},
                           Case{"Finance", "Orders", 4, "^2^,^birnen^\r\n"},
                           Case{"Mail", "Invoices", 5, "^3^,^Apfel^\r\n^4^,^apfel^\r\n"}, Case{"", "", 3, ""}}) {
    SCOPED_TRACE(std::string(test.channel) + "/" + test.archive);
    Variant list = "kept";
    EXPECT_EQ(page.query.GetOutliner(test.channel, test.archive, &list), Variant::Long(test.count)) << page.Log();
    EXPECT_EQ(list, Variant(test.lines + zoo + "^1^,^\xC4pfel^\r\n"));
  }
  EXPECT_EQ(page.query.GetOutliner("Finance", "Invoices"), Variant::Long(5));
}

TEST_P(Outliners, AreWalkedNodeByNode) {
  const TestDatabase database(GetParam());
  database.Run(kTree);
  WebPage page(database);
  clsQuery& query = page.query;
  EXPECT_EQ(Walk(query), "");
  const std::string roots =
      "11 1 12 Customer TXT False 1 Optician\n10 1 12 Customer TXT True 2 papermill\n"
      "12 1 12 Customer TXT False 0 Zoo\n";
  EXPECT_EQ(query.GetOutlinerContentInit(1), Variant::Long(3)) << page.Log();
  EXPECT_EQ(Walk(query), roots);
  EXPECT_EQ(Walk(query), "");
  query.GetOutlinerContentReset();
  EXPECT_EQ(Walk(query), roots);
  struct Case {
    const char* name;
    Variant outliner;
    Variant parent;
    std::int32_t count;
    const char* nodes;
  };
  for (const Case& test : {
           Case{"0 is no parent", "1", 0, 3, roots.c_str()},
           Case{"nor are other spellings of it", "+1", "-00", 3, roots.c_str()},
           Case{"children", 1, "10", 2, "21 2 14 Year NUM True 0 2025\n20 2 14 Year NUM False 1 2026\n"},
           Case{"a level that is not described", 1, 20, 1, "30 3    False 0 deep\n"},
           Case{"a leaf", 1, 30, 0, ""},
           Case{"another outliner", 2, Missing, 1, "40 1 13 Type TXT False 0 Letter\n"},
           Case{"a node of another outliner", 2, 10, 0, ""},
           Case{"no such node", 1, 99, 0, ""},
       }) {
    SCOPED_TRACE(test.name);
    EXPECT_EQ(query.GetOutlinerContentInit(test.outliner, test.parent), Variant::Long(test.count)) << page.Log();
    EXPECT_EQ(Walk(query), test.nodes);
  }
  query.GetOutlinerContentInit(1, 10);
  EXPECT_EQ(query.GetOutlinerContentNext(), "2025");  // without outputs
}

TEST_P(Outliners, StayBesideWhatQueryServersAnswer) {
  const TestDatabase database(GetParam());
  database.Run(kTree);
  InOwnThread([&] {
    ScriptedServer server(ScriptedServer::Replies(Answer({"Finance,Money", "Mail,Letters"})));
    clsQuery query;
    query.lngRequestTimeout = 10;
    query.strDBConnect = database.connectionString();
    query.RemoteHosts(server.Host());
    ASSERT_TRUE(query.Init());
    EXPECT_EQ(query.TELOGetChannelsInit(), Variant::Long(2));
    EXPECT_EQ(query.GetOutlinerContentInit(1), Variant::Long(3));
    EXPECT_EQ(query.TELOGetChannelsNext(), "Finance");
    EXPECT_EQ(query.GetOutlinerContentNext(), "Optician");
    EXPECT_EQ(query.TELOGetChannelsInit(), Variant::Long(2));
    EXPECT_EQ(query.GetOutlinerContentNext(), "papermill");
    EXPECT_EQ(query.GetOutlinerContentInit("x"), Variant::Integer(-1));
    EXPECT_EQ(query.GetOutlinerContentNext(), "");
    EXPECT_EQ(query.TELOGetChannelsNext(), "Finance");
  });
}

TEST_P(Outliners, KeepWhichNodesAreExpanded) {
  const TestDatabase database(GetParam());
  database.Run(kTree);
  WebPage page(database);
  clsQuery& query = page.query;
  struct Case {
    Variant id;
    Variant flag;
    bool isDone;
    int stored;
  };
  for (const Case& test :
       {Case{11, true, true, 1}, Case{"11", false, true, 0}, Case{11, -1, true, 1}, Case{11, "False", true, 0},
        Case{11, 2, true, 1}, Case{11, "x", false, 1}, Case{11, Variant::Null(), false, 1}, Case{99, true, false, 1},
        Case{"11 OR 1=1", false, false, 1}, Case{"", false, false, 1}}) {
    EXPECT_EQ(query.UpdateOutlinerContent(test.id, test.flag), test.isDone ? Variant::Long(1) : Variant::Integer(-1))
        << page.Log();
    EXPECT_EQ(database.Run("SELECT Expand FROM OutlinerContent WHERE ID=11"), Variant::Long(test.stored));
  }
  EXPECT_EQ(database.Run("SELECT COUNT(*) FROM OutlinerContent WHERE Expand=0 AND ID<>11").ToLong(), 6);
  EXPECT_TRUE(page.Failed("UpdateOutlinerContent", "5 - There is no such outliner node")) << page.Log();
}

TEST_P(Outliners, BecomeASearchFromTheRootDown) {
  const TestDatabase database(GetParam());
  database.Run(kTree);
  WebPage page(database);
  struct Case {
    const char* name;
    Variant id;
    const char* expression;
  };
  for (const Case& test : {
           Case{"a root", 10, "12:\"papermill\""},
           Case{"a child", "20", "12:\"papermill\" AND 14:2026"},
           Case{"below it a level that is not described", 30, "12:\"papermill\" AND 14:2026"},
           Case{"another outliner", 40, "13:\"Letter\""},
           Case{"a parent in another outliner", 41, ""},
           Case{"no such node", 99, ""},
           Case{"no number", "10 OR 1=1", ""},
       }) {
    SCOPED_TRACE(test.name);
    EXPECT_EQ(page.query.GetOutlinerSearchExpr(test.id), test.expression) << page.Log();
  }
  EXPECT_EQ(page.Log().find("-2147467259"), std::string::npos) << page.Log();
}

TEST_P(Outliners, QuoteInASearchWhatCouldBeReadAsSyntax) {
  const TestDatabase database(GetParam());
  database.Run(
      "INSERT INTO Outliner VALUES(1,'o');INSERT INTO OutlinerContent VALUES(1,1,1,NULL,'',0);"
      "INSERT INTO OutlinerNodes VALUES(1,1,7,'d','','')");
  WebPage page(database);
  struct Case {
    const char* type;
    const char* search;
    const char* content;
    const char* expression;
  };
  const std::vector<Case> cases{
      {"TXT", "1", "", "7:\"\""},
      {"TXT", "1", "a\" OR 7:\"b", "7:\"a  OR 7: b\""},
      {"TXT", "1", "it's (a OR b)*", "7:\"it's (a OR b)*\""},
      {"NUM", "1", "-1.5_x*", "7:-1.5_x*"},
      {"NUM", "1",
       "gr\xF6\xDF"
       "e",
       "7:gr\xF6\xDF"
       "e"},
      {"NUM", "1", "1,5", "7:\"1,5\""},
      {"NUM", "1", "a\"b", "7:\"a b\""},
      {"NUM", "1", "x) OR (y", "7:\"x) OR (y\""},
      {"NUM", "1", "\xD7\x80", "7:\"\xD7\x80\""},
      {"NUM", "1", "a\tb\r\n", "7:\"a\tb\r\n\""},
      {"NUM", "1", "^,^\\", "7:\"^,^\\\""},
      {"NUM", "1", "", "7:\"\""},
      {"txt", "1", "plain", "7:plain"},
      {"", "x", "plain", "7:plain"},
      {"", "00", "plain", ""},
      {"", "-0.0", "plain", ""},
      {"", "  ", "plain", ""},
      {"", "False", "plain", ""},
      {"", "0x", "plain", "7:plain"},
      {"", "0.1", "plain", "7:plain"},
  };
  const auto connection = database.Connect();
  for (const Case& test : cases) {
    SCOPED_TRACE(std::string(test.type) + "|" + test.search + "|" + test.content);
    std::string content = test.content;
    if (const std::size_t quote = content.find('\''); quote != std::string::npos) content.insert(quote, 1, '\'');
    connection->Execute("UPDATE OutlinerContent SET Content='" + content + "'");
    connection->Execute("UPDATE OutlinerNodes SET DataType='" + std::string(test.type) + "', Search='" + test.search +
                        "'");
    EXPECT_EQ(page.query.GetOutlinerSearchExpr(1), test.expression) << page.Log();
  }
}

TEST_P(Outliners, WhoseParentsFormACircleFailAndDeepOnesDoNot) {
  const TestDatabase database(GetParam());
  constexpr int kDepth = 1000;
  const auto connection = database.Connect();
  connection->Execute("BEGIN");
  connection->Execute("INSERT INTO Outliner VALUES(1,'o')");
  connection->Execute("INSERT INTO OutlinerNodes VALUES(1,1,7,'d','NUM','1')");
  for (int id = 1; id <= kDepth; ++id) {
    const std::string number = std::to_string(id);
    connection->Execute("INSERT INTO OutlinerContent VALUES(" + number + ",1,1," +
                        (id == 1 ? "NULL" : std::to_string(id - 1)) + ",'" + number + "',0)");
  }
  connection->Execute("COMMIT");
  WebPage page(database);
  clsQuery& query = page.query;
  const std::string deepest = query.GetOutlinerSearchExpr(kDepth);
  EXPECT_TRUE(deepest.starts_with("7:1 AND 7:2 AND 7:3 AND ")) << deepest.substr(0, 100);
  EXPECT_TRUE(deepest.ends_with(" AND 7:999 AND 7:1000"));
  struct Case {
    int node;  // whose parent becomes
    int parent;
    std::vector<int> ids;  // these then fail
  };
  for (const Case& test : {Case{1, 1, {1, 2}}, Case{1, 2, {1, 2, 3}}, Case{1, kDepth, {1, 2, kDepth}}}) {
    connection->Execute("UPDATE OutlinerContent SET ParentID=" + std::to_string(test.parent) +
                        " WHERE ID=" + std::to_string(test.node));
    for (const int id : test.ids) {
      SCOPED_TRACE(std::to_string(test.parent) + " " + std::to_string(id));
      EXPECT_EQ(query.GetOutlinerSearchExpr(id), "");
      EXPECT_TRUE(page.Failed("GetOutlinerSearchExpr", "5 - The parents of outliner node " + std::to_string(id) + " "))
          << page.Log();
    }
  }
  EXPECT_EQ(query.GetOutlinerContentInit(1, 1), Variant::Long(1)) << page.Log();  // a level is no walk
}

TEST_P(OutlinersOfOthers, MayHoldNullsZeroParentsAndLostNodes) {
  const TestDatabase database(GetParam(), false);
  database.Run(kTablesOfOthers);
  database.Run(R"(
    INSERT INTO Outliner VALUES (1,NULL), (2,'Two');
    INSERT INTO OutlinerArchives VALUES (1,NULL,NULL), (1,NULL,NULL), (2,'Mail',NULL);
    INSERT INTO OutlinerNodes VALUES (1,1,'author','Author',NULL,1), (1,2,NULL,NULL,NULL,NULL),
      (1,3,'title',NULL,'TXT',-1);
    INSERT INTO OutlinerContent VALUES (1,1,1,0,'zero',NULL), (2,1,1,NULL,NULL,1), (3,1,2,1,'skipped',1),
      (4,1,3,3,'leaf',0), (5,1,3,99,'lost',0), (6,2,1,NULL,'levelless',0), (7,2,70000,6,'too deep',0))");
  WebPage page(database);
  clsQuery& query = page.query;
  Variant list;
  EXPECT_EQ(query.GetOutliner("Finance", "Invoices", &list), Variant::Long(1)) << page.Log();
  EXPECT_EQ(list, Variant("^1^,^^\r\n"));
  EXPECT_EQ(query.GetOutliner("Mail", "Any"), Variant::Long(2));
  EXPECT_EQ(query.GetOutlinerContentInit(1), Variant::Long(2)) << page.Log();
  EXPECT_EQ(Walk(query), "2 1 author Author  True 0 \n1 1 author Author  False 1 zero\n");
  EXPECT_EQ(query.GetOutlinerContentInit(1, 1), Variant::Long(1));
  EXPECT_EQ(Walk(query), "3 2    True 1 skipped\n");
  EXPECT_EQ(query.GetOutlinerSearchExpr(4), "author:zero AND title:\"leaf\"");
  EXPECT_EQ(query.GetOutlinerSearchExpr(5), "title:\"lost\"");
  EXPECT_EQ(query.GetOutlinerSearchExpr(2), "author:\"\"");
  EXPECT_EQ(query.GetOutlinerContentInit(2, 6), Variant::Integer(-1));  // the level is no Integer
  EXPECT_TRUE(page.Failed("GetOutlinerContentInit", "6 - ")) << page.Log();
}

TEST_P(Outliners, FailWithNothingLoaded) {
  const TestDatabase database(GetParam());
  database.Run(kTree);
  WebPage page(database);
  clsQuery& query = page.query;
  const Variant failed = Variant::Integer(-1);
  for (const char* id : {"1 OR 1=1", "1; DROP TABLE Outliner", "", " 1", "1.5", "0x1", "--1", "ID"}) {
    SCOPED_TRACE(id);
    query.GetOutlinerContentInit(1);
    EXPECT_EQ(query.GetOutlinerContentInit(id), failed);
    EXPECT_EQ(Walk(query), "");
    query.GetOutlinerContentInit(1);
    EXPECT_EQ(query.GetOutlinerContentInit(1, id), failed);
    EXPECT_EQ(Walk(query), "");
  }
  Variant list = "kept";
  for (const std::string& text : {std::string("x' OR '1'='1"), std::string("'"), std::string("a\0b", 3)}) {
    EXPECT_EQ(query.GetOutliner(text, "Invoices", &list), failed);
    EXPECT_EQ(list, Variant(""));
    EXPECT_EQ(query.GetOutliner("Finance", text), failed);
  }
  EXPECT_EQ(page.Log().find("-2147467259"), std::string::npos) << "the database saw a statement: " << page.Log();

  query.GetOutlinerContentInit(1);
  database.Run("DROP TABLE OutlinerContent; DROP TABLE OutlinerArchives");
  EXPECT_EQ(query.GetOutlinerContentInit(1), failed);
  EXPECT_EQ(Walk(query), "");
  EXPECT_EQ(query.GetOutliner("Finance", "Invoices"), failed);
  EXPECT_EQ(query.UpdateOutlinerContent(1, true), failed);
  EXPECT_EQ(query.GetOutlinerSearchExpr(1), "");
  for (const char* each : {"GetOutlinerContentInit", "GetOutliner", "UpdateOutlinerContent", "GetOutlinerSearchExpr"}) {
    EXPECT_TRUE(page.Failed(each, "-2147467259 - [")) << each << page.Log();
  }
}

}  // namespace
}  // namespace oxaqrycln::testing
