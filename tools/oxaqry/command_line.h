// command_line.h - oxaqry from its arguments to its exit status.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_COMMAND_LINE_H_
#define OXAQRYCLN_TOOLS_OXAQRY_COMMAND_LINE_H_

#include <string>
#include <vector>

#include "tools/oxaqry/cli/run_environment.h"

namespace oxaqrycln::oxaqry {

// Runs the command that the arguments (without the program's name) ask for. The exit status: 0, 1 when the command
// failed, 2 for wrong usage, 128 and the signal's number when one ended it. The component's instances live on the
// calling thread.
int RunCommandLine(std::vector<std::string> arguments, const RunEnvironment& environment);

// Every command ("search", "note add") with its long options, "--help" left out: what manual page and completions must
// name.
struct CommandWords {
  std::string command;  // one word, or two with a blank between
  std::vector<std::string> options;
};
std::vector<CommandWords> AllCommandWords();

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_COMMAND_LINE_H_
