#include "tools/asphost/pages/page_script.h"

#include <gmock/gmock.h>

#include <map>
#include <sstream>

#include "tools/asphost/pages/page_error.h"

namespace oxaqrycln::asphost {
namespace {

using ::testing::HasSubstr;

class Files {
 public:
  explicit Files(std::map<std::string, std::string> contents) : contents_(std::move(contents)) {}

  PageScript Script(const std::string& sitePath = "page.asp") const {
    return PageScript(sitePath, [this](const std::string& path) -> std::optional<std::string> {
      const auto found = contents_.find(path);
      return found == contents_.end() ? std::nullopt : std::optional(found->second);
    });
  }

 private:
  std::map<std::string, std::string> contents_;
};

PageScript ScriptOf(const std::string& source) { return Files({{"page.asp", source}}).Script(); }

TEST(PageScript, WritesTextsByNumberAndKeepsStatements) {
  struct Case {
    const char* name;
    std::string source;
    std::string statements;
    std::vector<std::string> blocks;
  };
  const Case cases[] = {
      {"text only", "<p>a\r\nb</p>", "Response.WriteBlock 0\n", {"<p>a\r\nb</p>"}},
      {"statements", "<% x = 1\r\ny = 2 %>", " x = 1\ny = 2 \n", {}},
      {"value",
       "<b><%= x & \"<%\" %></b>",
       "Response.WriteBlock 0\nResponse.Write(x & \"<%\")\nResponse.WriteBlock 1\n",
       {"<b>", "</b>"}},
      {"condition", "<% If x Then %>yes<% End If %>", " If x Then \nResponse.WriteBlock 0\n End If \n", {"yes"}},
      {"comment that is no include",
       "<!-- #inclusive --><% x %>",
       "Response.WriteBlock 0\n x \n",
       {"<!-- #inclusive -->"}},
      {"byte order mark", "\xef\xbb\xbf<% x %>", " x \n", {}},
      {"nothing", "", "", {}},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.name);
    const PageScript script = ScriptOf(test.source);
    EXPECT_EQ(script.statements(), test.statements);
    EXPECT_EQ(script.blocks(), test.blocks);
  }
}

TEST(PageScript, FindsTheFileAndLineOfEachLineOfTheScript) {
  const Files files(
      {{"a/page.asp", "one\n<!-- #include file=\"../b.inc\" -->\n<%\nx = 1\n%>\n<!--#INCLUDE VIRTUAL=\"/a/c.inc\"-->"},
       {"b.inc", "\n\n<% b = 1\nb = 2 %>"},
       {"a/c.inc", "<% c = 1 %>"}});
  const PageScript script = files.Script("a/page.asp");
  std::map<std::string, SourcePosition> positions;
  std::size_t number = 0;
  std::istringstream lines(script.statements());
  for (std::string line; std::getline(lines, line); ++number) positions[line] = script.PositionOf(number);
  const auto expect = [&](const std::string& line, const std::string& file, int number_) {
    EXPECT_EQ(positions[line].file, file) << line;
    EXPECT_EQ(positions[line].line, number_) << line;
  };
  expect("Response.WriteBlock 0", "a/page.asp", 1);
  expect(" b = 1", "b.inc", 3);
  expect("b = 2 ", "b.inc", 4);
  expect("x = 1", "a/page.asp", 4);
  expect(" c = 1 ", "a/c.inc", 1);
  EXPECT_EQ(script.PositionOf(number + 5).file, "a/c.inc");  // an error behind the last line
}

TEST(PageScript, TakesSettingsFromTheDirective) {
  EXPECT_EQ(ScriptOf("<%@ Language=VBScript %>").codePage(), 1252u);
  EXPECT_EQ(ScriptOf("<%@LANGUAGE=\"VBScript\" CODEPAGE=\"65001\"%>").codePage(), 65001u);
  EXPECT_FALSE(ScriptOf("<%@ EnableSessionState = False Language=VBScript %>").usesSession());
}

TEST(PageScript, RefusesAPageThatIsWrongWithItsLine) {
  struct Case {
    const char* name;
    std::string source;
    int line;
    const char* text;
  };
  const Case cases[] = {
      {"no end", "a\n<% x", 2, "has no"},
      {"no value", "a\n\n<%= %>", 3, "no value"},
      {"late directive", "a\n<%@ Language=VBScript %>", 2, "at the start"},
      {"other language", "<%@ Language=JScript %>", 1, "VBScript"},
      {"other code page", "<%@ CodePage=932 %>", 1, "1252 or 65001"},
      {"unknown setting", "<%@ Transaction=Required %>", 1, "transaction"},
      {"include without path", "\n<!-- #include \"a\" -->", 2, "an include needs"},
      {"include outside", "<!-- #include file=\"../a.inc\" -->", 1, "leaves the site"},
      {"include of nothing", "\n<!-- #include file=\"a.inc\" -->", 2, "cannot be read"},
      {"include of itself", "<!-- #include file=\"page.asp\" -->", 1, "too deeply"},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.name);
    try {
      ScriptOf(test.source);
      ADD_FAILURE() << "was accepted";
    } catch (const PageError& error) {
      EXPECT_EQ(error.file(), "page.asp");
      EXPECT_EQ(error.line(), test.line);
      EXPECT_THAT(error.what(), HasSubstr(test.text));
    }
  }
}

}  // namespace
}  // namespace oxaqrycln::asphost
