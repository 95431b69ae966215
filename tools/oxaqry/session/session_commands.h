// session_commands.h - the commands for programs and page authors: "session" and "methods".
#ifndef OXAQRYCLN_TOOLS_OXAQRY_SESSION_SESSION_COMMANDS_H_
#define OXAQRYCLN_TOOLS_OXAQRY_SESSION_SESSION_COMMANDS_H_

#include "tools/oxaqry/cli/command_parser.h"

namespace oxaqrycln::oxaqry {

void AddSessionCommands(CommandParser& parser);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_SESSION_SESSION_COMMANDS_H_
