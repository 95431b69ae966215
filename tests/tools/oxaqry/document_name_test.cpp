#include "tools/oxaqry/document_name.h"

#include <gtest/gtest.h>

namespace oxaqrycln {
namespace {

TEST(DocumentName, IsReadAsItIsWritten) {
  struct Case {
    const char* text;
    DocumentName name;
  };
  for (const Case& each :
       {Case{"Mail/Inbox/1262", {"Mail", "Inbox", "1262", ""}},
        Case{"Büro/Protokolle/7/2", {"Büro", "Protokolle", "7", "2"}},
        Case{"A%2FB/100%25/x y/1", {"A/B", "100%", "x y", "1"}}, Case{"a/b/%252F", {"a", "b", "%2F", ""}}}) {
    SCOPED_TRACE(each.text);
    const auto name = ParseDocumentName(each.text);
    ASSERT_TRUE(name);
    EXPECT_EQ(name->channel, each.name.channel);
    EXPECT_EQ(name->archive, each.name.archive);
    EXPECT_EQ(name->document, each.name.document);
    EXPECT_EQ(name->version, each.name.version);
    EXPECT_EQ(ToText(*name), each.text);
  }
  EXPECT_EQ(ParseDocumentName("50%/a%2fb/1")->archive, "a/b");
  for (const char* const text : {"", "Mail", "Mail/Inbox", "Mail/Inbox/", "/Inbox/1", "a/b/1/2/3", "a/b/1/"}) {
    EXPECT_FALSE(ParseDocumentName(text)) << text;
  }
}

}  // namespace
}  // namespace oxaqrycln
