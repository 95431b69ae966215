// The commands that need a query server, against the development archive server.

#include <string_view>

#include "tests/tools/devserver/wire_client.h"
#include "tests/tools/oxaqry/run_oxaqry.h"
#include "tools/devserver/archive/sample_archive.h"
#include "tools/oxaqry/cli/text.h"

namespace oxaqrycln::oxaqry {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

// A server of the whole sample archive, and oxaqry with an account and the blob directory of it.
class SampleServer : public devserver::RunningServer {
 public:
  explicit SampleServer(const std::string& misbehaviour = "none")
      : RunningServer({}, misbehaviour, devserver::kSampleDocumentCount) {}

  std::string Entry() const { return "127.0.0.1," + std::to_string(port()); }
  ToolRun Command(const std::vector<std::string>& arguments, const std::string& input = "") const {
    return RunOxaqry(arguments,
                     {{"OXAQRY_REMOTE_HOSTS", Entry()},
                      {"OXAQRY_USER", "webuser"},
                      {"OXAQRY_PASSWORD", "secret"},
                      {"OXAQRY_BLOB_LOCAL", BlobPath("").parent_path()},
                      {"OXAQRY_TIMEOUT", "10"}},
                     input);
  }
  Json Document(const std::vector<std::string>& arguments, const std::string& input = "") const {
    return JsonOf(Command(arguments, input));
  }
};

// A port that nothing listens on.
std::string DeadEntry() { return SampleServer().Entry(); }

TEST(Commands, ListWhatTheServerOffers) {
  const SampleServer server;
  EXPECT_THAT(server.Command({"live"}).out, HasSubstr("alive"));
  EXPECT_THAT(server.Command({"channels"}).out, StartsWith("Channel   Description\n--------  ---"));
  EXPECT_EQ(server.Document({"channels", "--json"})["channels"][0],
            (Json{{"channel", "Büro"}, {"description", "Protokolle, Aushänge"}}));
  EXPECT_EQ(server.Document({"archives", "--json"})["archives"][1],
            (Json{{"name", "Mail/Outbox"}, {"channel", "Mail"}, {"archive", "Outbox"}, {"comment", "Letters sent"}}));
  EXPECT_THAT(server.Command({"archives"}).out, HasSubstr("\nTechnik/Prüfberichte  Test reports\n"));
  EXPECT_THAT(server.Document({"formats", "Mail", "Inbox", "--json"})["formats"], ::testing::Contains("Full text"));
  EXPECT_EQ(server.Document({"properties", "Technik/Prüfberichte", "--json"})["create"], true);
  EXPECT_EQ(server.Document({"direct", "^GetArchiveProperties^,^Mail^,^Inbox^", "--json"})["lines"].size(), 1U);
}

TEST(Commands, FindDocumentsByTheNodesOfTheSampleOutliners) {
  const SampleServer server;
  const testing::TemporaryDirectory directory;
  const std::map<std::string, std::string> database{
      {"OXAQRY_DATABASE", "Driver=SQLite3;Database=" + directory.File("users.sqlite")}};
  ASSERT_EQ(RunOxaqry({"user", "init", "--sample"}, database).status, 0);
  for (const char* const node : {"1", "3", "5"}) {
    const ToolRun expression = RunOxaqry({"outline", "--expression", node}, database);
    const Json list = server.Document({"search", expression.out.substr(0, expression.out.find('\n')), "--json"});
    EXPECT_THAT(list["hits"], ::testing::Not(IsEmpty())) << expression.out << expression.err;
  }
}

TEST(Commands, ShowAHitListWithItsTitles) {
  const SampleServer server;
  const ToolRun table = server.Command({"search", "invoice", "--max", "3"});
  EXPECT_THAT(table.out, ::testing::ContainsRegex("^Document +Title +Author +Date\n-"));
  EXPECT_THAT(table.out, HasSubstr("\nShowing 3 of 30 hits\n"));

  const Json list = server.Document({"search", "invoice", "--max", "2", "--json"});
  EXPECT_EQ(list["totalHits"], 30);
  EXPECT_EQ(list["columns"], (Json{"Title", "Author", "Date"}));
  ASSERT_EQ(list["hits"].size(), 2U);
  for (const Json& hit : list["hits"]) {
    EXPECT_EQ(hit["channel"], "Finance");
    // The name can be used unchanged.
    EXPECT_EQ(server.Document({"show", hit["name"].get<std::string>(), "--json"})["title"], hit["values"]["Title"]);
    EXPECT_THAT(hit["values"]["Date"].get<std::string>(), ::testing::MatchesRegex("20..-..-.."));
  }
  EXPECT_THAT(server.Command({"search", "invoice", "--query-max", "10"}).err, HasSubstr("(--query-max sets"));
  EXPECT_EQ(server.Document({"search", "nosuchwordanywhere", "--json"})["hits"], Json::array());
}

TEST(Commands, FailWithTheServersOwnText) {
  const SampleServer server;
  for (const std::string_view command :
       {"channels --user nobody", "live --user nobody", "direct ^NoSuchCommand^", "search (", "formats No Archive",
        "masks No/Archive", "show Mail/Inbox/1", "fetch Mail/Inbox/1", "delete Mail/Inbox/1 --yes",
        "note list Mail/Inbox/1", "orders list nofield:x", "orders set FA-9999 open", "orders tiff FA-9999",
        "print-hits (", "transfer none --size 1", "properties No Archive"}) {
    SCOPED_TRACE(command);
    const ToolRun run = server.Command(SplitText(command, " "));
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, IsEmpty());
    EXPECT_THAT(run.err, ::testing::MatchesRegex("oxaqry: ....+\n"));
  }
}

