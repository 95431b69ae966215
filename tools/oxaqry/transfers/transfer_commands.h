// transfer_commands.h - the commands that bring files from the archive to this machine and back, and those on transport
// orders. A signal that ends a command leaves no unfinished file.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_TRANSFERS_TRANSFER_COMMANDS_H_
#define OXAQRYCLN_TOOLS_OXAQRY_TRANSFERS_TRANSFER_COMMANDS_H_

#include "tools/oxaqry/cli/command_parser.h"

namespace oxaqrycln::oxaqry {

void AddPrintHits(CommandParser& parser);
void AddFetch(CommandParser& parser);
void AddTransferCommands(CommandParser& parser);
void AddOrderCommands(CommandParser& parser);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_TRANSFERS_TRANSFER_COMMANDS_H_
