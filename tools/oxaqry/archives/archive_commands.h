// archive_commands.h - the commands that list what an archive holds. Each returns the exit status and raises
// CommandError or ValueError when it cannot do its work. Texts that a person gave are UTF-8.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_ARCHIVES_ARCHIVE_COMMANDS_H_
#define OXAQRYCLN_TOOLS_OXAQRY_ARCHIVES_ARCHIVE_COMMANDS_H_

#include <string>

#include "tools/oxaqry/cli/output.h"
#include "tools/oxaqry/cli/settings.h"

namespace oxaqrycln::oxaqry {

int Channels(const Settings& settings, const Output& output);
int AllArchives(const Settings& settings, const Output& output);
// Every channel with its archives and their comments.
int ArchivesByChannel(const Settings& settings, const Output& output);
int Formats(const Settings& settings, const std::string& channel, const std::string& archive, const Output& output);
int Properties(const Settings& settings, const std::string& channel, const std::string& archive, const Output& output);
}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_ARCHIVES_ARCHIVE_COMMANDS_H_
