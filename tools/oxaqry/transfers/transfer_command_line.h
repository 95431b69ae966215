// transfer_command_line.h - the arguments of the commands in transfer_commands.h.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_TRANSFERS_TRANSFER_COMMAND_LINE_H_
#define OXAQRYCLN_TOOLS_OXAQRY_TRANSFERS_TRANSFER_COMMAND_LINE_H_

namespace oxaqrycln::oxaqry {

class CommandParser;

void AddTransferCommands(CommandParser& parser);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_TRANSFERS_TRANSFER_COMMAND_LINE_H_
