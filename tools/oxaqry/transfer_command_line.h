// transfer_command_line.h - the arguments of the commands in transfer_commands.h.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_TRANSFER_COMMAND_LINE_H_
#define OXAQRYCLN_TOOLS_OXAQRY_TRANSFER_COMMAND_LINE_H_

namespace oxaqrycln {

class CommandParser;

void AddTransferCommands(CommandParser& parser);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_TOOLS_OXAQRY_TRANSFER_COMMAND_LINE_H_
