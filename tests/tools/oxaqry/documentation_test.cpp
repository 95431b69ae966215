#include <gtest/gtest.h>

#include <cctype>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

#include "tools/oxaqry/cli/settings.h"
#include "tools/oxaqry/command_line.h"

namespace oxaqrycln::oxaqry {
namespace {

std::string Read(const std::string& name) {
  std::ifstream file(OXAQRY_SOURCE_DIR "/" + name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// The manual page as its reader sees it.
std::string ReadPage() {
  std::string page = Read("oxaqry.1");
  for (std::size_t at = page.find('\\'); at != std::string::npos; at = page.find('\\', at)) {
    page.erase(at, page.compare(at, 2, "\\f") == 0 ? 3 : 1);  // a change of font, or the mark of a literal "-"
  }
  return page;
}

// Whether the text holds the word, not merely a longer word that begins or ends with it.
bool Mentions(const std::string& text, const std::string& word) {
  const auto isPart = [](char letter) {
    return std::isalnum(static_cast<unsigned char>(letter)) != 0 || letter == '-';
  };
  for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1)) {
    const std::size_t end = at + word.size();
    if ((at == 0 || !isPart(text[at - 1])) && (end == text.size() || !isPart(text[end]))) return true;
  }
  return false;
}

void ExpectEveryWord(const std::string& name, const std::string& text) {
  SCOPED_TRACE(name);
  ASSERT_FALSE(AllCommandWords().empty());
  for (const CommandWords& words : AllCommandWords()) {
    std::istringstream command(words.command);
    for (std::string word; command >> word;) EXPECT_TRUE(Mentions(text, word)) << words.command;
    for (const std::string& option : words.options) EXPECT_TRUE(Mentions(text, option)) << option;
  }
}

TEST(Documentation, NamesEveryCommandAndOption) {
  ExpectEveryWord("manual page", ReadPage());
  ExpectEveryWord("bash", Read("completion/oxaqry.bash"));
  ExpectEveryWord("zsh", Read("completion/_oxaqry"));
}

TEST(Documentation, NamesEveryEnvironmentVariable) {
  const std::string page = ReadPage();
  for (const SettingEntry& entry : SettingEntries()) {
    EXPECT_TRUE(Mentions(page, entry.environment)) << entry.environment;
    EXPECT_TRUE(Mentions(page, entry.variable)) << entry.variable;
  }
}

}  // namespace
}  // namespace oxaqrycln::oxaqry
