#include <tuple>

#include "tests/tools/oxaqry/users/oxaqry_database.h"

namespace oxaqrycln::oxaqry {
namespace {

using ::testing::HasSubstr;

using DefinitionCommands = OnDatabase;
INSTANTIATE_TEST_SUITE_P(Databases, DefinitionCommands, ::testing::ValuesIn(Kinds()), KindName);

// The tables with the sample; anna (1) is a member of the group Sales (2).
class SampleDatabase : public UserTestDatabase {
 public:
  explicit SampleDatabase(Kind kind) : UserTestDatabase(kind, false) {
    Must({"init", "--sample"});
    Must({"add", "anna", "--password-stdin"}, "pw\n");
    Must({"add", "Sales", "--group"});
    Must({"grant", "anna", "--group", "Sales"});
  }
};

TEST_P(DefinitionCommands, GrantedDefinitionsRestrictTheUser) {
  const SampleDatabase database(GetParam());
  const auto rights = [&](const char* command, const char* archive) {
    return JsonOf(database.User({command, "anna", archive, "--json"}));
  };
  EXPECT_EQ(rights("doc-rights", "Finance/Invoices")["conditions"], Json::array());
  database.Must({"grant", "anna", "--doc-right", "2", "--search-right", "2"});
  database.Must({"grant", "Sales", "--doc-right", "1", "--doc-right", "2", "--search-right", "1"});
  EXPECT_EQ(rights("doc-rights", "Finance/Invoices"), Json::parse(R"({
      "userId":1,"name":"anna","channel":"Finance","archive":"Invoices","conditions":[
        {"definition":1,"field":13,"operator":"=","value":"Invoice","type":"TXT"},
        {"definition":1,"field":15,"operator":"<","value":"5000","type":"NUM"},
        {"definition":2,"field":12,"operator":"<>","value":"Nordlicht Optik","type":"TXT"}]})"));
  EXPECT_EQ(rights("search-rights", "Finance/Orders"), Json::parse(R"({
      "userId":1,"name":"anna","channel":"Finance","archive":"Orders",
      "fixedValues":[{"field":12,"value":"Papierm\u00FChle \u00C4hrental"}],
      "hiddenFields":[15],"noMatchcodeFields":[11,15]})"));
  EXPECT_EQ(database.User({"doc-rights", "Sales", "Mail", "Inbox"}).out,
            "Definition  Field  Operator  Value            Type\n"
            "----------  -----  --------  ---------------  ----\n"
            "2           12     <>        Nordlicht Optik  TXT\n");
  EXPECT_THAT(database.User({"search-rights", "anna", "Finance", "Orders"}).out,
              HasSubstr("fixed value   12     Papierm\u00FChle \u00C4hrental\nhidden        15\nno matchcode  11\n"));
  database.Must({"revoke", "anna", "--doc-right", "2", "--search-right", "2", "--search-right", "99"});
  EXPECT_EQ(rights("search-rights", "Mail/Inbox")["fixedValues"], Json::array());
  EXPECT_EQ(rights("doc-rights", "Mail/Inbox")["conditions"].size(), 1U);  // that of the group
}

TEST_P(DefinitionCommands, ReportStoredTextsThatBreakLists) {
  const SampleDatabase database(GetParam());
  database.Must({"grant", "anna", "--doc-right", "2", "--search-right", "2"});
  for (const std::string value : {"a^,^b", "a\r\nb"}) {
    database.Run("UPDATE DocRightFields SET Val='" + value + "'; UPDATE SearchRightFields SET Val='" + value +
                 "'; UPDATE Outliner SET DisplayName='" + value + "'");
    for (const ToolRun& run : {database.User({"doc-rights", "anna", "a/b"}),
                               database.User({"search-rights", "anna", "a/b"}), database.Command({"outline", "a/b"})}) {
      ExpectError(run, 1, "holds \"^,^\" or a line end");
    }
  }
}

TEST_P(DefinitionCommands, OutlineShowsOutlinersTheirTreesAndTheSearchesOfNodes) {
  const SampleDatabase database(GetParam());
  EXPECT_EQ(database.Command({"outline", "Finance/Invoices"}).out,
            "ID  Outliner\n--  ------------------\n1   Customers by year\n2   Types of documents\n");
  EXPECT_EQ(JsonOf(database.Command({"outline", "Mail/Inbox", "--json"})),
            Json::parse(R"({"channel":"Mail","archive":"Inbox","outliners":[{"id":2,"name":"Types of documents"}]})"));
  EXPECT_EQ(database.Command({"outline", "1"}).out,
            "ID  Node               Description  Field  Expanded  Children\n"
            "--  -----------------  -----------  -----  --------  --------\n"
            "4   B\u00E4ckerei Gr\u00F6\u00DFling  Customer     12     no        2\n"
            "5     2025             Year         14     no        0\n"
            "6     2026             Year         14     no        0\n"
            "1   Nordlicht Optik    Customer     12     yes       2\n"
            "2     2025             Year         14     no        0\n"
            "3     2026             Year         14     no        0\n");
  const Json whole = JsonOf(database.Command({"outline", "2", "--json"}));
  EXPECT_EQ(whole["nodes"].at(1)["nodes"][0], Json::parse(R"({"id":9,"level":2,"field":13,"description":"Type",
      "dataType":"TXT","content":"Fax","expanded":false,"childCount":0,"nodes":[]})"));
  const Json roots = JsonOf(database.Command({"outline", "2", "--depth", "1", "--json"}));
  EXPECT_EQ(roots["nodes"].at(1)["nodes"], Json::array());
  EXPECT_EQ(database.Command({"outline", "--expression", "6"}).out,
            "12:\"B\u00E4ckerei Gr\u00F6\u00DFling\" AND 14:2026\n");
  EXPECT_EQ(JsonOf(database.Command({"outline", "--expression", "9", "--json"})),
            (Json{{"node", 9}, {"expression", "13:\"Fax\""}}));
}

TEST_P(DefinitionCommands, RefuseWhatIsMissingOrMalformed) {
  const SampleDatabase database(GetParam());
  database.Run("UPDATE OutlinerContent SET ParentID=3 WHERE ID=1");  // the circle of 1 and 3 has no root
  EXPECT_THAT(database.Command({"outline", "1"}).out, Not(HasSubstr("Nordlicht")));
  using Case = std::tuple<std::vector<std::string>, int, const char*>;
  for (const auto& [arguments, status, message] : {
           Case{{"user", "grant", "anna", "--doc-right", "1", "--search-right", "7"}, 1, "there is no search-right 7"},
           Case{{"user", "doc-rights", "anna", "Finance"}, 2, "CHANNEL/ARCHIVE"},
           Case{{"user", "search-rights", "anna", "Finance/In^,^voices"}, 1, "the archive holds \"^,^\""},
           Case{{"outline", "--expression", "7"}, 1, "has no search"},
           Case{{"outline", "--expression", "2"}, 1, "parents of outliner node 2 form a circle"},
           Case{{"outline", "--expression", "99"}, 1, "there is no outliner node 99"},
           Case{{"outline", "99"}, 1, "there is no outliner 99"},
           Case{{"outline", "Finance"}, 2, "CHANNEL/ARCHIVE"},
           Case{{"outline"}, 2, "--expression"},
           Case{{"outline", "1", "--expression", "2"}, 2, "excludes"},
           Case{{"outline", "1", "--depth", "0"}, 2, "--depth"},
       }) {
    ExpectError(database.Command(arguments), status, message);
  }
  EXPECT_EQ(database.Count("UserDocRights") + database.Count("UserSearchRights"), 0);
}

}  // namespace
}  // namespace oxaqrycln::oxaqry
