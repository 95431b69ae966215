#include "tools/oxaqry/command_line.h"

#include <tuple>

#include "tests/tools/oxaqry/run_oxaqry.h"
#include "tools/oxaqry/cli/text.h"

namespace oxaqrycln::oxaqry {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

TEST(CommandLine, PrefersOptionsToTheEnvironmentAndThatToTheConfigurationFile) {
  const testing::TemporaryDirectory ofFile;
  const testing::TemporaryDirectory ofEnvironment;
  const testing::TemporaryDirectory ofOption;
  ofFile.Write("config.json", Json{{"strBlobPathLocal", ofFile.path()}}.dump());
  const std::string config = ofFile.File("config.json");
  const std::map<std::string, std::string> variable{{"OXAQRY_BLOB_LOCAL", ofEnvironment.path()}};
  const std::tuple<const char*, std::vector<std::string>, std::map<std::string, std::string>, std::string> cases[] = {
      {"file by option", {"--config", config}, {}, ofFile.path()},
      {"file by environment", {}, {{"OXAQRY_CONFIG", config}}, ofFile.path()},
      {"environment over file", {"--config", config}, variable, ofEnvironment.path()},
      {"option over both", {"--blob-local", ofOption.path(), "--config", config}, variable, ofOption.path()},
  };
  for (const auto& [name, options, environment, directory] : cases) {
    SCOPED_TRACE(name);
    const ToolRun run = RunOxaqry(Joined({"write-test", "--json"}, options), environment);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(Json::parse(run.out, nullptr, false), (Json{{"directory", directory}, {"writable", true}}));
  }
}

TEST(CommandLine, ReportsAWrongSetting) {
  const testing::TemporaryDirectory directory;
  const std::tuple<const char*, const char*, std::vector<std::string>, const char*> cases[] = {
      {"no servers", "{}", {}, "no query servers are set: give --hosts"},
      {"no JSON", "{", {}, "config.json\", line 1, column 2, must be one JSON object"},
      {"no closing quote", "{\n \"strTELOPwd\": \"Geh3im\n}", {}, "line 2, column 23, must be one JSON object"},
      {"unknown name",
       R"({"strSessionId":"x"})",
       {},
       "line 1, column 2, holds the unknown setting \"strSessionId\"; did you mean \"strSessionID\"?"},
      {"wrong type", R"({"strUserName":[1]})", {}, "\"strUserName\" in the configuration file"},
      {"no number", R"({"lngRequestTimeout":"soon"})", {}, "must be a whole number of seconds"},
      {"no date", R"({"datUserLoginTime":"now"})", {}, "must be a date like 2026-11-15T20:31:07"},
      {"no password",
       "{}",
       {"--hosts", "h,1", "--user", "web"},
       "account \"web\" has no password: give --password-file"},
      {"no such host", R"({"RemoteHosts":"no..such,1"})", {}, "there is no host \"no..such\""},
      {"password not encoded", "{}", {"--hosts", "h,1,0,u,XX"}, "password of the query server \"h\" is not encoded"},
      {"no port", R"({"RemoteHosts":"h"})", {}, "\"h\" needs a port"},
      {"port too large", "{}", {"--hosts", "a,1|b,65536"}, "\"b\" needs a port"},
      {"no password file", "{}", {"--password-file", "/nonexistent/x"}, "cannot read the password file"},
  };
  for (const auto& [name, config, options, message] : cases) {
    SCOPED_TRACE(name);
    directory.Write("config.json", config);
    const ToolRun run = RunOxaqry(Joined({"channels", "--config", directory.File("config.json")}, options));
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, StartsWith("oxaqry: "));
    EXPECT_THAT(run.err, HasSubstr(message));
    EXPECT_THAT(run.err, ::testing::Not(HasSubstr("Geh3im")));
    EXPECT_THAT(run.out, IsEmpty());
  }
}

TEST(CommandLine, ReportsErrorsAndWarningsAsJsonOnRequest) {
  const ToolRun failed = RunOxaqry({"channels", "--json", "--hosts", "127.0.0.1,1", "--log-dir", "/nonexistent/logs"});
  const std::vector<std::string> lines = SplitText(failed.err, "\n");
  ASSERT_EQ(lines.size(), 3U) << failed.err;
  EXPECT_THAT(Json::parse(lines[0], nullptr, false)["warning"].get<std::string>(),
              StartsWith("no log is kept: cannot write into \"/nonexistent/logs\""));
  const Json error = Json::parse(lines[1], nullptr, false);
  EXPECT_THAT(error["error"].get<std::string>(), StartsWith("the query servers did not answer"));
  EXPECT_EQ(error["kind"], "connectionFailed");
  EXPECT_EQ(error["attempts"][0]["port"], 1);
  EXPECT_EQ(error["status"], 1);
  const Json usage{{"error", "unknown option \"--jsno\"; did you mean \"--json\"?"}, {"kind", "usage"}, {"status", 2}};
  EXPECT_EQ(Json::parse(RunOxaqry({"channels", "--jsno", "--json"}).err, nullptr, false), usage);
}

