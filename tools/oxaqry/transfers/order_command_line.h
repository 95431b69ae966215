// order_command_line.h - the arguments of the commands on transport orders in order_commands.h.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_TRANSFERS_ORDER_COMMAND_LINE_H_
#define OXAQRYCLN_TOOLS_OXAQRY_TRANSFERS_ORDER_COMMAND_LINE_H_

namespace oxaqrycln::oxaqry {

class CommandParser;

void AddOrderCommands(CommandParser& parser);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_TRANSFERS_ORDER_COMMAND_LINE_H_
