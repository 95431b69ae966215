#include "tools/devserver/hit_list_printing.h"

#include <gmock/gmock.h>

#include <array>
#include <cstdio>
#include <vector>

#include "platform/code_page.h"
#include "tests/tools/devserver/fetched_content.h"

namespace oxaqrycln::devserver {
namespace {

using testing::HasSubstr;

const std::string kTitles = "^Reference^,^Document^,^Version^,^Title^";

class PrintingTest : public ContentTest {
 protected:
  std::filesystem::path Print(const std::string& title, const std::string& rows) const {
    return Fetch("PrintHitlistPDF^,^" + title + "^,^" + rows + "^,^");
  }
  std::string Refusal(const std::string& rows, const std::string& title = "T",
                      const std::string& directory = "") const {
    return server_.Ask("PrintHitlistPDF^,^" + title + "^,^" + rows + "^,^" + directory);
  }
};

// The text of each page, as another program reads it.
std::vector<std::string> Pages(const std::filesystem::path& file) {
  const std::string command = "pdftotext -layout -enc UTF-8 '" + file.string() + "' -";
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
  std::string text;
  std::array<char, 4096> piece{};
  while (const std::size_t count = std::fread(piece.data(), 1, piece.size(), pipe.get()))
    text.append(piece.data(), count);
  std::vector<std::string> pages;
  for (std::size_t start = 0, end = 0; (end = text.find('\f', start)) != std::string::npos; start = end + 1) {
    pages.push_back(text.substr(start, end - start));
  }
  return pages;
}

TEST_F(PrintingTest, ShowsTitlesAndNumberOnEachPageAndEachRowOnce) {
  std::string rows = kTitles;
  for (int row = 1; row <= 120; ++row)
    rows += "\r\n^$(#Mail)\\Inbox^,^" + std::to_string(2000 + row) +
            "^,^1^,^Brief \xFC"
            "ber \x80^";
  const auto pages =
      Pages(Print("Gr\xF6\xDF"
                  "e (1)",
                  rows));
  ASSERT_EQ(pages.size(), 3U);
  std::string all;
  for (std::size_t page = 0; page < pages.size(); ++page) {
    EXPECT_THAT(pages[page], testing::StartsWith("Größe (1)\n")) << page;
    EXPECT_THAT(pages[page], testing::ContainsRegex("\nReference +Document +Version +Title\n")) << page;
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

TEST_F(PrintingTest, PrintsTheTitlesAlone) {
  const auto pages = Pages(Print("", "^Reference^,^^"));
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
  const auto pages = Pages(Print("T", rows));
  ASSERT_EQ(pages.size(), 1U);
  for (std::size_t start = 0; start < characters.size(); start += 16) {
    EXPECT_THAT(pages[0], HasSubstr("\n" + ToUtf8(characters.substr(start, 16)) + "\n")) << start;
  }
}

TEST_F(PrintingTest, BreaksLongFieldsAndCutsOverlongOnes) {
  std::string words;
  for (int word = 1; word <= 60; ++word) words += "Wort" + std::to_string(word) + " ";
  const auto pages = Pages(
      Print(std::string(200, 'T'), "^A^,^B^,^C^,^D^\r\n^" + words + "^,^" + words + "^,^" + std::string(900, 'w') +
                                       "^,^end^\r\n^\x01(\\)^\r\n^1^,^2^,^3^,^4^,^more than titles^"));
  ASSERT_EQ(pages.size(), 1U);
  EXPECT_THAT(pages[0], testing::ContainsRegex("^T+…\n"));
  EXPECT_THAT(pages[0], testing::ContainsRegex("Wort1 .*Wort1 .*ww.*end\n"));
  EXPECT_THAT(pages[0], testing::ContainsRegex("….*….*…\n"));
  EXPECT_THAT(pages[0], testing::Not(HasSubstr("Wort60")));
  EXPECT_THAT(pages[0], HasSubstr("(\\)"));
  EXPECT_THAT(pages[0], HasSubstr("more than titles"));
}

TEST_F(PrintingTest, RefusesWhatIsNoHitList) {
  std::string many = "^A^";
  for (int row = 0; row <= 10000; ++row) many += "\r\n^a^";
  std::string wide = "^A^";
  for (int column = 0; column < 40; ++column) wide += ",^A^";
  std::string large = "^A^";
  for (int row = 0; row < 5000; ++row) {
    large += "\r\n^a^";
    for (int column = 0; column < 20; ++column) large += ",^a^";
  }
  EXPECT_EQ(Refusal(many), "Status: More than 10000 rows\r\n");
  EXPECT_EQ(Refusal(wide), "Status: Row 1 has more than 40 columns\r\n");
  EXPECT_EQ(Refusal(large), "Status: More than 100000 fields in the rows\r\n");
  EXPECT_EQ(Refusal("^A^\r\nno row\r\n^a^"), "Status: Row 2 is not a list of fields in carets\r\n");
  EXPECT_EQ(Refusal("^A^", std::string(201, 'T')), "Status: The title is longer than 200 characters\r\n");
  EXPECT_EQ(Refusal("^A^", "T", "/tmp"), "Status: '/tmp' is not the blob directory of this server\r\n");
  EXPECT_EQ(Refusal("^A^\r\n^" + std::string(2'100'000, 'a') + "^"),
            "Status: The request is longer than 2097152 bytes\r\n");
}

TEST(Printing, WaitsForRowsThatComeInPieces) {
  ServerOptions options;
  options.limits.quiet = std::chrono::milliseconds(10);
  options.limits.shortQuiet = std::chrono::minutes(1);
  const RunningServer server(options);
  Client client = server.Connect();
  client.Send("^S1^,^webuser^,^" + Encode("secret") + "^,^PrintHitlistPDF^,^T^,^" + kTitles.substr(0, 24));
  for (const std::string& piece :
       {kTitles.substr(24) + "\r\n^a^,^^", std::string(",^b^,^c^"), std::string("\r\n^d^")}) {
    EXPECT_FALSE(client.Readable(50)) << piece;
    client.Send(piece);
  }
  EXPECT_FALSE(client.Readable(50));
  client.Send("^,^^");
  EXPECT_THAT(client.Answer(), testing::StartsWith("Status: OK\r\n"));
}

}  // namespace
}  // namespace oxaqrycln::devserver
