// archive_commands.h - the commands that list channels and archives and what an archive offers.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_ARCHIVES_ARCHIVE_COMMANDS_H_
#define OXAQRYCLN_TOOLS_OXAQRY_ARCHIVES_ARCHIVE_COMMANDS_H_

#include "tools/oxaqry/cli/command_parser.h"

namespace oxaqrycln::oxaqry {

void AddArchiveCommands(CommandParser& parser);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_ARCHIVES_ARCHIVE_COMMANDS_H_
