// document_commands.h - the commands on documents: search, show, create, edit, delete, and those on notes.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTS_DOCUMENT_COMMANDS_H_
#define OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTS_DOCUMENT_COMMANDS_H_

#include "tools/oxaqry/cli/command_parser.h"

namespace oxaqrycln::oxaqry {

void AddSearch(CommandParser& parser);
void AddShow(CommandParser& parser);
void AddChangeCommands(CommandParser& parser);
void AddNoteCommands(CommandParser& parser);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTS_DOCUMENT_COMMANDS_H_
