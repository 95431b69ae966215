// command_families.h - the families of commands, each of which adds itself to the command line.
// Each is defined in the folder that the comment names.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_COMMAND_FAMILIES_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_COMMAND_FAMILIES_H_

#include "tools/oxaqry/cli/command_parser.h"

namespace oxaqrycln::oxaqry {

// servers: the query servers themselves, and the blob directory.
void AddServerCommands(CommandParser& parser);
// archives: the channels and archives, and what an archive offers.
void AddArchiveCommands(CommandParser& parser);
// documents: searching, showing and changing documents and their notes.
void AddSearch(CommandParser& parser);
void AddShow(CommandParser& parser);
void AddChangeCommands(CommandParser& parser);
void AddNoteCommands(CommandParser& parser);
// transfers: files from the archive to this machine and back, and transport orders. A signal that ends one of these
// commands leaves no unfinished file.
void AddPrintHits(CommandParser& parser);
void AddFetch(CommandParser& parser);
void AddTransferCommands(CommandParser& parser);
void AddOrderCommands(CommandParser& parser);
// users: the web user database, "user ..." and "outline".
void AddUserCommands(CommandParser& parser);
// session: "session" and "methods", for programs and page authors.
void AddSessionCommands(CommandParser& parser);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_COMMAND_FAMILIES_H_