TEST(CommandLine, ReportsWrongUsageWithAStatusOfItsOwn) {
  const std::tuple<const char*, std::vector<std::string>, const char*> cases[] = {
      {"no command", {}, "oxaqry needs one of these commands:\n  live "},
      {"unknown command", {"chanels"}, "unknown command \"chanels\"; did you mean \"channels\"?"},
      {"unknown command of a group", {"orders", "lsit"}, "unknown command \"orders lsit\"; did you mean \"list\"?"},
      {"nothing like it", {"frobnicate"}, "unknown command \"frobnicate\"\n"},
      {"unknown option", {"show", "--querry=x"}, "unknown option \"--querry\"; did you mean \"--query\"?"},
      {"argument too many", {"show", "a/b/1", "more"}, "unexpected argument \"more\""},
      {"help for nothing", {"help", "note", "ad"}, "unknown command \"note ad\"; did you mean \"add\"?"},
      {"no document", {"show", "Mail/Inbox"}, "CHANNEL/ARCHIVE/DOCUMENT[/VERSION]"},
      {"empty part of a document", {"delete", "Mail//1", "--yes"}, "CHANNEL/ARCHIVE/DOCUMENT[/VERSION]"},
      {"empty version", {"delete", "a/b/1/", "--yes"}, "CHANNEL/ARCHIVE/DOCUMENT[/VERSION]"},
      {"document of five parts", {"show", "a/b/1/2/3"}, "CHANNEL/ARCHIVE/DOCUMENT[/VERSION]"},
      {"a group alone", {"note"}, "\"note\" needs one of these commands:\n  add "},
      {"two contents", {"fetch", "a/b/1", "--segment", "1", "--pages", "1"}, "--pages"},
      {"no pages", {"fetch", "a/b/1", "--pages", "1,2"}, "1;4-6"},
      {"size in octal", {"transfer", "x", "--size", "010"}, "--size: \"010\" is no number"},
      {"no terminal to ask on", {"delete", "Mail/Inbox/1"}, "give --yes"},
      {"no number", {"search", "x", "--max", "few"}, "--max: \"few\" is no number from 0 to 2147483647"},
      {"octal", {"search", "x", "--max", "010"}, "--max: \"010\" is no number"},
      {"negative", {"search", "x", "--query-max=-2"}, "--query-max"},
      {"negative time-out", {"channels", "--timeout=-1"}, "--timeout must be a whole number of seconds from 1"},
      {"outside the code page", {"channels", "--user", "中"}, "--user: a text holds a character"},
      {"two passwords", {"live", "--password-stdin", "--password-file", "x"}, "--password"},
      {"the password as an argument", {"live", "--password", "x"}, "--password"},
      {"settings for a session", {"session", "--user", "x"}, "--user"},
  };
  for (const auto& [name, arguments, message] : cases) {
    SCOPED_TRACE(name);
    const ToolRun run = RunOxaqry(arguments);
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err, StartsWith("oxaqry: "));
    EXPECT_THAT(run.err, HasSubstr(message));
    EXPECT_THAT(run.out, IsEmpty());
  }
}

void ExpectHelp(const CLI::App& app, const std::string& path) {
  for (const CLI::App* const command : app.get_subcommands([](const CLI::App*) { return true; })) {
    const std::string words = path + command->get_name();
    const ToolRun help = RunOxaqry(SplitText(words + " --help", " "));
    EXPECT_EQ(help.status, 0) << words;
    EXPECT_THAT(help.out, HasSubstr("\n  oxaqry " + words)) << "an example";
    ExpectHelp(*command, words + " ");
  }
}

TEST(CommandLine, ShowsHelpWithExamplesForEveryCommand) {
  EXPECT_THAT(RunOxaqry({"--version"}).out, ::testing::MatchesRegex("oxaqry [0-9]+\\.[0-9]+\\.[0-9]+\n"));
  EXPECT_EQ(RunOxaqry({"help", "user", "add"}).out, RunOxaqry({"user", "add", "--help"}).out);
  EXPECT_EQ(RunOxaqry({"help"}).out, RunOxaqry({"--help"}).out);
  std::stringstream stream;
  CommandParser parser({stream, stream, stream, [](const char*) -> const char* { return nullptr; }});
  AddAllCommands(parser);
  ExpectHelp(parser.app(), "");
}

TEST(CommandLine, ReportsTheErrorOfAWriteTest) {
  const ToolRun failed = RunOxaqry({"write-test", "--blob-local", "/nonexistent"});
  EXPECT_EQ(failed.status, 1);
  EXPECT_THAT(failed.err, HasSubstr("76 - Path not found"));
}

TEST(CommandLine, RunsASessionOnItsInput) {
  const ToolRun run = RunOxaqry({"session"}, {}, "{\"call\":\"HelloWorld\"}\n");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "{\"result\":\"Hello World!\",\"type\":\"String\",\"refs\":[]}\n");
}

TEST(CommandLine, ListsTheMethodsInTwoForms) {
  EXPECT_THAT(RunOxaqry({"methods"}).out, HasSubstr("\n  WriteLog(strLogLine, [bytLogType])\n      Writes "));
  Json document = Json::parse(RunOxaqry({"methods", "--json"}).out, nullptr, false);
  EXPECT_EQ(document["variables"][0]["name"], "lngRequestTimeout");
  EXPECT_EQ(document["methods"][0]["name"], "Init");
  EXPECT_EQ(document["methods"][0]["parameters"], Json::parse(R"([{"name":"blnParamDBInit","kind":"optional in"}])"));
}

}  // namespace
}  // namespace oxaqrycln::oxaqry
