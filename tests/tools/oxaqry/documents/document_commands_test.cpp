#include "tools/oxaqry/cli/command_families.h"

#include <algorithm>
#include <cstdlib>
#include <tuple>

#include "tests/tools/oxaqry/scripted_archive.h"
#include "tools/oxaqry/cli/text.h"

namespace oxaqrycln::oxaqry {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr const char* kInformation =
    "^Mail^,^Inbox^,^7^,^2^,^123^,^01.02.2026^,^03.02.2026^,^Oak shelves^,^2^,^1^,^0^,^1^";

std::string SegmentLine(const std::string& index, const std::string& name, const std::string& text) {
  return "^Mail^,^Inbox^,^7^,^2^,^" + index + "^,^16^,^" + name + "^,^9^,^1^,^0^,^txt^,^1^,^Text^,^^,^0^,^L^,^0^,^" +
         text;
}

// A document whose text holds a hit over two lines, and what could drive a terminal.
std::map<std::string, ScriptedArchive::Reply> OakShelves() {
  return {{"GetDocumentInfo", ScriptedArchive::Lines({kInformation})},
          {"GetSegments",
           [](Peer& peer, const Fields& fields, auto&) {
             peer.Send(Answer({"1", SegmentLine("1", "text", "two " + fields[6] + "oak"),
                               "shelves" + fields[7] + ", \x1B[2J please^", SegmentLine("2", "K\xE4se", "plain^")}));
           }},
          {"GetNotes", ScriptedArchive::Lines({"mia,16.11.2026 09:05", "^Called,", "answered^"})}};
}

TEST(ShowCommand, MarksHitsOnATerminalOnly) {
  const std::string unmarked = "two oak\nshelves, \uFFFD[2J please\n";
  const std::string marked = "two \x1B[1;7moak\x1B[0m\n\x1B[1;7mshelves\x1B[0m, \uFFFD[2J please\n";
  const std::string ownMarks = "two <oak\nshelves>, \uFFFD[2J please\n";
  using Case =
      std::tuple<const char*, std::vector<std::string>, Terminals, std::map<std::string, std::string>, std::string>;
  for (const auto& [name, options, terminals, environment, shown] :
       {Case{"no terminal", {}, {}, {}, unmarked}, Case{"terminal", {}, {.out = true}, {}, marked},
        Case{"no color", {}, {.out = true}, {{"NO_COLOR", "1"}}, unmarked},
        Case{"empty NO_COLOR", {}, {.out = true}, {{"NO_COLOR", ""}}, marked},
        Case{"other marks", {"--mark-on", "<", "--mark-off", ">"}, {.out = true}, {}, ownMarks}}) {
    SCOPED_TRACE(name);
    ScriptedArchive archive(OakShelves());
    const ToolRun run =
        archive.Run(Joined({"show", "Mail/Inbox/7/2", "--query", "oak"}, options), "", terminals, environment);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(run.out, HasSubstr("\n--- Segment 1: text ---\n" + shown));
    EXPECT_THAT(run.out, HasSubstr("\n--- Segment 2: Käse ---\nplain\n"));
    EXPECT_THAT(run.out, HasSubstr("\n--- Note 1: mia, 2026-11-16T09:05:00 ---\nCalled,\nanswered\n"));
  }
}

TEST(ShowCommand, PrintsEverythingAsOneJsonDocument) {
  ScriptedArchive archive(OakShelves());
  const ToolRun run = archive.Run({"show", "Mail/Inbox/7", "--json"}, "", {.out = true});
  const Json document = Json::parse(run.out, nullptr, false);
  EXPECT_EQ(document["name"], "Mail/Inbox/7/2");
  EXPECT_EQ(document["title"], "Oak shelves");
  EXPECT_EQ(document["length"], 123);
  EXPECT_EQ(document["fileFields"], 1);
  EXPECT_EQ(document["changed"], "2026-02-03");
  ASSERT_EQ(document["segments"].size(), 2U) << run.err;
  EXPECT_EQ(document["segments"][0]["text"], "two oak\nshelves, \x1B[2J please");
  EXPECT_EQ(document["segments"][1]["index"], 2);
  EXPECT_EQ(document["notes"][0],
            (Json{{"author", "mia"}, {"time", "2026-11-16T09:05:00"}, {"text", "Called,\nanswered"}}));
  EXPECT_EQ(document["segments"][0]["marks"], Json::parse(R"([{"start":4,"length":11}])"));
}

TEST(ShowCommand, ReportsAMalformedSegment) {
  auto replies = OakShelves();
  replies["GetSegments"] = ScriptedArchive::Lines({"0", "^Mail^,^Inbox^,^7^"});
  ScriptedArchive malformed(replies);
  const ToolRun run = malformed.Run({"show", "Mail/Inbox/7"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out + run.err, ::testing::StartsWith("oxaqry: segment 1 of the answer is malformed"));
}

TEST(NoteCommands, SendTheNoteWithNetworkLineEnds) {
  ScriptedArchive archive({{"WriteNote", ScriptedArchive::Lines({})}});
  EXPECT_EQ(archive.Run({"note", "add", "Mail/Inbox/7", "Käse"}).status, 0);
  EXPECT_EQ(archive.Run({"note", "add", "Mail/Inbox/7", "-"}, "one\ntwo\r\n\n").status, 0);
  EXPECT_THAT(archive.Commands(),
              ElementsAre("WriteNote|Mail|Inbox|7||K\xE4se|\r\n", "WriteNote|Mail|Inbox|7||one\r\ntwo|\r\n"));
  EXPECT_THAT(archive.Run({"note", "add", "Mail/Inbox/7", std::string(8001, 'x')}).err, HasSubstr("8000 characters"));
  EXPECT_THAT(archive.Run({"note", "add", "Mail/Inbox/7", "a^,^b"}).err, HasSubstr("separates the fields"));
  EXPECT_EQ(archive.Commands().size(), 2U);
}

TEST(MaskCommand, ListsMasksWithTheirFields) {
  ScriptedArchive archive(
      {{"GetMasks", ScriptedArchive::Lines({"@Letter", "^1^,^20^,^L^,^Customer^,^1^,^^,^0^,^a;b^", "@Empty"})}});
  const ToolRun table = archive.Run({"masks", "Mail", "Inbox"});
  EXPECT_THAT(table.out, HasSubstr("\nLetter  1    20     L      Customer  yes "));
  EXPECT_THAT(table.out, HasSubstr("\nEmpty\n"));
  const Json masks = Json::parse(archive.Run({"masks", "Mail/Inbox", "--json"}).out, nullptr, false)["masks"];
  EXPECT_EQ(masks[0]["fields"][0]["width"], 20);
  EXPECT_EQ(masks[0]["fields"][0]["listOnly"], false);
  EXPECT_EQ(masks[1], (Json{{"mask", "Empty"}, {"fields", Json::array()}}));
}

// Keeps what the import file held when the server was asked.
struct Importing {
  std::string content;
  std::string path;
  std::map<std::string, ScriptedArchive::Reply> Replies(const std::string& identifier) {
    const auto keep = [this, identifier](Peer& peer, const Fields& fields, const TemporaryDirectory& blobs) {
      path = fields[1];
      content = blobs.Read(path.substr(path.rfind('\\') + 1));
      peer.Send(Answer({identifier}));
    };
    return {
        {"CreateDocument", keep}, {"EditDocument", keep}, {"GetDocumentInfo", ScriptedArchive::Lines({kInformation})}};
  }
};

TEST(CreateCommand, WritesAnImportFileAndDeletesItAfterwards) {
  Importing importing;
  ScriptedArchive archive(importing.Replies("1301,1"));
  archive.blobs.Write("letter", "\xEF\xBB\xBFZw\u00F6lf\n@FIELD,3");
  const std::vector<std::string> create{"create",
                                        "B\u00FCro/A%2F100%",
                                        "--title",
                                        "Gr\u00FC\u00DF"
                                        "e",
                                        "--field",
                                        "1:7=K\u00E4se",
                                        "--field-file",
                                        "2:9=" + archive.blobs.File("letter")};
  const ToolRun run = archive.Run(create);
  EXPECT_EQ(run.out, "Created B\u00FCro/A%2F100%25/1301/1\n") << run.err;
  EXPECT_EQ(importing.content,
            "@DB,$(#B\xFCro)\\A/100%\r\n@FOLDER,FT:Gr\xFC\xDF"
            "e,1:7,2:9\r\n@FIELD,7\r\nK\xE4se\r\n@FIELD,9\r\nZw\xF6lf\n @FIELD,3\r\n\r\n");
  EXPECT_THAT(importing.path, ::testing::StartsWith("D:\\blobs\\"));
  EXPECT_THAT(NamesIn(archive.blobs.path()), ElementsAre("letter"));
  EXPECT_EQ(Json::parse(archive.Run(Joined(create, {"--json"})).out, nullptr, false),
            Json::parse(R"({"name":"B\u00fcro/A%2F100%25/1301/1","document":"1301","version":"1"})"));
  for (const char* const field : {"17", "1:x=t", "1:7", "=1:7"}) {
    EXPECT_EQ(archive.Run({"create", "M/A", "--title", "t", "--field", field}).status, 2) << field;
  }
  EXPECT_THAT(archive.Run({"create", "M", "A", "--title", "t", "--field", "1:7=\u4E2D"}).err,
              HasSubstr("Windows-1252"));
  EXPECT_EQ(archive.Commands().size(), 2U);
}

TEST(CreateCommand, LeavesNothingWhenTheServerRefuses) {
  ScriptedArchive archive({{"CreateDocument", ScriptedArchive::Error("No rights")}});
  EXPECT_EQ(archive.Run({"create", "M/A", "--title", "t"}).err, "oxaqry: No rights\n");
  EXPECT_THAT(NamesIn(archive.blobs.path()), IsEmpty());
}

TEST(EditCommand, KeepsTheTitleUnlessOneIsGiven) {
  Importing importing;
  ScriptedArchive archive(importing.Replies("7,3"));
  const std::vector<std::string> edit{"edit", "Mail/Inbox/7/2", "--field-file", "1:7=-"};
  EXPECT_EQ(archive.Run(edit, "text").out, "New version Mail/Inbox/7/3\n");
  EXPECT_THAT(importing.content, HasSubstr("@FOLDER,FT:Oak shelves,1:7\r\n"));
  EXPECT_EQ(archive.Run(Joined(edit, {"--title", "New"}), "text").status, 0);
  EXPECT_THAT(importing.content, HasSubstr("@FOLDER,FT:New,1:7\r\n"));
  EXPECT_EQ(archive.Commands().back(), "EditDocument|" + importing.path + "|7,2");
  EXPECT_THAT(NamesIn(archive.blobs.path()), IsEmpty());
}

TEST(DeleteCommand, AsksOnATerminal) {
  for (const char* const input : {"y\n", "n\n", "\n", ""}) {
    SCOPED_TRACE(input);
    const bool isDeleted = *input == 'y';
    ScriptedArchive archive(
        {{"DeleteDocument", ScriptedArchive::Lines({})}, {"DeleteNotes", ScriptedArchive::Lines({})}});
    const ToolRun one = archive.Run({"delete", "Mail/Inbox/7/2"}, input, {.in = true});
    const ToolRun notes = archive.Run({"note", "delete", "Mail/Inbox/7"}, input, {.in = true});
    EXPECT_EQ(one.status, isDeleted ? 0 : 1);
    EXPECT_EQ(notes.status, isDeleted ? 0 : 1);
    EXPECT_THAT(one.err, HasSubstr("Delete Mail/Inbox/7/2? [y/N]"));
    const std::vector<std::string> commands{"DeleteDocument|Mail|Inbox|7|2", "DeleteNotes|Mail|Inbox|7|"};
    EXPECT_EQ(archive.Commands(), isDeleted ? commands : std::vector<std::string>{});
  }
}

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

TEST(PrintCommand, PrintsTheHitsInTheOrderThatWasAskedFor) {
  for (const std::vector<std::string>& amounts :
       {std::vector<std::string>{"9", "10"}, {"10", "9"}, {"9", "9"}, {"10", "11", "9"}}) {
    ScriptedArchive archive(
        {{"QueryArchive", Amounts(amounts)}, {"PrintHitlistPDF", ScriptedArchive::Puts("hits.pdf", "x")}});
    const auto printed = [&](const std::string& order) {
      EXPECT_EQ(archive.Run({"print-hits", "x", "-o", "-", "--sort", order}).out, "x");
      std::vector<int> sent;
      for (const std::string& line : SplitText(archive.Commands().back(), "\r\n")) {
        const std::vector<std::string> fields = SplitText(line, "|");
        if (line.starts_with("^$(#Mail)")) sent.push_back(std::stoi(fields.at(4)));
      }
      return sent;
    };
    std::vector<int> sorted;
    for (const std::string& amount : amounts) sorted.push_back(std::stoi(amount));
    std::ranges::sort(sorted);
    EXPECT_EQ(printed("2"), sorted);
    std::ranges::reverse(sorted);
    EXPECT_EQ(printed("2:desc"), sorted);
  }
}

TEST(SearchCommand, FindsTheColumnByTitleOrNumber) {
  ScriptedArchive archive({{"QueryArchive", Amounts({"2", "3,5", "1"})}});
  EXPECT_THAT(Shown(archive, "Betr\u00E4ge"), ElementsAre("2", "0", "1"));
  EXPECT_THAT(Shown(archive, "BETR\u00C4GE:desc"), ElementsAre("1", "0", "2"));
  EXPECT_THAT(Shown(archive, "1"), ElementsAre("0", "1", "2"));
  EXPECT_THAT(archive.Run({"search", "x", "--sort", "2"}).out, HasSubstr("Mail/Inbox/2/1  T "));
  EXPECT_EQ(archive.Commands().back(), "QueryArchive|x|100|1000||||");
  const Json list = Json::parse(archive.Run({"search", "x", "--json"}).out, nullptr, false);
  EXPECT_EQ(list["hits"][1]["values"], Json::parse(R"json({"Title":"T","Betr\u00e4ge":3.5,"Title (3)":"T"})json"));
}

TEST(SearchCommand, NamesTheColumnsWhenItCannotSort) {
  ScriptedArchive archive({{"QueryArchive", Amounts({})}});
  ScriptedArchive empty({{"QueryArchive", ScriptedArchive::Lines({"0", "", "0", "^0^"})}});
  const std::string columns = "; the columns are 1 Title, 2 Betr\u00E4ge, 3 Title\n";
  for (const char* const order : {"Price", "0", "4", "-1", "99999999999999999999", "Betr\u00E4ge:asc", "\u0416"}) {
    const ToolRun run = archive.Run({"search", "x", "--sort", order});
    EXPECT_EQ(run.status, 1) << order;
    EXPECT_THAT(run.out, IsEmpty());
    EXPECT_THAT(run.err, HasSubstr(columns)) << order;
  }
  EXPECT_EQ(archive.Run({"search", "x", "--sort", ":desc"}).status, 2);
  EXPECT_THAT(archive.Run({"search", "x", "--sort", "title"}).err,
              HasSubstr("several columns \"title\": give the number of one" + columns));
  EXPECT_THAT(empty.Run({"search", "x", "--sort", "Price"}).out, HasSubstr("Showing 0 of 0 hits"));
}

TEST(SearchCommand, FindsNothingWithRightsToNothing) {
  ScriptedArchive archive({{"QueryArchive", Amounts({"1"})}});
  EXPECT_EQ(archive.Run({"search", "x", "--rights", ""}).out, "Showing 0 of 0 hits\n");
  EXPECT_THAT(archive.Commands(), IsEmpty());
}

}  // namespace
}  // namespace oxaqrycln::oxaqry
