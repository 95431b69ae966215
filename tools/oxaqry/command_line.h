// command_line.h - oxaqry from its arguments to its exit status.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_COMMAND_LINE_H_
#define OXAQRYCLN_TOOLS_OXAQRY_COMMAND_LINE_H_

#include <string>
#include <vector>

#include "tools/oxaqry/cli/command_parser.h"

namespace oxaqrycln::oxaqry {

// Adds every command of oxaqry.
void AddAllCommands(CommandParser& parser);

// Runs the command that the arguments (without the program's name) ask for. The exit status: 0, 1 when the command
// failed, 2 for wrong usage, 128 and the number of the signal that ended it. The component's instances live on the
// calling thread.
int RunCommandLine(std::vector<std::string> arguments, const RunEnvironment& environment);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_COMMAND_LINE_H_
