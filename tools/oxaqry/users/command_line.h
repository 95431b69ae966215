// command_line.h - adds the commands on the web user database, "user ..." and "outline", to the command line.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_USERS_COMMAND_LINE_H_
#define OXAQRYCLN_TOOLS_OXAQRY_USERS_COMMAND_LINE_H_

namespace oxaqrycln::oxaqry {

class CommandParser;
void AddUserCommands(CommandParser& parser);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_USERS_COMMAND_LINE_H_
