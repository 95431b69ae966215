#include "tools/oxaqry/transfers/transfer_commands.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>

#include "tests/tools/oxaqry/scripted_archive.h"

namespace oxaqrycln::oxaqry {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const ScriptedArchive::Reply kOrders = ScriptedArchive::Lines(
    {"^T1^,^open^,^7^,^2^,^Br\xFCgge^,^a,b^", "^T2^,^loaded^,^8^,^1^", "^T\x1B\x7F\x9D^,^OPEN^,^9^,^1^,^^"});

TEST(OrdersCommand, ListsOrdersAsTableAndJson) {
  ScriptedArchive archive({{"QueryFahrauftraege", kOrders}});
  EXPECT_EQ(archive.Run({"orders", "list"}).out,
            "Order  Status  Document  Version\n"
            "-----  ------  --------  -------  ------  ---\n"
            "T1     open    7         2        Brügge  a,b\n"
            "T2     loaded  8         1\n"
            "T\uFFFD\uFFFD\uFFFD   OPEN    9         1\n");
  const Json list = Json::parse(archive.Run({"orders", "list", "to:b\u00FCgge", "--max", "7", "--json"}).out)["orders"];
  ASSERT_EQ(list.size(), 3U);
  EXPECT_EQ(
      list[0],
      (Json{{"order", "T1"}, {"status", "open"}, {"document", "7"}, {"version", "2"}, {"columns", {"Brügge", "a,b"}}}));
  EXPECT_EQ(list[1]["columns"], Json::array());
  EXPECT_THAT(archive.Commands(), ElementsAre("QueryFahrauftraege|*|100", "QueryFahrauftraege|to:b\xFCgge|7"));
}

TEST(OrdersCommand, SelectsTheOrdersOfAStatus) {
  ScriptedArchive archive({{"QueryFahrauftraege", kOrders}});
  using Case = std::pair<std::vector<std::string>, std::size_t>;
  for (const auto& [options, count] : {Case{{"--status", "Open"}, 2}, Case{{"--status", "open", "--max", "1"}, 1},
                                       Case{{"--status", "open", "--max", "0"}, 2}, Case{{"--status", "lost"}, 0}}) {
    const ToolRun run = archive.Run(Joined({"orders", "list", "q", "--json"}, options));
    EXPECT_EQ(Json::parse(run.out)["orders"].size(), count) << options.back();
  }
  // A limit sent to the server would count orders of other statuses.
  EXPECT_EQ(archive.Commands().back(), "QueryFahrauftraege|q|2147483647");
}

TEST(OrdersCommand, SetsAStatus) {
  ScriptedArchive archive({{"UpdateFahrauftraegeStatus", ScriptedArchive::Lines({})}});
  EXPECT_EQ(archive.Run({"orders", "set", "T1", "verz\u00F6gert"}).out, "Set the status of T1 to verzögert\n");
  EXPECT_EQ(Json::parse(archive.Run({"orders", "set", "T1", "x", "--json"}).out),
            (Json{{"order", "T1"}, {"status", "x"}, {"done", true}}));
  EXPECT_THAT(archive.Commands(),
              ElementsAre("UpdateFahrauftraegeStatus|T1|verz\xF6gert", "UpdateFahrauftraegeStatus|T1|x"));
  for (const char* text : {"a^,^b", "\u4E2D"}) {
    EXPECT_EQ(archive.Run({"orders", "set", "T1", text}).status, 1) << text;
    EXPECT_EQ(archive.Run({"orders", "set", text, "open"}).status, 1) << text;
  }
  EXPECT_EQ(archive.Commands().size(), 2U);
}

}  // namespace
}  // namespace oxaqrycln::oxaqry
