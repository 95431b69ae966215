// document_command_line.h - the arguments of the commands in document_commands.h.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_DOCUMENT_COMMAND_LINE_H_
#define OXAQRYCLN_TOOLS_OXAQRY_DOCUMENT_COMMAND_LINE_H_

namespace oxaqrycln {

class CommandParser;

void AddDocumentCommands(CommandParser& parser);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_TOOLS_OXAQRY_DOCUMENT_COMMAND_LINE_H_
