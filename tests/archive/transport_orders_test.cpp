#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/outputs.h"
#include "tests/support/page.h"

namespace oxaqrycln::testing {
namespace {

TEST(TransportOrders, AreWalkedInTheServersOrder) {
  WithAnswer(
      {"^T7^,^open^,^1003^,^2^,^Bremen^,^12,5 t^", "^T8^,^^,^^,^^", "^T9^,^a,b^c^,^1^,^2^,^^,^x"}, [](Page& page) {
        Variant status = "kept";
        EXPECT_EQ(page.query.OstranaQueryFahrauftraegeInit("status:open OR bremen", 10, &status), Variant::Long(3));
        EXPECT_EQ(page.LastCommand(), "^QueryFahrauftraege^,^status:open OR bremen^,^10^");
        EXPECT_EQ(status, Variant(""));
        const Output first[] = {{"strStatus", "open"}, {"strDocID", "1003"}, {"strVer", "2"}};
        ExpectOutputs(first, [&](auto*... each) {
          EXPECT_EQ(page.query.OstranaQueryFahrauftraegeNext(each...), "^T7^,^Bremen^,^12,5 t^");
        });
        EXPECT_EQ(page.query.OstranaQueryFahrauftraegeNext(), "^T8^");
        Variant version;
        // Only the columns that are handed on as they are may lack their closing caret.
        EXPECT_EQ(page.query.OstranaQueryFahrauftraegeNext(&status, nullptr, &version), "^T9^,^^,^x");
        EXPECT_EQ(status, Variant("a,b^c"));
        EXPECT_EQ(version, Variant("2"));
        EXPECT_EQ(page.query.OstranaQueryFahrauftraegeNext(&status), "");
        EXPECT_EQ(status, Variant("a,b^c"));
        EXPECT_EQ(page.Log().find("Processing error"), std::string::npos) << page.Log();
      });
}

TEST(TransportOrders, AreNotPassedWhenALineHasFewerThanFourFields) {
  struct Case {
    const char* name;
    const char* line;
  };
  for (const Case& each :
       {Case{"three fields", "^T7^,^open^,^1003^"}, Case{"an empty line", ""}, Case{"no carets", "T7,open,1003,2"},
        Case{"an unclosed field", "^T7^,^open^,^1003^,^2"}, Case{"an unopened one", "T7^,^open^,^1003^"}}) {
    WithAnswer({"^T6^,^open^,^1^,^1^", each.line, "^T8^,^open^,^2^,^1^"}, [&](Page& page) {
      page.query.OstranaQueryFahrauftraegeInit("*", 0);
      EXPECT_EQ(page.query.OstranaQueryFahrauftraegeNext(), "^T6^") << each.name;
      for (int call = 0; call < 2; ++call) {
        Variant out[] = {"kept", "kept", "kept"};
        EXPECT_EQ(page.query.OstranaQueryFahrauftraegeNext(&out[0], &out[1], &out[2]), "") << each.name;
        EXPECT_THAT(out, ::testing::Each(Variant("kept"))) << each.name;
      }
      const std::string log = page.Log();
      const char* const line = "'OstranaQueryFahrauftraegeNext()': 9 - ";
      EXPECT_LT(log.find(line), log.rfind(line)) << each.name << ": not twice in\n" << log;
    });
  }
}

TEST(TransportOrders, MayBeMissingOrChanged) {
  WithAnswer({}, [](Page& page) {
    clsQuery& query = page.query;
    EXPECT_EQ(query.OstranaQueryFahrauftraegeInit("*", 5), Variant::Long(0));
    EXPECT_EQ(query.OstranaQueryFahrauftraegeNext(), "");
    EXPECT_EQ(query.OstranaUpdateFahrauftraegeStatus(8, ""), Variant::Long(1));
    EXPECT_EQ(page.LastCommand(), "^UpdateFahrauftraegeStatus^,^8^,^^");
  });
}

}  // namespace
}  // namespace oxaqrycln::testing
