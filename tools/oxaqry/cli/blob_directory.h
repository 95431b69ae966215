// blob_directory.h - the directory that this machine and the query servers share.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_BLOB_DIRECTORY_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_BLOB_DIRECTORY_H_

#include <filesystem>
#include <string>
#include <string_view>

#include "tools/oxaqry/cli/settings.h"

namespace oxaqrycln::oxaqry {

// The blob directory as this machine reaches it. Raises CommandError when it is not set or no directory.
std::filesystem::path LocalBlobDirectory(const Settings& settings);
// The same directory as the query servers reach it: the local path unless another one is set. Code page text.
std::string RemoteBlobDirectory(const Settings& settings);

// A native path as the component takes it. Raises CommandError for one that has no place in the code page.
std::string ComponentPath(const std::filesystem::path& path);
// The native name of a file that the component or a query server names. Raises CommandError for a name that leads out
// of a directory or drives a terminal.
std::string NativeName(std::string_view name);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_BLOB_DIRECTORY_H_
