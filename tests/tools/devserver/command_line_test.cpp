// The server program from its arguments to its exit status.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <string>

#include "component/version.h"

namespace oxaqrycln::devserver {
namespace {

struct Outcome {
  int status;
  std::string text;  // of standard output and standard error
};

Outcome RunServer(const std::string& arguments) {
  FILE* const program = popen(("'" DEVSERVER_PROGRAM "' " + arguments + " 2>&1").c_str(), "r");
  std::string text;
  for (int c = fgetc(program); c != EOF; c = fgetc(program)) text += static_cast<char>(c);
  return {WEXITSTATUS(pclose(program)), text};
}

TEST(CommandLine, ExplainsWrongUsage) {
  struct Case {
    const char* arguments;
    const char* reason;
  };
  for (const Case& each : {Case{"--prot 1", "unknown option \"--prot\""}, Case{"2001", "unexpected argument \"2001\""},
                           Case{"--port abc", "--port: \"abc\" is no number from 0 to 65535"},
                           Case{"--documents -1", "--documents: \"-1\" is no number from 0 to 1000000"},
                           Case{"--account anna", "--account: account 'anna' is not of the form USER:PASSWORD"},
                           Case{"--listen localhost", "--listen: 'localhost' is not a numeric address to listen on"},
                           Case{"--misbehave badly", "--misbehave: "}}) {
    const Outcome outcome = RunServer(each.arguments);
    EXPECT_EQ(outcome.status, 2) << each.arguments;
    EXPECT_THAT(outcome.text, ::testing::StartsWith(std::string("devserver: ") + each.reason)) << each.arguments;
    EXPECT_THAT(outcome.text, ::testing::EndsWith("\nTry \"devserver --help\".\n")) << each.arguments;
  }
}

TEST(CommandLine, FailsWithTheReasonOnOneLine) {
  const Outcome outcome = RunServer("--port 0 --database /no/such/directory/archive.sqlite");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.text, ::testing::MatchesRegex("devserver: ...+\n"));
  EXPECT_EQ(RunServer("--version").text, std::string("devserver ") + kVersionText + "\n");
}

}  // namespace
}  // namespace oxaqrycln::devserver
