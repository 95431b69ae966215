#include "tools/oxaqry/cli/command_families.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>
#include <utility>

#include "tests/tools/oxaqry/scripted_archive.h"

namespace oxaqrycln::oxaqry {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const ScriptedArchive::Reply kOrders = ScriptedArchive::Lines(
    {"^T1^,^open^,^7^,^2^,^Br\xFCgge^,^a,b^", "^T2^,^loaded^,^8^,^1^", "^T\x1B^,^OPEN^,^9^,^1^,^^"});

TEST(OrdersCommand, ListsOrdersAsTableAndJson) {
  ScriptedArchive archive({{"QueryFahrauftraege", kOrders}});
  EXPECT_EQ(archive.Run({"orders", "list"}).out,
            "Order  Status  Document  Version\n"
            "-----  ------  --------  -------  ------  ---\n"
            "T1     open    7         2        Brügge  a,b\n"
            "T2     loaded  8         1\n"
            "T\uFFFD     OPEN    9         1\n");
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

TEST(OrdersCommand, SaysWhichOrderIsMalformed) {
  ScriptedArchive archive({{"QueryFahrauftraege", ScriptedArchive::Lines({"^T1^,^open^,^7^,^2^", "^T2^,^open^,^7^"})}});
  const ToolRun run = archive.Run({"orders", "list"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out + run.err, ::testing::StartsWith("oxaqry: transport order 2 of the answer is malformed"));
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
  EXPECT_EQ(archive.Run({"orders", "set", "T1"}).status, 2);
  EXPECT_EQ(archive.Commands().size(), 2U);
  ScriptedArchive refusing({{"UpdateFahrauftraegeStatus", ScriptedArchive::Error("No such order")}});
  EXPECT_EQ(refusing.Run({"orders", "set", "T1", "open"}).err, "oxaqry: No such order\n");
}

// The commands that fetch a file, each with the query before it.
TEST(OrdersCommand, FetchesFilesAsFetchDoes) {
  using Case = std::tuple<const char*, std::vector<std::string>, const char*, const char*>;
  for (const auto& [name, fetch, command, message] :
       {Case{"tiff", {"orders", "tiff", "T1", "T2"}, "GetFahrauftraegeMultiTIFF|T1,T2|D:\\blobs", "Fetched "},
        Case{"print",
             {"print-hits", "q", "--title", "\u00C4pfel"},
             "PrintHitlistPDF|\xC4pfel|^Ref|Doc^\r\n^r|1^|D:\\blobs",
             "Printed 1 hit to "},
        Case{"title of the query",
             {"print-hits", "q"},
             "PrintHitlistPDF|q|^Ref|Doc^\r\n^r|1^|D:\\blobs",
             "Printed 1 hit to "}}) {
    SCOPED_TRACE(name);
    const auto put = ScriptedArchive::Puts("f.out", "content");
    ScriptedArchive archive(
        {{"GetFahrauftraegeMultiTIFF", put},
         {"PrintHitlistPDF", put},
         {"QueryArchive", ScriptedArchive::Lines({"1", "", "0", "^0^,^0^", "^Ref^,^Doc^", "^r^,^1^"})}});
    const TemporaryDirectory target;
    const auto arguments = Joined(fetch, {"-o", target.File("mine")});
    const ToolRun run = archive.Run(arguments);
    EXPECT_EQ(run.out, message + target.File("mine") + " (7 bytes)\n") << run.err;
    EXPECT_EQ(archive.Commands().back(), command);
    EXPECT_EQ(target.Read("mine"), "content");
    EXPECT_THAT(NamesIn(archive.blobs.path()), IsEmpty());
    EXPECT_THAT(archive.Run(arguments).err, HasSubstr("exists: give --force"));
    const ToolRun forced = archive.Run(Joined(arguments, {"--force", "--keep", "--json"}));
    const Json document = Json::parse(forced.out, nullptr, false);
    EXPECT_EQ(document["file"], target.File("mine"));
    EXPECT_EQ(document["bytes"], 7);
    EXPECT_EQ(archive.blobs.Read("f.out"), "content");
  }
}

TEST(PrintHitsCommand, ReportsWhyNothingWasPrinted) {
  using Case = std::tuple<const char*, ScriptedArchive::Reply, ScriptedArchive::Reply, const char*>;
  const auto hits = ScriptedArchive::Lines({"0", "", "0", "^0^", "^Ref^"});
  for (const auto& [name, query, print, message] :
       {Case{"the query fails", ScriptedArchive::Error("No such word"), hits, "No such word"},
        Case{"no title row", ScriptedArchive::Lines({"0", "", "0", "^0^"}), hits, "gave no usable answer"},
        Case{"printing fails", hits, ScriptedArchive::Error("Out of paper"), "Out of paper"},
        Case{"no file", hits, ScriptedArchive::Lines({"0"}), "there is no such content"}}) {
    ScriptedArchive archive({{"QueryArchive", query}, {"PrintHitlistPDF", print}});
    const TemporaryDirectory target;
    const ToolRun run = archive.Run({"print-hits", "q", "-o", target.path()});
    EXPECT_EQ(run.status, 1) << name;
    EXPECT_THAT(run.err, HasSubstr(message)) << name;
    EXPECT_THAT(NamesIn(target.path()), IsEmpty()) << name;
  }
}

}  // namespace
}  // namespace oxaqrycln::oxaqry
