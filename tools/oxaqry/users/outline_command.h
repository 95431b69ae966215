// outline_command.h - the command "outline": the outliners of the web user database, their trees and their searches.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_USERS_OUTLINE_COMMAND_H_
#define OXAQRYCLN_TOOLS_OXAQRY_USERS_OUTLINE_COMMAND_H_

#include <cstdint>
#include <string>

#include "tools/oxaqry/cli/output.h"

namespace oxaqrycln::oxaqry {

class CommandParser;
void AddOutline(CommandParser& parser);

// The outliners that are offered for an archive; UTF-8.
int ListOutliners(const Settings& settings, const std::string& channel, const std::string& archive,
                  const Output& output);
// The tree of an outliner, down to a number of levels.
int ShowOutliner(const Settings& settings, std::int32_t outliner, std::int32_t depth, const Output& output);
// The query that finds what a node stands for.
int ShowOutlinerSearch(const Settings& settings, std::int32_t node, const Output& output);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_USERS_OUTLINE_COMMAND_H_
