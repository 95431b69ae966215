#include "tools/asphost/pages/site_path.h"

#include <gtest/gtest.h>

namespace oxaqrycln::asphost {
namespace {

TEST(SitePath, OfARequestStaysInTheSite) {
  struct Case {
    std::string_view path;
    std::string_view sitePath;
  };
  for (const Case& test : std::initializer_list<Case>{{"/", "default.asp"},
                                                      {"/a.asp", "a.asp"},
                                                      {"/a/b.asp", "a/b.asp"},
                                                      {"/a//b/./c.txt", "a/b/c.txt"},
                                                      {"/a/", "a/default.asp"},
                                                      {"/console.asp", "console.asp"}}) {
    EXPECT_EQ(SitePathOfRequest(test.path), test.sitePath) << test.path;
  }
  using namespace std::string_view_literals;
  for (const std::string_view path :
       {""sv,        "a.asp"sv,    "/.."sv,           "/a/../b.asp"sv, "/a/..\\b.asp"sv,  "/.git/x.txt"sv,
        "/a.asp."sv, "/a.asp "sv,  "/a.asp::$DATA"sv, "/c:/x.txt"sv,   "/a.asp\0.txt"sv,  "/a\n.txt"sv,
        "/nul"sv,    "/NUL.txt"sv, "/com1.asp"sv,     "/a/aux.js"sv,   "/COMMON~1.INC"sv, "/a*.asp"sv,
        "/..."sv,    "\\a.asp"sv}) {
    EXPECT_EQ(SitePathOfRequest(path), std::nullopt) << path;
  }
  EXPECT_EQ(SitePathOfRequest("/" + std::string(300, 'a')), std::nullopt);
}

TEST(SitePath, OfAnIncludeMayGoUpButNotOut) {
  EXPECT_EQ(ResolveSitePath("a/b/page.asp", "c.inc"), "a/b/c.inc");
  EXPECT_EQ(ResolveSitePath("a/b/page.asp", "..\\c.inc"), "a/c.inc");
  EXPECT_EQ(ResolveSitePath("a/b/page.asp", "../../c.inc"), "c.inc");
  EXPECT_EQ(ResolveSitePath("a/b/page.asp", "/c/d.inc"), "c/d.inc");
  EXPECT_EQ(ResolveSitePath("page.asp", "/"), "");
  for (const char* const path : {"../../../c.inc", "/../c.inc", "/a/../../c.inc", "c:\\x.inc", "nul"}) {
    EXPECT_EQ(ResolveSitePath("a/b/page.asp", path), std::nullopt) << path;
  }
}

TEST(SitePath, SendsOnlyKnownTypes) {
  EXPECT_TRUE(IsPage("a/B.ASP"));
  EXPECT_EQ(StaticContentType("style.css"), "text/css");
  EXPECT_EQ(StaticContentType("a.b/PICTURE.PNG"), "image/png");
  for (const char* const path :
       {"a.asp", "a.inc", "A.INC", "a.mdb", "a.asa", "a.txt.inc", "a.config", "css", "a.css/b", ""}) {
    EXPECT_EQ(StaticContentType(path), std::nullopt) << path;
  }
}

}  // namespace
}  // namespace oxaqrycln::asphost
