// server_commands.h - the commands on the query servers themselves and on the blob directory.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_SERVERS_SERVER_COMMANDS_H_
#define OXAQRYCLN_TOOLS_OXAQRY_SERVERS_SERVER_COMMANDS_H_

#include "tools/oxaqry/cli/command_parser.h"

namespace oxaqrycln::oxaqry {

void AddServerCommands(CommandParser& parser);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_SERVERS_SERVER_COMMANDS_H_
