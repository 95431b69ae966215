#include "tools/oxaqry/command_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "automation/method_table.h"
#include "tests/tools/oxaqry/run_oxaqry.h"
#include "tools/oxaqry/value_json.h"

namespace oxaqrycln {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class CommandLineTest : public ::testing::Test {
 protected:
  void SetUp() override {
    const auto* const test = ::testing::UnitTest::GetInstance()->current_test_info();
    directory_ = fs::path(::testing::TempDir()) / (std::string("oxaqry_") + test->name());
    fs::remove_all(directory_);
    fs::create_directories(directory_);
  }
  void TearDown() override { fs::remove_all(directory_); }

  std::string Directory(const std::string& name) {
    fs::create_directories(directory_ / name);
    return (directory_ / name).string();
  }
  std::string File(const std::string& name, const std::string& text) {
    std::ofstream(directory_ / name, std::ios::binary) << text;
    return (directory_ / name).string();
  }

  fs::path directory_;
};

TEST_F(CommandLineTest, TakesOptionsBeforeTheEnvironmentBeforeTheConfiguration) {
  const std::string fromFile = Directory("file");
  const std::string fromEnvironment = Directory("environment");
  const std::string fromOption = Directory("option");
  const std::string config = File("config.json", Json{{"strBlobPathLocal", fromFile}}.dump());
  struct Case {
    const char* name;
    std::vector<std::string> arguments;
    std::map<std::string, std::string> environment;
    std::string directory;
  };
  const std::vector<Case> cases{
      {"file by option", {"--config", config}, {}, fromFile},
      {"file by environment", {}, {{"OXAQRY_CONFIG", config}}, fromFile},
      {"environment over file", {"--config", config}, {{"OXAQRY_BLOB_LOCAL", fromEnvironment}}, fromEnvironment},
      {"option over both",
       {"--blob-local", fromOption, "--config", config},
       {{"OXAQRY_BLOB_LOCAL", fromEnvironment}},
       fromOption},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.name);
    std::vector<std::string> arguments{"write-test", "--json"};
    arguments.insert(arguments.end(), test.arguments.begin(), test.arguments.end());
    const ToolRun run = RunOxaqry(arguments, test.environment);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(Json::parse(run.out, nullptr, false), (Json{{"directory", test.directory}, {"writable", true}}));
  }
}

TEST_F(CommandLineTest, TellsWhatIsWrongWithASetting) {
  struct Case {
    const char* name;
    std::string config;
    std::vector<std::string> arguments;
    const char* message;
    int status = 1;  // 2 for what is wrong with an option itself
  };
  const std::vector<Case> cases{
      {"no servers", "{}", {}, "no query servers are set: give --hosts"},
      {"no JSON", "{", {}, "must be one JSON object"},
      {"unknown name", R"({"strSessionId":"x"})", {}, "unknown setting \"strSessionId\""},
      {"wrong type", R"({"strUserName":[1]})", {}, "\"strUserName\" in the configuration file"},
      {"number for a text", R"({"strUserName":1})", {}, "must be a text"},
      {"no number", R"({"lngRequestTimeout":"soon"})", {}, "must be a whole number"},
      {"negative time-out", "{}", {"--timeout=-1"}, "--timeout must be a whole number from 0", 2},
      {"fraction", "{}", {"--timeout=0.4"}, "--timeout must be a whole number", 2},
      {"password not encoded", "{}", {"--hosts", "h,1,0,u,XX"}, "password of the query server \"h\" is not encoded"},
      {"no date", "{}", {"--login-time", "now"}, "--login-time must be a date", 2},
      {"outside the code page", "{}", {"--user", "中"}, "--user: a text holds a character", 2},
      {"no port", R"({"RemoteHosts":"h"})", {}, "\"h\" needs a port"},
      {"port too large", "{}", {"--hosts", "a,1|b,65536"}, "\"b\" needs a port"},
      {"no password file", "{}", {"--password-file", "/nonexistent/x"}, "cannot read the password file"},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.name);
    std::vector<std::string> arguments{"channels", "--config", File("config.json", test.config)};
    arguments.insert(arguments.end(), test.arguments.begin(), test.arguments.end());
    const ToolRun run = RunOxaqry(arguments);
    EXPECT_EQ(run.status, test.status);
    EXPECT_THAT(run.err, StartsWith("oxaqry: "));
    EXPECT_THAT(run.err, HasSubstr(test.message));
    EXPECT_THAT(run.out, IsEmpty());
  }
}

