// run_environment.h - the streams, terminals and environment variables of a run, and what a command gets of them.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_RUN_ENVIRONMENT_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_RUN_ENVIRONMENT_H_

#include <iosfwd>
#include <string>
#include <vector>

#include "tools/oxaqry/cli/settings.h"

namespace oxaqrycln::oxaqry {

// Which of the streams are terminals.
struct Terminals {
  bool in = false;
  bool out = false;
  bool err = false;
};
// Of the standard streams.
Terminals StandardTerminals() noexcept;
// Makes the standard streams give and take bytes as they are, and the terminal show UTF-8.
void PrepareStandardStreams();
// What main got, without the name of the program; UTF-8.
std::vector<std::string> ProgramArguments(int count, char** arguments);
// Null for a variable that is not set; UTF-8.
const char* EnvironmentVariable(const char* name);

struct RunEnvironment {
  std::istream& in;
  std::ostream& out;
  std::ostream& err;
  Settings::Environment environment;
  Terminals terminals = {};
};

// Where a command prints its result and asks its questions.
struct Output {
  std::ostream& out;
  bool json;
  std::istream& in;   // where a question is answered
  std::ostream& err;  // where questions and progress are shown
  Terminals terminals;
  bool color;            // out is a terminal that may be driven
  bool verbose = false;  // err shows every attempt of every request
};

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_RUN_ENVIRONMENT_H_
