#include <gmock/gmock.h>

#include <chrono>
#include <set>

#include "tools/asphost/sessions/session_table.h"
#include "tools/asphost/web/encoding.h"
#include "tools/asphost/web/messages.h"

namespace oxaqrycln::asphost {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::Pair;

TEST(Encoding, LeavesNoTagAndNoQuoteInHtml) {
  EXPECT_EQ(HtmlEncode(std::string_view("<a href=\"x\" y='z'>&\xe4")),
            "&lt;a href=&quot;x&quot; y=&#39;z&#39;&gt;&amp;\xe4");
  EXPECT_EQ(HtmlEncode(std::wstring_view(L"<\u20ac>")), L"&lt;\u20ac&gt;");
}

TEST(Encoding, DecodesWhatItEncodesForUrls) {
  std::string bytes;
  for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
  EXPECT_EQ(UrlDecode(UrlEncode(bytes)), bytes);
  EXPECT_EQ(UrlEncode("a b/\xe4-._"), "a+b%2F%E4-._");
  struct Case {
    std::string_view text;
    std::string_view decoded;
  };
  for (const Case& test : std::initializer_list<Case>{{"a+b", "a b"},
                                                      {"%41%6a%6A", "Ajj"},
                                                      {"%", "%"},
                                                      {"%4", "%4"},
                                                      {"%4g", "%4g"},
                                                      {"%+1", "% 1"},
                                                      {"%-1", "%-1"}}) {
    EXPECT_EQ(UrlDecode(test.text), test.decoded) << test.text;
  }
  EXPECT_EQ(PathDecode("/a+b%20c"), "/a+b c");
}

TEST(Encoding, TakesFieldsApart) {
  EXPECT_THAT(ParseForm("a=1&b=&c&=d&&a=2%263"),
              ElementsAre(Pair("a", "1"), Pair("b", ""), Pair("c", ""), Pair("", "d"), Pair("a", "2&3")));
  EXPECT_THAT(ParseCookies("a=1; b=x+y;c=z%3B;  d"),
              ElementsAre(Pair("a", "1"), Pair("b", "x y"), Pair("c", "z;"), Pair("d", "")));
  const Fields fields = ParseForm("a=1&B=2&A=3");
  EXPECT_EQ(ValueOf(fields, "a"), "1, 3");
  EXPECT_EQ(ValueOf(fields, "b"), "2");
  EXPECT_EQ(ValueOf(fields, "c"), std::nullopt);
  std::string many;
  for (int i = 0; i < 5000; ++i) many += "a=1&";
  EXPECT_EQ(ParseForm(many).size(), 1000u);
}

TEST(Messages, KeepLineEndsOutOfHeaders) {
  EXPECT_TRUE(IsHeaderText("text/html; charset=\xe4"));
  for (const char* const text : {"a\r\nb", "a\nb", "a\x7f", "\t"}) EXPECT_FALSE(IsHeaderText(text)) << text;
  EXPECT_TRUE(IsToken("X-Name_1"));
  for (const char* const text : {"", "a b", "a=b", "a;", "a\n", "\xe4"}) EXPECT_FALSE(IsToken(text)) << text;
  Cookie cookie;
  cookie.name = "a";
  cookie.value = "x; path=/evil\r\nSet-Cookie: b";
  EXPECT_EQ(HeaderOf(cookie), "a=x%3B+path%3D%2Fevil%0D%0ASet-Cookie%3A+b; path=/; SameSite=Lax");
}

TEST(Messages, AnErrorPageShowsTextsAndNoTags) {
  const WebAnswer page = ErrorPage(500, "<b>", "<script>");
  EXPECT_EQ(page.status, 500);
  EXPECT_THAT(page.body, HasSubstr("&lt;script&gt;"));
  EXPECT_THAT(page.body, Not(HasSubstr("<script>")));
  EXPECT_THAT(page.body, Not(HasSubstr("<b>")));
}

class SessionTableTest : public ::testing::Test {
 protected:
  using Table = SessionTable<int>;
  Table::Clock::time_point At(int seconds) { return start_ + std::chrono::seconds(seconds); }
  std::string Add(int number, int seconds) { return table_.Add(std::make_shared<int>(number), At(seconds)); }

  Table::Clock::time_point start_ = Table::Clock::now();
  Table table_{3, std::chrono::seconds(100)};
};

TEST_F(SessionTableTest, EndsASessionThatWasNotUsedForItsTimeOut) {
  const std::string id = Add(7, 0);
  EXPECT_EQ(*table_.Find(id, At(99)), 7);
  EXPECT_EQ(*table_.Find(id, At(198)), 7);
  table_.SetTimeOut(id, std::chrono::seconds(10), At(198));
  EXPECT_EQ(table_.Find(id, At(208)), nullptr);
  EXPECT_EQ(table_.Count(), 0u);
  EXPECT_EQ(table_.Find("unknown", At(0)), nullptr);
}

TEST_F(SessionTableTest, KeepsABoundedNumberAndEndsTheOneThatWasUnusedLongest) {
  const std::string first = Add(1, 0);
  const std::string second = Add(2, 1);
  const std::string third = Add(3, 2);
  table_.Find(first, At(3));
  const std::string fourth = Add(4, 4);
  EXPECT_EQ(table_.Find(second, At(5)), nullptr);
  EXPECT_EQ(*table_.Find(first, At(5)), 1);
  table_.Remove(first);
  EXPECT_EQ(table_.Find(first, At(5)), nullptr);
  EXPECT_EQ(table_.Count(), 2u);
}

TEST(SessionId, IsLongAndNeverTheSame) {
  std::set<std::string> ids;
  for (int i = 0; i < 1000; ++i) ids.insert(NewSessionId());
  EXPECT_EQ(ids.size(), 1000u);
  EXPECT_EQ(ids.begin()->size(), 32u);
}

}  // namespace
}  // namespace oxaqrycln::asphost
