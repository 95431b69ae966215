// archive_names.h - archives as rights name them, and whether the query servers have them.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_USERS_ARCHIVE_NAMES_H_
#define OXAQRYCLN_TOOLS_OXAQRY_USERS_ARCHIVE_NAMES_H_

#include <string>
#include <vector>

#include "tools/oxaqry/cli/run_environment.h"
#include "tools/oxaqry/cli/settings.h"

namespace oxaqrycln::oxaqry {

// How a right names an archive that is given as CHANNEL/ARCHIVE: "$(#CHANNEL)\ARCHIVE". Any other text stays as it is:
// the name of an archive in every channel, or such a reference.
std::string ArchiveEntryOf(const std::string& text);

// A warning for each name, UTF-8, that the first query server to answer does not list, or one that says why no server
// answered within 5 seconds. None without query servers in the settings.
std::vector<std::string> UnknownNameWarnings(const Settings& settings, const std::vector<std::string>& channels,
                                             const std::vector<std::string>& archives, const Output& output);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_USERS_ARCHIVE_NAMES_H_