TEST(Commands, TakeThePasswordFromAFileOrFromInput) {
  const SampleServer server;
  const auto channels = [&](const std::vector<std::string>& options, const std::string& input) {
    return RunOxaqry(Joined({"channels", "--hosts", server.Entry(), "--user", "webuser"}, options),
                     {{"OXAQRY_PASSWORD", "wrong"}}, input)
        .status;
  };
  const testing::TemporaryDirectory directory;
  directory.Write("password", "secret\r\nsecond line\n");
  EXPECT_EQ(channels({}, ""), 1);
  EXPECT_EQ(channels({"--password-stdin"}, "secret\n"), 0);
  EXPECT_EQ(channels({"--password-file", directory.File("password")}, ""), 0);
}

TEST(Commands, ShowTheStateOfEveryServer) {
  const SampleServer sound;
  const SampleServer silent("silent");
  const std::string list = sound.Entry() + "|" + DeadEntry() + "|" + silent.Entry();
  const ToolRun run = RunOxaqry({"servers", "--json", "--hosts", list, "--timeout", "1"},
                                {{"OXAQRY_USER", "webuser"}, {"OXAQRY_PASSWORD", "secret"}});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(Json::parse(run.err, nullptr, false)["error"].get<std::string>(),
              StartsWith("2 of 3 query servers failed the check"));
  const Json document = Json::parse(run.out, nullptr, false);
  ASSERT_EQ(document["servers"].size(), 3U);
  EXPECT_THAT(document["servers"][0]["answer"].get<std::string>(), HasSubstr("alive"));
  EXPECT_THAT(document["servers"][1]["error"].get<std::string>(), StartsWith("no connection"));
  EXPECT_THAT(document["servers"][2]["error"].get<std::string>(), StartsWith("Timeout of 1 second"));

  const ToolRun one = sound.Command({"servers"});
  EXPECT_EQ(one.status, 0);
  EXPECT_THAT(one.out, ::testing::ContainsRegex("\n1  127.0.0.1 +[0-9]+ +answers +[0-9]+ ms +.*alive"));
}

TEST(Commands, NameTheServersThatWereTried) {
  const SampleServer silent("silent");
  const SampleServer sound;
  const auto address = [](std::string entry) { return entry.replace(entry.find(','), 1, ":"); };
  const std::string dead = DeadEntry();
  EXPECT_THAT(RunOxaqry({"channels", "--hosts", dead}).err,
              ::testing::MatchesRegex("oxaqry: the query servers did not answer: .*; tried " + address(dead) +
                                      " .10061 - .*, [0-9.]+ s.\n"));
  const ToolRun late = RunOxaqry({"channels", "--hosts", silent.Entry(), "--timeout", "1"});
  EXPECT_THAT(late.err, HasSubstr("did not answer: Timeout of 1 second"));
  EXPECT_THAT(late.err, HasSubstr("; tried " + address(silent.Entry()) + " (no answer, "));
  const ToolRun run = sound.Command({"channels", "--verbose", "--hosts", dead + "|" + sound.Entry()});
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.err, ::testing::MatchesRegex("oxaqry: " + address(dead) + ": 10061 - .*, [0-9]+ ms\noxaqry: " +
                                               address(sound.Entry()) + ": answered, [0-9]+ ms\n"));
}

TEST(Commands, TakeADocumentThroughItsLife) {
  const SampleServer server;
  const testing::TemporaryDirectory work;
  std::string scan(300000, '\0');
  for (std::size_t i = 0; i < scan.size(); ++i) scan[i] = static_cast<char>(i * i >> 3U);
  work.Write("scan.bin", scan);
  EXPECT_EQ(server.Command({"upload", work.File("scan.bin")}).status, 0);
  EXPECT_EQ(server.Command({"transfer", "scan.bin", "--size", "299999", "-o", work.File("wrong")}).status, 1);
  EXPECT_FALSE(work.Has("wrong"));

  const Json created = server.Document({"create", "Finance/Orders", "--title", "Grüße", "--field", "1:16=Zwölf Regale",
                                        "--field", "3:30=scan.bin", "--json"});
  const std::string first = created["name"].get<std::string>();
  EXPECT_EQ(server.Command({"fetch", first, "--first", "bin", "-o", work.File("fetched.bin")}).status, 0);
  EXPECT_EQ(work.Read("fetched.bin"), scan);

  EXPECT_EQ(server.Command({"note", "add", first, "-"}, "one,\ntwo").status, 0);
  const std::string second =
      server.Document({"edit", first, "--field-file", "1:16=-", "--json"}, "Zehn Regale")["name"];
  EXPECT_NE(second, first);
  const Json shown = server.Document(
      {"show", first.substr(0, first.rfind('/')), "--query", "regale", "--mark-on", "<", "--mark-off", ">", "--json"});
  EXPECT_EQ(shown["name"], second);
  EXPECT_EQ(shown["title"], "Grüße");
  EXPECT_EQ(shown["segments"][0]["text"], "Zehn <Regale>");
  EXPECT_EQ(shown["notes"][0]["author"], "webuser");
  EXPECT_EQ(shown["notes"][0]["text"], "one,\ntwo");

  EXPECT_EQ(server.Command({"note", "delete", second, "--yes"}).status, 0);
  EXPECT_EQ(server.Document({"note", "list", second, "--json"})["notes"], Json::array());
  EXPECT_EQ(server.Command({"delete", second, "--yes"}).status, 0);
  EXPECT_EQ(server.Command({"show", second}).status, 1);
  EXPECT_EQ(server.Document({"show", first, "--json"})["segments"][0]["text"], "Zwölf Regale");
}

}  // namespace
}  // namespace oxaqrycln::oxaqry
