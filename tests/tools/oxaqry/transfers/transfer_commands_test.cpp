#include "tools/oxaqry/cli/command_families.h"

#include <unistd.h>

#include <chrono>
#include <csignal>
#include <future>
#include <tuple>

#include "tests/tools/oxaqry/scripted_archive.h"

namespace oxaqrycln::oxaqry {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

// "fetch" and the other commands that fetch a file.
TEST(FetchCommands, MoveTheContentThatWasAskedFor) {
  using Case = std::tuple<const char*, std::vector<std::string>, std::string>;
  for (const auto& [name, arguments, command] :
       {Case{"no option", {"fetch", "x y/A%2fB%/%252F"}, "GetSegmentFirstBLOB|x y|A/B%|%2F|||D:\\blobs"},
        Case{"extension", {"fetch", "M/A/7/2", "--first", "pdf"}, "GetSegmentFirstBLOB|M|A|7|2|pdf|D:\\blobs"},
        Case{"segment", {"fetch", "M/A/7/2", "--segment", "3"}, "GetSegmentData|M|A|7|2|3|D:\\blobs"},
        Case{"print", {"fetch", "M/A/7/2", "--print", "16"}, "GetSegmentPrintfile2|M|A|7|2|16|D:\\blobs"},
        Case{"pages", {"fetch", "M/A/7/2", "--pages", "1;4-6"}, "GetSegmentMultiTIF|M|A|7|2|1,4,5,6|D:\\blobs"},
        Case{"orders", {"orders", "tiff", "T1", "T2"}, "GetFahrauftraegeMultiTIFF|T1,T2|D:\\blobs"},
        Case{"hits", {"print-hits", "q"}, "PrintHitlistPDF|q|^Ref|Doc|Ver^\r\n^$(#M)\\A|1|1^|D:\\blobs"},
        Case{"hits with a title",
             {"print-hits", "q", "--title", "\u00C4pfel"},
             "PrintHitlistPDF|\xC4pfel|^Ref|Doc|Ver^\r\n^$(#M)\\A|1|1^|D:\\blobs"}}) {
    SCOPED_TRACE(name);
    ScriptedArchive archive({{command.substr(0, command.find('|')), ScriptedArchive::Puts("scan 1.tif", "content")},
                             {"QueryArchive", ScriptedArchive::Lines({"1", "", "0", "^0^,^0^,^0^", "^Ref^,^Doc^,^Ver^",
                                                                      "^$(#M)\\A^,^1^,^1^"})}});
    const TemporaryDirectory target;
    const ToolRun run = archive.Run(Joined(arguments, {"-o", target.path()}));
    EXPECT_EQ(run.out, (arguments[0] == "print-hits" ? "Printed the hits to " : "Fetched ") +
                           target.File("scan 1.tif") + " (7 bytes)\n")
        << run.err;
    EXPECT_EQ(archive.Commands().back(), command);
    EXPECT_EQ(target.Read("scan 1.tif"), "content");
    EXPECT_THAT(NamesIn(target.path()), ElementsAre("scan 1.tif"));
    EXPECT_THAT(NamesIn(archive.blobs.path()), IsEmpty());
  }
}

TEST(FetchCommand, OverwritesOnlyWhenForced) {
  ScriptedArchive archive({{"GetSegmentFirstBLOB", ScriptedArchive::Puts("f.tif", "new")}});
  const TemporaryDirectory target;
  target.Write("f.tif", "old");
  EXPECT_THAT(archive.Run({"fetch", "M/A/7", "-o", target.path()}).err, HasSubstr("exists: give --force"));
  EXPECT_EQ(target.Read("f.tif"), "old");
  EXPECT_EQ(archive.Run({"fetch", "M/A/7", "-o", target.File("f.tif")}).status, 1);
  EXPECT_EQ(archive.Commands().size(), 1U) << "a name known to be taken needs no request";
  EXPECT_EQ(archive.Run({"fetch", "M/A/7", "-o", target.path(), "--force"}).status, 0);
  EXPECT_EQ(target.Read("f.tif"), "new");
  EXPECT_THAT(NamesIn(target.path()), ElementsAre("f.tif"));

  EXPECT_EQ(archive.Run({"fetch", "M/A/7", "-o", target.File("second"), "--keep"}).status, 0);
  EXPECT_EQ(archive.blobs.Read("f.tif"), "new");

  // A file that is fetched into the blob directory itself stays there.
  EXPECT_EQ(archive.Run({"fetch", "M/A/7", "-o", archive.blobs.path()}).status, 0);
  EXPECT_EQ(archive.blobs.Read("f.tif"), "new");
}

TEST(FetchCommand, ReportsContentThatCannotBeFetched) {
  using Case = std::tuple<const char*, std::vector<std::string>, const char*>;
  for (const auto& [name, answer, message] :
       {Case{"none", {"0"}, "no such content"}, Case{"not there", {"3", "x.tif"}, "is not there"},
        Case{"wrong length", {"3", "there.tif"}, "has 4 bytes instead of 3"},
        Case{"a name that drives a terminal", {"4", "a\x1B.tif"}, "52 - Bad file name"},
        Case{"no name", {"3", "D:\\blobs\\.."}, "52 - Bad file name"}}) {
    SCOPED_TRACE(name);
    ScriptedArchive archive({{"GetSegmentData", ScriptedArchive::Lines(answer)}});
    archive.blobs.Write("there.tif", "four");
    const TemporaryDirectory target;
    const ToolRun run = archive.Run({"fetch", "M/A/7", "--segment", "1", "-o", target.path()});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr(message));
    EXPECT_THAT(NamesIn(target.path()), IsEmpty());
    EXPECT_TRUE(archive.blobs.Has("there.tif")) << "it belongs to the server";
  }
}

