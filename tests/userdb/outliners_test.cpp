#include <array>
#include <string>
#include <tuple>
#include <utility>

#include "tests/support/in_own_thread.h"
#include "tests/support/page.h"
#include "tests/support/test_database.h"

namespace oxaqrycln::testing {
namespace {

using Outliners = OnDatabase;
INSTANTIATE_TEST_SUITE_P(Databases, Outliners, ::testing::ValuesIn(Kinds()), KindName);

const Variant kFailed = Variant::Integer(-1);

// Outliner 1 has two levels that are described, outliner 2 one, and a node whose parent is of outliner 1.
constexpr const char* kTree = R"(
  INSERT INTO Outliner VALUES (1,'Customers'), (2,'Types');
  INSERT INTO OutlinerNodes VALUES (1,1,12,'Customer','TXT','1'), (1,2,14,'Year','NUM','yes'),
    (2,1,13,'Type','TXT','1');
  INSERT INTO OutlinerContent VALUES (10,1,1,NULL,'papermill',1), (11,1,1,NULL,'Optician',0), (12,1,1,NULL,'Zoo',0),
    (20,1,2,10,'2026',0), (21,1,2,10,'2025',-1), (22,1,2,11,'2026',0), (30,1,3,20,'deep',0), (40,2,1,NULL,'Letter',0),
    (41,2,2,12,'of another outliner',0))";

// The nodes as they are walked, a line each: the outputs in their order, then the content.
std::string Walk(clsQuery& query) {
  std::string text;
  for (int i = 0; i < 100; ++i) {
    std::array<Variant, 7> out;
    const std::string content =
        query.GetOutlinerContentNext(out.data(), &out[1], &out[2], &out[3], &out[4], &out[5], &out[6]);
    std::string types;
    for (const Variant& each : out) {
      types.append(each.TypeName()).append(" ");
      if (!each.IsEmpty()) text += each.ToText() + " ";
    }
    if (out[0].IsEmpty()) return text + content;
    EXPECT_EQ(types, "Long Integer String String String Boolean Long ");
    text += content + "\n";
  }
  return text + "without an end";
}

TEST_P(Outliners, AreListedByNameForTheirArchives) {
  const TestDatabase database(GetParam(), true,
                              "INSERT INTO Outliner VALUES (1,'\xC4pfel'), "
                              R"((2,'birnen'),
      (3,'Apfel'), (4,'apfel'), (20,'Zoo ^''"'), (5,'Zoo ^''"'), (6,'never offered');
    INSERT INTO OutlinerArchives VALUES (1,'Finance','Invoices'), (1,'Finance',''), (1,'',''), (2,'Finance',''),
      (3,'','Invoices'), (4,'Mail','Invoices'), (20,'',''), (5,'',''))");
  WebPage page(database);
  using Case = std::tuple<const char*, const char*, int, const char*>;
  for (const auto& [channel, archive, count, lines] :
       {Case{"Finance", "Invoices", 5, "^3^,^Apfel^\r\n^2^,^birnen^\r\n"},
        Case{"Finance", "Orders", 4, "^2^,^birnen^\r\n"}, Case{"Mail", "Invoices", 5, "^3^,^Apfel^\r\n^4^,^apfel^\r\n"},
        Case{"", "", 3, ""}}) {
    Variant list = "kept";
    EXPECT_EQ(page.query.GetOutliner(channel, archive, &list), Variant::Long(count)) << page.Log();
    EXPECT_EQ(list, Variant(std::string(lines) + "^5^,^Zoo ^'\"^\r\n^20^,^Zoo ^'\"^\r\n^1^,^\xC4pfel^\r\n")) << channel;
  }
}

TEST_P(Outliners, AreWalkedNodeByNode) {
  const TestDatabase database(GetParam(), true, kTree);
  WebPage page(database);
  clsQuery& query = page.query;
  EXPECT_EQ(Walk(query), "");
  const std::string roots =
      "11 1 12 Customer TXT False 1 Optician\n10 1 12 Customer TXT True 2 papermill\n"
      "12 1 12 Customer TXT False 0 Zoo\n";
  using Case = std::tuple<const char*, Variant, Variant, int, std::string>;
  for (const auto& [name, outliner, parent, count, nodes] : {
           Case{"roots", 1, Missing, 3, roots},
           Case{"0 is no parent", "1", 0, 3, roots},
           Case{"nor are other spellings of it", "+1", "-00", 3, roots},
           Case{"children", 1, "10", 2, "21 2 14 Year NUM True 0 2025\n20 2 14 Year NUM False 1 2026\n"},
           Case{"a level that is not described", 1, 20, 1, "30 3    False 0 deep\n"},
           Case{"a leaf", 1, 30, 0, ""},
           Case{"another outliner", 2, Missing, 1, "40 1 13 Type TXT False 0 Letter\n"},
           Case{"a node of another outliner", 2, 10, 0, ""},
           Case{"no such node", 1, 99, 0, ""},
       }) {
    SCOPED_TRACE(name);
    EXPECT_EQ(query.GetOutlinerContentInit(outliner, parent), Variant::Long(count)) << page.Log();
    EXPECT_EQ(Walk(query), nodes);
    EXPECT_EQ(Walk(query), "");
    query.GetOutlinerContentReset();
    EXPECT_EQ(Walk(query), nodes);
  }
  query.GetOutlinerContentInit(1, 10);
  EXPECT_EQ(query.GetOutlinerContentNext(), "2025");  // without outputs
}

TEST_P(Outliners, AreIndependentOfTheResponseBuffer) {
  const TestDatabase database(GetParam(), true, kTree);
  WithAnswer({"Finance,Money", "Mail,Letters"}, [&](Page& page) {
    clsQuery& query = page.query;
    query.strDBConnect = database.connectionString();
    ASSERT_TRUE(query.Init());
    EXPECT_EQ(query.TELOGetChannelsInit(), Variant::Long(2));
    EXPECT_EQ(query.GetOutlinerContentInit(1), Variant::Long(3));
    EXPECT_EQ(query.TELOGetChannelsNext(), "Finance");
    EXPECT_EQ(query.GetOutlinerContentNext(), "Optician");
    EXPECT_EQ(query.TELOGetChannelsInit(), Variant::Long(2));
    EXPECT_EQ(query.GetOutlinerContentNext(), "papermill");
    EXPECT_EQ(query.TELOGetChannelsNext(), "Finance");
  });
}

TEST_P(Outliners, KeepWhichNodesAreExpanded) {
  const TestDatabase database(GetParam(), true, kTree);
  WebPage page(database);
  using Case = std::tuple<Variant, Variant, Variant, int>;
  const Variant done = Variant::Long(1);
  for (const auto& [id, flag, result, stored] :
       {Case{11, true, done, 1}, Case{"11", false, done, 0}, Case{11, -1, done, 1}, Case{11, "False", done, 0},
        Case{11, 2, done, 1}, Case{11, "x", kFailed, 1}, Case{11, Variant::Null(), kFailed, 1},
        Case{99, true, kFailed, 1}, Case{"11 OR 1=1", false, kFailed, 1}, Case{"", false, kFailed, 1}}) {
    EXPECT_EQ(page.query.UpdateOutlinerContent(id, flag), result) << page.Log();
    EXPECT_EQ(database.Run("SELECT Expand FROM OutlinerContent WHERE ID=11"), Variant::Long(stored));
  }
  EXPECT_EQ(database.Run("SELECT COUNT(*) FROM OutlinerContent WHERE Expand=0 AND ID<>11").ToLong(), 6);
  EXPECT_TRUE(page.Failed("UpdateOutlinerContent", "5 - There is no such outliner node")) << page.Log();
}

TEST_P(Outliners, AreConvertedIntoASearchFromTheRootDown) {
  const TestDatabase database(GetParam(), true, kTree);
  WebPage page(database);
  using Case = std::tuple<const char*, Variant, const char*>;
  for (const auto& [name, id, expression] : {
           Case{"a root", 10, "12:\"papermill\""},
           Case{"below it a level that is not described", 30, "12:\"papermill\" AND 14:2026"},
           Case{"another outliner", 40, "13:\"Letter\""},
           Case{"a parent in another outliner", 41, ""},
           Case{"no such node", 99, ""},
           Case{"no number", "10 OR 1=1", ""},
       }) {
    EXPECT_EQ(page.query.GetOutlinerSearchExpr(id), expression) << name << page.Log();
  }
  EXPECT_EQ(page.Log().find("-2147467259"), std::string::npos) << page.Log();
}

TEST_P(Outliners, QuoteValuesThatCouldBeReadAsSyntax) {
  const TestDatabase database(GetParam(), true, R"(
    INSERT INTO Outliner VALUES(1,'o');
    INSERT INTO OutlinerContent VALUES(1,1,1,NULL,'',0);
    INSERT INTO OutlinerNodes VALUES(1,1,7,'d','',''))");
  WebPage page(database);
  const auto connection = database.Connect();
  using Case = std::tuple<const char*, const char*, const char*, const char*>;
  for (const auto& [type, search, content, expression] : {
           Case{"TXT", "1", "", "7:\"\""},
           Case{"TXT", "1", "a\" OR 7:\"b", "7:\"a  OR 7: b\""},
           Case{"TXT", "1", "it''s (a OR b)*", "7:\"it's (a OR b)*\""},
           Case{"NUM", "1", "-1.5_x*", "7:-1.5_x*"},
           Case{"NUM", "1", "gr\xF6\xDFt", "7:gr\xF6\xDFt"},
           Case{"NUM", "1", "1,5", "7:\"1,5\""},
           Case{"NUM", "1", "x) OR (y", "7:\"x) OR (y\""},
           Case{"NUM", "1", "\xD7\x80", "7:\"\xD7\x80\""},
           Case{"NUM", "1", "", "7:\"\""},
           Case{"txt", "1", "plain", "7:plain"},
           Case{"", "00", "plain", ""},
           Case{"", "-0.0", "plain", ""},
           Case{"", "  ", "plain", ""},
           Case{"", "False", "plain", ""},
           Case{"", "0x", "plain", "7:plain"},
           Case{"", "0.1", "plain", "7:plain"},
       }) {
    connection->Execute("UPDATE OutlinerContent SET Content='" + std::string(content) + "'");
    connection->Execute("UPDATE OutlinerNodes SET DataType='" + std::string(type) + "', Search='" + search + "'");
    EXPECT_EQ(page.query.GetOutlinerSearchExpr(1), expression) << type << search << page.Log();
  }
}

TEST_P(Outliners, WithCircularParentsFailAndDeepOnesDoNot) {
  const TestDatabase database(GetParam(), true, R"(
    INSERT INTO Outliner VALUES(1,'o');
    INSERT INTO OutlinerNodes VALUES(1,1,7,'d','NUM','1');
    INSERT INTO OutlinerContent
      WITH RECURSIVE Number(N) AS (SELECT 1 UNION ALL SELECT N+1 FROM Number WHERE N<1000)
      SELECT N, 1, 1, NULLIF(N-1, 0), CAST(N AS VARCHAR(4)), 0 FROM Number)");
  WebPage page(database);
  clsQuery& query = page.query;
  const std::string deepest = query.GetOutlinerSearchExpr(1000);
  EXPECT_TRUE(deepest.starts_with("7:1 AND 7:2 AND 7:3 AND ")) << deepest.substr(0, 100) << page.Log();
  EXPECT_TRUE(deepest.ends_with(" AND 7:999 AND 7:1000"));
  for (const auto& [parentOfFirst, node] : {std::pair("1", "1"), {"1", "2"}, {"2", "3"}, {"1000", "1000"}}) {
    database.Run(std::string("UPDATE OutlinerContent SET ParentID=") + parentOfFirst + " WHERE ID=1");
    EXPECT_EQ(query.GetOutlinerSearchExpr(node), "");
    EXPECT_TRUE(page.Failed("GetOutlinerSearchExpr", std::string("5 - The parents of outliner node ") + node + " "))
        << page.Log();
  }
  EXPECT_EQ(query.GetOutlinerContentInit(1, 1), Variant::Long(1)) << page.Log();  // a level is no walk
}

TEST_P(Outliners, MayContainNullsZeroParentsAndLostNodes) {
  const TestDatabase database(GetParam(), false, R"(
    CREATE TABLE Outliner (ID INTEGER, DisplayName VARCHAR(50));
    CREATE TABLE OutlinerArchives (OutlinerID INTEGER, Channel VARCHAR(50), Archive VARCHAR(50));
    CREATE TABLE OutlinerNodes (OutlinerID INTEGER, NodeLevel INTEGER, FieldID VARCHAR(50), Description VARCHAR(50),
      DataType VARCHAR(50), Search INTEGER);
    CREATE TABLE OutlinerContent (ID INTEGER, OutlinerID INTEGER, NodeLevel INTEGER, ParentID INTEGER,
      Content VARCHAR(50), Expand INTEGER);
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
  EXPECT_EQ(query.GetOutlinerContentInit(2, 6), kFailed);  // the level is no Integer
  EXPECT_TRUE(page.Failed("GetOutlinerContentInit", "6 - ")) << page.Log();
}

TEST_P(Outliners, LoadNothingWhenTheyFail) {
  const TestDatabase database(GetParam(), true, kTree);
  WebPage page(database);
  clsQuery& query = page.query;
  for (const auto& [outliner, parent] : {std::pair<Variant, Variant>("1 OR 1=1", Missing), {"", 10}, {1, "1 OR 1=1"}}) {
    query.GetOutlinerContentInit(1);
    EXPECT_EQ(query.GetOutlinerContentInit(outliner, parent), kFailed);
    EXPECT_EQ(Walk(query), "");
  }
  Variant list = "kept";
  EXPECT_EQ(query.GetOutliner("x' OR '1'='1", "Invoices", &list), kFailed);
  EXPECT_EQ(list, Variant(""));
  EXPECT_EQ(query.GetOutliner("Finance", "'"), kFailed);
  EXPECT_EQ(query.GetOutliner("Finance", std::string("a\0b", 3)), kFailed);
  EXPECT_EQ(page.Log().find("-2147467259"), std::string::npos) << "the database saw a statement: " << page.Log();

  query.GetOutlinerContentInit(1);
  database.Run("DROP TABLE OutlinerContent; DROP TABLE OutlinerArchives");
  EXPECT_EQ(query.GetOutlinerContentInit(1), kFailed);
  EXPECT_EQ(Walk(query), "");
  EXPECT_EQ(query.GetOutliner("Finance", "Invoices"), kFailed);
  EXPECT_EQ(query.UpdateOutlinerContent(1, true), kFailed);
  EXPECT_EQ(query.GetOutlinerSearchExpr(1), "");
  for (const char* each : {"GetOutlinerContentInit", "GetOutliner", "UpdateOutlinerContent", "GetOutlinerSearchExpr"}) {
    EXPECT_TRUE(page.Failed(each, "-2147467259 - [")) << each << page.Log();
  }
}

}  // namespace
}  // namespace oxaqrycln::testing
