#include "tools/oxaqry/cli/command_families.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "tests/tools/oxaqry/scripted_archive.h"

namespace oxaqrycln::oxaqry {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

// Hits with these amounts and the numbers 0, 1, ... as document ids.
ScriptedArchive::Reply Amounts(const std::vector<std::string>& amounts) {
  std::vector<std::string> lines{std::to_string(amounts.size()), "", "0", "^0^,^0^,^0^,^0^,^512^,^0^",
                                 "^^,^^,^^,^Title^,^Betr\xE4ge^,^Title^"};
  for (std::size_t i = 0; i < amounts.size(); ++i) {
    lines.push_back("^$(#Mail)\\Inbox^,^" + std::to_string(i) + "^,^1^,^T^,^" + amounts[i] + "^,^T^");
  }
  return ScriptedArchive::Lines(lines);
}

// The document ids of a search in the order they are shown in.
std::vector<std::string> Shown(ScriptedArchive& archive, const std::string& order) {
  const ToolRun run = archive.Run({"search", "x", "--json", "--sort", order});
  EXPECT_EQ(run.status, 0) << run.err;
  std::vector<std::string> ids;
  const Json list = Json::parse(run.out, nullptr, false);
  for (const Json& hit : list["hits"]) ids.push_back(hit["document"]);
  return ids;
}

TEST(SearchCommand, SortsAnyHitsInTheDirectionThatWasAskedFor) {
  const std::vector<std::string> values{"", "9", "10"};
  const auto valueOf = [](const std::string& amount) { return amount.empty() ? -1 : std::atoi(amount.c_str()); };
  for (unsigned number = 0; number < 40; ++number) {  // all lists of up to three values
    std::vector<std::string> amounts;
    for (unsigned rest = number; rest > 0; rest = (rest - 1) / 3) amounts.push_back(values[(rest - 1) % 3]);
    std::vector<std::string> ids;
    for (std::size_t i = 0; i < amounts.size(); ++i) ids.push_back(std::to_string(i));
    const auto value = [&](const std::string& id) { return valueOf(amounts[std::stoul(id)]); };
    ScriptedArchive archive({{"QueryArchive", Amounts(amounts)}});
    std::ranges::stable_sort(ids, std::ranges::less(), value);
    EXPECT_EQ(Shown(archive, "2"), ids) << number;
    std::ranges::sort(ids);
    std::ranges::stable_sort(ids, std::ranges::greater(), value);
    EXPECT_EQ(Shown(archive, "2:desc"), ids) << number;
  }
}

TEST(SearchCommand, FindsTheColumnByTitleOrNumber) {
  ScriptedArchive archive({{"QueryArchive", Amounts({"2", "3", "1"})}});
  EXPECT_THAT(Shown(archive, "Beträge"), ElementsAre("2", "0", "1"));
  EXPECT_THAT(Shown(archive, "BETRÄGE:desc"), ElementsAre("1", "0", "2"));
  EXPECT_THAT(Shown(archive, "1"), ElementsAre("0", "1", "2"));
  EXPECT_THAT(archive.Run({"search", "x", "--sort", "2"}).out, HasSubstr("Mail     Inbox    2         1        T"));
  EXPECT_EQ(archive.Commands().back(), "QueryArchive|x|100|1000||||");
}

TEST(SearchCommand, NamesTheColumnsWhenItCannotSort) {
  ScriptedArchive archive({{"QueryArchive", Amounts({})}});
  ScriptedArchive empty({{"QueryArchive", ScriptedArchive::Lines({"0", "", "0", "^0^"})}});
  const std::string columns = "1 Title, 2 Beträge, 3 Title\n";
  for (const char* const order : {"Price", "", ":desc", "0", "4", "-1", "99999999999999999999", "Beträge:asc", "Ж"}) {
    const ToolRun run = archive.Run({"search", "x", "--sort", order});
    EXPECT_EQ(run.status, 1) << order;
    EXPECT_THAT(run.out, IsEmpty());
    EXPECT_THAT(run.err, HasSubstr("to sort by; the columns are " + columns)) << order;
  }
  EXPECT_THAT(archive.Run({"search", "x", "--sort", "title"}).err,
              HasSubstr("several columns \"title\": give the number of one; the columns are " + columns));
  EXPECT_THAT(empty.Run({"search", "x", "--sort", "Price"}).out, HasSubstr("Showing 0 of 0 hits"));
}

}  // namespace
}  // namespace oxaqrycln::oxaqry