TEST_F(CommandLineTest, TellsWrongUsageFromFailure) {
  struct Case {
    const char* name;
    std::vector<std::string> arguments;
    const char* message;
  };
  const std::vector<Case> cases{
      {"no command", {}, "subcommand"},
      {"unknown command", {"chanels"}, "unknown command \"chanels\""},
      {"unknown option", {"channels", "--jsn"}, "--jsn"},
      {"unknown option alone", {"--jsn"}, "unknown option \"--jsn\""},
      {"argument missing", {"formats", "Mail"}, "ARCHIVE"},
      {"argument too many", {"live", "now"}, "now"},
      {"no document", {"show", "Mail/Inbox"}, "CHANNEL/ARCHIVE/DOCUMENT[/VERSION]"},
      {"empty part of a document", {"delete", "Mail//1", "--yes"}, "CHANNEL/ARCHIVE/DOCUMENT[/VERSION]"},
      {"a group alone", {"note"}, "subcommand"},
      {"two contents", {"fetch", "a/b/1", "--segment", "1", "--pages", "1"}, "--pages"},
      {"no pages", {"fetch", "a/b/1", "--pages", "1,2"}, "1;4-6"},
      {"page 0", {"fetch", "a/b/1", "--pages", "0"}, "1;4-6"},
      {"too many pages", {"fetch", "a/b/1", "--pages", "1-2000000"}, "too many"},
      {"size in octal", {"transfer", "x", "--size", "010"}, "no whole number"},
      {"size missing", {"transfer", "x"}, "--size"},
      {"size too large", {"transfer", "x", "--size", "2147483648"}, "--size"},
      {"contents missing", {"create", "--channel", "a", "--archive", "b", "--title", "t"}, "--contents"},
      {"nobody to ask", {"delete", "Mail/Inbox/1"}, "give --yes"},
      {"nobody to ask about notes", {"note", "delete", "Mail/Inbox/1"}, "give --yes"},
      {"no number", {"search", "x", "--max", "few"}, "--max"},
      {"negative", {"search", "x", "--query-max=-2"}, "--query-max"},
      {"both lists", {"archives", "--all", "--ext"}, "--all"},
      {"two passwords", {"live", "--password-stdin", "--password-file", "x"}, "--password"},
      {"the password as an argument", {"live", "--password", "x"}, "--password"},
      {"settings for a session", {"session", "--user", "x"}, "--user"},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.name);
    const ToolRun run = RunOxaqry(test.arguments);
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err, StartsWith("oxaqry: "));
    EXPECT_THAT(run.err, HasSubstr(test.message));
    EXPECT_THAT(run.out, IsEmpty());
  }
}

TEST_F(CommandLineTest, HelpsWithExamplesEverywhere) {
  EXPECT_THAT(RunOxaqry({"--version"}).out, testing::MatchesRegex("oxaqry [0-9]+\\.[0-9]+\\.[0-9]+\n"));
  for (const CommandWords& words : AllCommandWords()) {
    SCOPED_TRACE(words.command);
    const std::size_t blank = words.command.find(' ');
    const bool isInGroup = blank != std::string::npos;
    const std::string group = isInGroup ? words.command.substr(0, blank) : "";
    const std::string name = words.command.substr(isInGroup ? blank + 1 : 0);
    const std::vector<std::string> path = isInGroup ? std::vector{group, name} : std::vector{name};
    const auto help = [](std::vector<std::string> arguments) {
      arguments.emplace_back("--help");
      return RunOxaqry(arguments);
    };
    EXPECT_EQ(help(path).status, 0);
    EXPECT_THAT(help(path).out, HasSubstr("\n  oxaqry " + words.command)) << "an example";
    EXPECT_THAT(help({path.begin(), path.end() - 1}).out, HasSubstr("\n  " + name + " "));
  }
}

TEST_F(CommandLineTest, JudgesAWriteTestByItsLog) {
  const std::string logs = Directory("logs");
  const std::string blobs = Directory("blobs");
  const auto write = [&](const std::string& blobDirectory, const std::string& session) {
    return RunOxaqry({"write-test", "--blob-local", blobDirectory, "--log-dir", logs, "--session", session});
  };
  const ToolRun failed = write(blobs + "/none", "s");
  EXPECT_EQ(failed.status, 1);
  EXPECT_THAT(failed.err, HasSubstr("76 - Path not found"));
  // The error of the run before stands in the same log.
  EXPECT_EQ(write(blobs, "s").status, 0);
  EXPECT_TRUE(fs::is_empty(blobs));
  EXPECT_THAT(write(blobs, "../s").err, HasSubstr("wrote no log"));
}

TEST_F(CommandLineTest, RunsASessionOnItsInput) {
  const ToolRun run = RunOxaqry({"session"}, {}, "{\"call\":\"HelloWorld\"}\n");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "{\"result\":\"Hello World!\",\"type\":\"String\",\"refs\":[]}\n");
}

TEST_F(CommandLineTest, ListsTheMethodsInTwoForms) {
  EXPECT_THAT(RunOxaqry({"methods"}).out, HasSubstr("\n  WriteLog(strLogLine, [bytLogType])\n      Writes "));
  const Json document = Json::parse(RunOxaqry({"methods", "--json"}).out, nullptr, false);
  ASSERT_TRUE(document.is_object());
  const VariableEntry& timeout = PublicVariables().front();
  EXPECT_EQ(document["variables"][0], (Json{{"name", "lngRequestTimeout"},
                                            {"number", timeout.number},
                                            {"group", "Settings"},
                                            {"type", "Long"},
                                            {"documentation", timeout.documentation}}));
  const MethodEntry& init = PublicMethods().front();
  EXPECT_EQ(document["methods"][0],
            (Json{{"name", "Init"},
                  {"number", init.number},
                  {"group", "Life cycle"},
                  {"property", false},
                  {"parameters", Json::parse(R"([{"name":"blnParamDBInit","kind":"optional in"}])")},
                  {"result", "Boolean"},
                  {"documentation", init.documentation}}));
}

}  // namespace
}  // namespace oxaqrycln
