#include "tools/oxaqry/cli/document_name.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace oxaqrycln::oxaqry {
namespace {

TEST(DocumentName, IsReadAsItIsWritten) {
  using Case = std::pair<const char*, std::vector<std::string>>;
  for (const auto& [text, parts] :
       {Case{"Mail/Inbox/1262", {"Mail", "Inbox", "1262", ""}},
        Case{"Büro/Protokolle/7/2", {"Büro", "Protokolle", "7", "2"}},
        Case{"A%2FB/100%25/x y/1", {"A/B", "100%", "x y", "1"}}, Case{"a/b/%252F", {"a", "b", "%2F", ""}}}) {
    SCOPED_TRACE(text);
    const auto name = ParseDocumentName(text);
    ASSERT_TRUE(name);
    EXPECT_EQ((std::vector{name->channel, name->archive, name->document, name->version}), parts);
    EXPECT_EQ(ToText(*name), text);
  }
  EXPECT_EQ(ParseDocumentName("50%/a%2fb/1")->archive, "a/b");
  for (const char* const text : {"", "Mail", "Mail/Inbox", "Mail/Inbox/", "/Inbox/1", "a/b/1/2/3", "a/b/1/"}) {
    EXPECT_FALSE(ParseDocumentName(text)) << text;
  }
}

}  // namespace
}  // namespace oxaqrycln::oxaqry
