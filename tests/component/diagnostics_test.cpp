#include <gtest/gtest.h>

#include "tests/support/page.h"

namespace oxaqrycln::testing {
namespace {

TEST(Diagnostics, AskAServer) {
  WithAnswers({Answer({"alive", "more"}), Answer({}), Answer({"a", "", "b"}), Framed("Status: Unknown command\r\n")},
              [](Page& page) {
                EXPECT_EQ(page.query.LiveCheck(), "alive");
                EXPECT_EQ(page.LastCommand(), "^LiveCheck^");
                EXPECT_EQ(page.query.TELOGetAllArchivesNext(), "alive");  // the answer stays in the buffer
                EXPECT_EQ(page.query.LiveCheck(), "");
                EXPECT_NE(page.Log().find("'LiveCheck()': 9 - "), std::string::npos);
                EXPECT_EQ(page.query.DirectQuery("^Any^,^text^"), "a\r\n\r\nb");
                EXPECT_EQ(page.LastCommand(), "^Any^,^text^");
                EXPECT_EQ(page.query.DirectQuery("^Nonsense^"), "Unknown command");
              });
}

TEST(Diagnostics, ReturnTheErrorTextWithoutAServer) {
  InOwnThread([] {
    clsQuery query;
    EXPECT_EQ(query.LiveCheck(), "General processing error: 91 - The instance has no connection slot; call Init first");
    EXPECT_TRUE(query.Init(false));
    EXPECT_EQ(query.LiveCheck(), "All query servers are currently busy");
    EXPECT_EQ(query.DirectQuery("^X^"), "All query servers are currently busy");
  });
}

TEST(WriteTest, LogsHowFarItGot) {
  WithAnswer({}, [](Page& page) {
    page.query.strBlobPathLocal = page.blobs.path() + "\\missing";
    page.query.WriteTest();
    EXPECT_EQ(page.Log().find("Deleting test file"), std::string::npos);
    page.query.strBlobPathLocal = page.blobs.path();
    page.query.WriteTest();
    const std::string file = page.blobs.path() + "\\WriteTest.txt'\r\n";
    EXPECT_NE(page.Log().find("Writing test file '" + file), std::string::npos);
    EXPECT_NE(page.Log().find("Deleting test file '" + file), std::string::npos);
  });
}

}  // namespace
}  // namespace oxaqrycln::testing
