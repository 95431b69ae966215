#include "tools/devserver/commands/handlers.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <utility>
#include <vector>

#include "tests/tools/devserver/fetched_content.h"
#include "values/code_page.h"
#include "values/text_parts.h"

namespace oxaqrycln::devserver {
namespace {

using ::testing::HasSubstr;

class PrintingTest : public ContentTest {
 protected:
  // The text of each printed page, as another program reads it.
  std::vector<std::string> Print(const std::string& title, const std::string& rows) const {
    const std::filesystem::path file = Fetch("PrintHitlistPDF^,^" + title + "^,^" + rows + "^,^");
    const std::string command = "pdftotext -layout -enc UTF-8 '" + file.string() + "' -";
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    std::string text;
    for (int byte = 0; (byte = std::fgetc(pipe.get())) != EOF;) text += static_cast<char>(byte);
    if (!text.empty()) text.pop_back();  // the form feed after the last page
    const auto pages = Split(text, '\f');
    return {pages.begin(), pages.end()};
  }
};

TEST_F(PrintingTest, ShowsTitlesAndNumberOnEachPageAndEachRowOnce) {
  std::string rows = "^Reference^,^Document^,^Version^,^Title^";
  for (int row = 1; row <= 120; ++row)
    rows += "\r\n^$(#Mail)\\Inbox^,^" + std::to_string(2000 + row) + "^,^1^,^Brief über €^";
  const auto pages = Print(FromUtf8("Größe (1)").value_or(""), FromUtf8(rows).value_or(""));
  ASSERT_EQ(pages.size(), 3U);
  std::string all;
  for (std::size_t page = 0; page < pages.size(); ++page) {
    EXPECT_THAT(pages[page], ::testing::StartsWith("Größe (1)\n")) << page;
    EXPECT_THAT(pages[page], ::testing::ContainsRegex("\nReference +Document +Version +Title\n")) << page;
    EXPECT_THAT(pages[page], HasSubstr("Page " + std::to_string(page + 1) + " of 3\n")) << page;
    all += pages[page];
  }
  std::size_t place = 0;
  for (int row = 1; row <= 120; ++row) {
    place = all.find(std::to_string(2000 + row), place);
    ASSERT_NE(place, std::string::npos) << row;
    EXPECT_EQ(all.find("Brief über €\n", place), all.find("Brief", place)) << row;
  }
  EXPECT_EQ(all.find("Brief", all.find("Brief", place) + 1), std::string::npos);
}

TEST_F(PrintingTest, PrintsAnEmptyHitList) {
  const auto pages = Print("", "^Reference^,^^");
  ASSERT_EQ(pages.size(), 1U);
  EXPECT_THAT(pages[0], HasSubstr("Reference"));
  EXPECT_THAT(pages[0], HasSubstr("Page 1 of 1"));
}

TEST_F(PrintingTest, ShowsEveryCharacterOfTheCodePage) {
  std::string characters;
  for (int code = 0x21; code <= 0xFF; ++code) {
    // No caret, no blanks, no soft hyphen, none of the five bytes that have no character.
    const bool isLeftOut = code == '^' || code == 0x7F || code == 0x81 || code == 0x8D || code == 0x8F ||
                           code == 0x90 || code == 0x9D || code == 0xA0 || code == 0xAD;
    if (!isLeftOut) characters += static_cast<char>(code);
  }
  std::string rows = "^C^";
  for (std::size_t start = 0; start < characters.size(); start += 16)
    rows += "\r\n^" + characters.substr(start, 16) + "^";
  const auto pages = Print("T", rows);
  ASSERT_EQ(pages.size(), 1U);
  for (std::size_t start = 0; start < characters.size(); start += 16) {
    EXPECT_THAT(pages[0], HasSubstr("\n" + ToUtf8(characters.substr(start, 16)) + "\n")) << start;
  }
}

TEST_F(PrintingTest, WrapsLongFieldsAndCutsOverlongOnes) {
  const std::string words = "Wort1 " + Repeat("Wort ", 98) + "Last ";
  const auto pages =
      Print(std::string(200, 'T'), "^A^,^B^,^C^,^D^\r\n^" + words + "^,^" + words + "^,^" + std::string(900, 'w') +
                                       "^,^end^\r\n^\x01(\\)^\r\n^1^,^2^,^3^,^4^,^more than titles^");
  ASSERT_EQ(pages.size(), 1U);
  EXPECT_THAT(pages[0], ::testing::ContainsRegex("^T+…\n"));
  EXPECT_THAT(pages[0], ::testing::ContainsRegex("Wort1 .*Wort1 .*ww.*end\n"));
  EXPECT_THAT(pages[0], ::testing::ContainsRegex("….*….*…\n"));
  EXPECT_THAT(pages[0], ::testing::Not(HasSubstr("Last")));
  EXPECT_THAT(pages[0], HasSubstr("(\\)"));
  EXPECT_THAT(pages[0], HasSubstr("more than titles"));
}

TEST_F(PrintingTest, RefusesInvalidHitLists) {
  const std::pair<std::string, const char*> cases[] = {
      {"T^,^^A^" + Repeat("\r\n^a^", 10001) + "^,^", "More than 10000 rows"},
      {"T^,^^A^" + Repeat(",^A^", 40) + "^,^", "Row 1 has more than 40 columns"},
      {"T^,^^A^" + Repeat("\r\n^a^" + Repeat(",^a^", 20), 5000) + "^,^", "More than 100000 fields in the rows"},
      {"T^,^^A^\r\nno row\r\n^a^^,^", "Row 2 is not a list of caret-quoted fields"},
      {std::string(201, 'T') + "^,^^A^^,^", "The title is longer than 200 characters"},
      {"T^,^^A^^,^/tmp", "'/tmp' is not the blob directory of this server"},
      {"T^,^^A^\r\n^" + std::string(2'100'000, 'a') + "^^,^", "The request is longer than 2097152 bytes"},
  };
  for (const auto& [parameters, answer] : cases)
    EXPECT_EQ(server_.Ask("PrintHitlistPDF^,^" + parameters), std::string("Status: ") + answer + "\r\n");
}

TEST(Printing, WaitsForRowsThatArriveInPieces) {
  const RunningServer server(
      WithLimits({.quiet = std::chrono::milliseconds(10), .shortQuiet = std::chrono::minutes(1)}));
  Client client = server.Send("^S1^,^webuser^,^" + Encode("secret") + "^,^PrintHitlistPDF^,^T^,^^Reference^,^Docum");
  for (const char* piece : {"ent^\r\n^a^,^^", ",^b^,^c^", "\r\n^d^", "^,^^"}) {
    EXPECT_FALSE(client.Readable(50)) << piece;
    client.Send(piece);
  }
  EXPECT_THAT(client.Answer(), ::testing::StartsWith("Status: OK\r\n"));
}

}  // namespace
}  // namespace oxaqrycln::devserver