TEST(TransferCommand, ReceivesIntoTheBlobDirectoryOrElsewhere) {
  ScriptedArchive archive({{"TransferBLOB", ScriptedArchive::Sends("content")}});
  EXPECT_EQ(archive.Run({"transfer", "D:\\any\\scan.tif", "--size", "7"}).out,
            "Received " + archive.blobs.File("scan.tif") + " (7 bytes)\n");
  EXPECT_THAT(archive.Commands(), ElementsAre("TransferBLOB|D:\\blobs\\scan.tif"));
  EXPECT_EQ(archive.blobs.Read("scan.tif"), "content");

  archive.blobs.Write("scan.tif", "old");
  EXPECT_THAT(archive.Run({"transfer", "scan.tif", "--size", "7"}).err, HasSubstr("exists"));
  const TemporaryDirectory target;
  const ToolRun run = archive.Run({"transfer", "scan.tif", "--size", "7", "-o", target.File("t"), "--json"});
  EXPECT_EQ(Json::parse(run.out, nullptr, false), (Json{{"file", target.File("t")}, {"bytes", 7}})) << run.err;
  EXPECT_EQ(target.Read("t"), "content");
  EXPECT_EQ(archive.blobs.Read("scan.tif"), "old");
  EXPECT_THAT(NamesIn(target.path()), ElementsAre("t"));
}

TEST(FetchCommands, WriteOnStandardOutput) {
  ScriptedArchive archive({{"GetSegmentFirstBLOB", ScriptedArchive::Puts("f.tif", std::string("a\0\n", 3))},
                           {"TransferBLOB", ScriptedArchive::Sends("content")}});
  EXPECT_EQ(archive.Run({"fetch", "M/A/7", "-o", "-"}).out, std::string("a\0\n", 3));
  EXPECT_EQ(archive.Run({"transfer", "scan.tif", "--size", "7", "-o", "-"}).out, "content");
  EXPECT_THAT(NamesIn(archive.blobs.path()), IsEmpty());
  EXPECT_EQ(archive.Run({"fetch", "M/A/7", "-o", "-", "--json"}).status, 2);
  EXPECT_EQ(archive.Run({"transfer", "scan.tif", "--size", "7", "-o", "-", "--json"}).status, 2);
}

TEST(UploadCommand, SendsFilesFromAnywhere) {
  const TemporaryDirectory source;
  source.Write("K\u00E4se.txt", "cheese");
  for (const auto& [answer, status] : {std::pair{Answer({}), 0}, std::pair{Framed("Status: No\r\n"), 1}}) {
    std::string sent;
    ScriptedArchive archive({{"UploadFile", [&sent, &reply = answer](Peer& peer, const Fields&, auto&) {
                                sent = peer.ReadBytes(6);
                                peer.Send(reply);
                              }}});
    const ToolRun run = archive.Run({"upload", source.File("K\u00E4se.txt"), "--json"});
    EXPECT_EQ(run.status, status) << run.err;
    EXPECT_EQ(sent, "cheese");
    EXPECT_THAT(NamesIn(archive.blobs.path()), IsEmpty());
    EXPECT_THAT(archive.Commands(), ElementsAre("UploadFile|D:\\blobs|K\xE4se.txt|6"));
    EXPECT_THAT(archive.Run({"upload", source.File("none")}).err, HasSubstr("there is no file"));
  }
}

