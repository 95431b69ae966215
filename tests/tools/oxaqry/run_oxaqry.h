// run_oxaqry.h - runs oxaqry in the test's process, on a thread and so in an apartment of its own.
#ifndef OXAQRYCLN_TESTS_TOOLS_OXAQRY_RUN_OXAQRY_H_
#define OXAQRYCLN_TESTS_TOOLS_OXAQRY_RUN_OXAQRY_H_

#include <gmock/gmock.h>

#include <map>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/temporary_directory.h"
#include "tools/oxaqry/cli/value_json.h"
#include "tools/oxaqry/command_line.h"

namespace oxaqrycln::oxaqry {

using namespace oxaqrycln::testing;  // temporary directories, scripted servers

struct ToolRun {
  int status = -1;
  std::string out;
  std::string err;
};

inline std::vector<std::string> Joined(std::vector<std::string> arguments, const std::vector<std::string>& more) {
  arguments.insert(arguments.end(), more.begin(), more.end());
  return arguments;
}

// errorBuffer, when given, receives standard error.
inline ToolRun RunOxaqry(const std::vector<std::string>& arguments,
                         const std::map<std::string, std::string>& environment = {}, const std::string& input = "",
                         Terminals terminals = {}, std::stringbuf* errorBuffer = nullptr) {
  std::istringstream in(input);
  std::ostringstream out;
  std::stringbuf ownErrorBuffer;
  std::stringbuf& buffer = errorBuffer == nullptr ? ownErrorBuffer : *errorBuffer;
  std::ostream err(&buffer);
  const auto lookUp = [&](const char* name) {
    const auto found = environment.find(name);
    return found == environment.end() ? nullptr : found->second.c_str();
  };
  ToolRun run;
  std::thread([&] { run.status = RunCommandLine(arguments, {in, out, err, lookUp, terminals}); }).join();
  run.out = out.str();
  run.err = buffer.str();
  return run;
}

inline Json JsonOf(const ToolRun& run) {
  EXPECT_EQ(run.status, 0) << run.err;
  return Json::parse(run.out, nullptr, false);
}

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TESTS_TOOLS_OXAQRY_RUN_OXAQRY_H_
