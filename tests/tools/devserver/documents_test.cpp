#include "tools/devserver/commands/handlers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "tests/tools/devserver/wire_client.h"
#include "values/code_page.h"

namespace oxaqrycln::devserver {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class DocumentsTest : public ::testing::Test {
 protected:
  // Both in UTF-8.
  std::string Ask(const std::string& command) const { return ToUtf8(server_.Ask(FromUtf8(command).value_or(""))); }

  RunningServer server_{{}, "none", kSampleDocumentCount};
};

TEST_F(DocumentsTest, MarkTheHitsOfAQuery) {
  // The document's author is Mia Krähenbühl, its text:
  //   Die Prüfung ergab keine Mängel. / The price is 12 € a piece – without packing. / Delivery is planned ...
  const char* const cases[][3] = {
      {"price", "The <price> is", "<12>"},
      {"PRICE prufung", "Die <Prüfung> ergab", "<Die>"},
      {"mia", "^<Mia> Krähenbühl^", "<price>"},
      {"author:price", "The price is", "<"},
      {"author:(mia OR price)", "^<Mia> Kr", "<price>"},
      {"price NOT mia", "The <price> is", "<Mia>"},
      {"price NOT (mia OR packing)", "The <price> is", "<packing>"},
      {"nowhere OR pri*", "The <price> is", "nowhere"},
      {"\"price is 12\"", "The <price is 12> € a", "<price>"},
      {"title:(author:mia)", "^Mia ", "<"},
      {"*", "The price is", "<"},
      {"", "The price is", "<"},
  };
  for (const auto& [query, marked, unmarked] : cases) {
    const std::string answer =
        Ask(std::string("GetSegmentText^,^Finance^,^Invoices^,^1094^,^2^,^") + query + "^,^<^,^>^,^");
    EXPECT_THAT(answer, ::testing::AllOf(HasSubstr(marked), Not(HasSubstr(unmarked)))) << query;
  }
}

TEST_F(DocumentsTest, CountHitsAndReplaceBlanksOutsideOfMarks) {
  const std::string answer = Ask("GetSegments^,^Finance^,^Invoices^,^1094^,^^,^is^,^<b >^,^</b>^,^&nbsp;^,^^,^0");
  EXPECT_THAT(answer, HasSubstr("^122^,^2^,^0^,^txt^"));
  EXPECT_THAT(answer, HasSubstr("price&nbsp;<b >is</b>&nbsp;12"));
}

TEST_F(DocumentsTest, KeepTheirOldVersions) {
  const auto text = [&](const std::string& version) {
    return Ask("GetSegmentText^,^Finance^,^Invoices^,^1094^,^" + version + "^,^^,^^,^^,^");
  };
  EXPECT_THAT(text("1"), Not(HasSubstr("Delivery is planned")));
  EXPECT_THAT(text("2"), HasSubstr("Delivery is planned"));
  EXPECT_EQ(text(""), text("2"));
}

TEST_F(DocumentsTest, AreRefusedWithAReason) {
  const std::string longMark(257, 'x');
  const std::pair<std::string, const char*> cases[] = {
      {"GetDocumentInfo^,^Mail^,^Nowhere^,^1094^,^", "There is no archive $(#Mail)\\Nowhere"},
      {"GetDocumentInfo^,^Mail^,^Inbox^,^1094^,^", "There is no document '1094' in $(#Mail)\\Inbox"},
      {"GetDocumentInfo^,^finance^,^INVOICES^,^99^,^", "There is no document '99' in $(#Finance)\\Invoices"},
      {"GetDocumentInfo^,^Finance^,^Invoices^,^^,^", "There is no document '' in $(#Finance)\\Invoices"},
      {"GetDocumentInfo^,^Finance^,^Invoices^,^-1^,^", "There is no document '-1' in $(#Finance)\\Invoices"},
      {"GetDocumentInfo^,^Finance^,^Invoices^,^99999999999999999999^,^",
       "There is no document '99999999999999999999' in $(#Finance)\\Invoices"},
      {"GetDocumentInfo^,^Finance^,^Invoices^,^1094^,^3", "Document 1094 has no version '3'"},
      {"GetDocumentInfo^,^Finance^,^Invoices^,^1094^,^x", "Document 1094 has no version 'x'"},
      {"GetSegmentDescription^,^Finance^,^Invoices^,^1094^,^^,^/etc",
       "'/etc' is not the blob directory of this server"},
      {"GetSegmentText^,^Finance^,^Invoices^,^1094^,^^,^red)^,^^,^^,^", "Query: ')' without '('"},
      {"GetSegmentText^,^Finance^,^Invoices^,^1094^,^^,^a^,^" + longMark + "^,^^,^",
       "A mark is longer than 256 characters"},
      {"GetMasks^,^Projects^,^None", "There is no archive $(#Projects)\\None"},
  };
  for (const auto& [command, answer] : cases) EXPECT_EQ(Ask(command), std::string("Status: ") + answer + "\r\n");
}

}  // namespace
}  // namespace oxaqrycln::devserver
