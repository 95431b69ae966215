// document_command_line.h - the arguments of the commands in document_commands.h.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTS_DOCUMENT_COMMAND_LINE_H_
#define OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTS_DOCUMENT_COMMAND_LINE_H_

namespace oxaqrycln::oxaqry {

class CommandParser;

void AddDocumentCommands(CommandParser& parser);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTS_DOCUMENT_COMMAND_LINE_H_
