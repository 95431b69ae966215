#include <gtest/gtest.h>

#include "tests/support/page.h"

namespace oxaqrycln::testing {
namespace {

Variant SearchWord(clsQuery& query) { return query.TELOQueryArchiveInit("word", 10, 100, "", ""); }

TEST(HitListPrinting, SendsTheRowsOfTheLastQueryWithTheTitles) {
  const std::string rows =
      "^Reference^,^Document^,^Version^,^Title^\r\n^$(#M)\\A^,^1^,^2^,^\xC4pfel^\r\n^$(#M)\\B^,^3^,^4^,^^";
  WithAnswers({Answer({"2", "10=Title", "0", "^0^,^0^,^0^,^0^", rows}), Answer({"fine"}), Framed("Status: Sorry\r\n"),
               Answer({"12", "list.pdf"})},
              [&](Page& page) {
                page.query.strBlobPathRemote = "R:\\blobs";
                EXPECT_EQ(SearchWord(page.query), Variant::Long(3));
                page.query.TELOQueryArchiveNext();
                // The hits outlive what comes after them, a query that fails included.
                EXPECT_EQ(page.query.LiveCheck(), "fine");
                EXPECT_EQ(SearchWord(page.query), kFailed);
                EXPECT_EQ(page.query.FennikPrintHitlistPDF("\xD6l"), Variant::Long(1));
                EXPECT_EQ(page.LastCommand(), "^PrintHitlistPDF^,^\xD6l^,^" + rows + "^,^R:\\blobs^");
              });
}

TEST(HitListPrinting, SendsNoRequestWithoutATitleRow) {
  for (const bool hasQueried : {false, true}) {
    WithAnswer({"0", "", "0", "^0^"}, [&](Page& page) {
      if (hasQueried) SearchWord(page.query);
      const int connections = page.server.Connections();
      EXPECT_EQ(page.query.FennikPrintHitlistPDF("T"), kFailed) << hasQueried;
      EXPECT_EQ(page.server.Connections(), connections) << hasQueried;
      EXPECT_NE(page.Log().find("'FennikPrintHitlistPDF()': 9 - "), std::string::npos) << page.Log();
    });
  }
}

}  // namespace
}  // namespace oxaqrycln::testing