TEST(TransferCommands, RemoveUnfinishedFilesWhenInterrupted) {
  const TemporaryDirectory source;
  source.Write("f.txt", "content");
  using Case = std::tuple<const char*, int, std::vector<std::string>>;
  for (const auto& [command, signal, arguments] :
       {Case{"TransferBLOB", SIGINT, {"transfer", "x", "--size", "100"}},
        Case{"GetSegmentFirstBLOB", SIGTERM, {"fetch", "M/A/7", "-o", source.path()}},
        Case{"UploadFile", SIGTERM, {"upload", source.File("f.txt")}},
        Case{"CreateDocument",
             SIGINT,
             {"create", "M", "A", "--title", "t", "--field-file", "1:7=" + source.File("f.txt")}}}) {
    SCOPED_TRACE(command);
    const auto interrupts = [&number = signal](Peer& peer, const Fields& fields, auto&) {
      if (fields[0] == "TransferBLOB") peer.Send("some bytes");
      kill(getpid(), number);
    };
    ScriptedArchive archive({{command, interrupts}});
    const auto start = std::chrono::steady_clock::now();
    const ToolRun run = archive.Run(arguments);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(8)) << "not the end of the time-out";
    EXPECT_EQ(run.status, 128 + signal);
    EXPECT_THAT(run.out + run.err, IsEmpty());
    EXPECT_THAT(NamesIn(archive.blobs.path()), IsEmpty());
    EXPECT_THAT(NamesIn(source.path()), ElementsAre("f.txt"));
  }
}

// A standard error that lets a server wait until a text is shown on it.
class ShownText : public std::stringbuf {
 public:
  explicit ShownText(std::string text) : text_(std::move(text)) {}
  void Wait() { isShown_.get_future().wait_for(std::chrono::seconds(30)); }

 protected:
  int sync() override {
    if (!wasShown_ && str().find(text_) != std::string::npos) {
      wasShown_ = true;
      isShown_.set_value();
    }
    return 0;
  }

 private:
  const std::string text_;
  bool wasShown_ = false;
  std::promise<void> isShown_;
};

TEST(TransferCommands, ShowTheirProgressOnATerminalOnly) {
  const std::string half(500000, 'x');
  const std::string progress = "\rx  [############............]  500.0 kB of 1.0 MB";
  ShownText shown(progress);
  bool waits = true;
  ScriptedArchive archive({{"TransferBLOB", [&](Peer& peer, const Fields&, auto&) {
                              peer.Send(half);
                              if (waits) shown.Wait();
                              peer.Send(half);
                            }}});
  const std::vector<std::string> arguments{"transfer", "x", "--size", "1000000", "--force"};
  const ToolRun run = archive.Run(arguments, "", {.err = true}, {}, &shown);
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.err, HasSubstr(progress));
  EXPECT_TRUE(run.err.ends_with("\r\x1B[K"));
  waits = false;
  EXPECT_THAT(archive.Run(arguments).err, IsEmpty());

  // More than the buffers of both sockets hold.
  constexpr std::size_t kSize = 40000000;
  const TemporaryDirectory source;
  source.Write("f.bin", std::string(kSize, 'x'));
  ShownText started("f.bin  [");
  ScriptedArchive upload({{"UploadFile", [&](Peer& peer, const Fields&, auto&) {
                             started.Wait();
                             peer.ReadBytes(kSize);
                             peer.Send(Answer({}));
                           }}});
  const ToolRun sent = upload.Run({"upload", source.File("f.bin")}, "", {.err = true}, {}, &started);
  EXPECT_EQ(sent.status, 0) << sent.err;
  EXPECT_THAT(sent.err, ::testing::ContainsRegex("f.bin  .#+[.]+.  [0-9.]+ MB of 40.0 MB"));
}

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
