#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <regex>
#include <string>

#include "tools/oxaqry/command_line.h"
#include "tools/oxaqry/settings.h"

namespace oxaqrycln {
namespace {

std::string Read(const std::string& name) {
  std::ifstream file(OXAQRY_SOURCE_DIR "/" + name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// Whether the text holds the word, not merely a longer word that begins or ends with it.
bool Mentions(const std::string& text, const std::string& word) {
  return std::regex_search(text, std::regex("(^|[^\\w-])" + word + "($|[^\\w-])"));
}

void ExpectEveryWord(const std::string& name, const std::string& text) {
  SCOPED_TRACE(name);
  ASSERT_FALSE(AllCommandWords().empty());
  for (const CommandWords& words : AllCommandWords()) {
    EXPECT_TRUE(Mentions(text, words.command)) << words.command;
    for (const std::string& option : words.options) EXPECT_TRUE(Mentions(text, option)) << option;
  }
}

TEST(Documentation, NamesEveryCommandAndOption) {
  const std::string page =
      std::regex_replace(std::regex_replace(Read("oxaqry.1"), std::regex(R"(\\fR)"), ""), std::regex(R"(\\-)"), "-");
  ExpectEveryWord("manual page", page);
  ExpectEveryWord("bash", Read("completion/oxaqry.bash"));
  ExpectEveryWord("zsh", Read("completion/_oxaqry"));
}

TEST(Documentation, NamesEveryEnvironmentVariable) {
  const std::string page = Read("oxaqry.1");
  for (const SettingEntry& entry : SettingEntries()) {
    EXPECT_TRUE(Mentions(page, entry.environment)) << entry.environment;
    EXPECT_TRUE(Mentions(page, entry.variable)) << entry.variable;
  }
}

}  // namespace
}  // namespace oxaqrycln
