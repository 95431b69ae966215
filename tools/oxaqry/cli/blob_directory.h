// blob_directory.h - the directory that this machine and the query servers share, as the commands use it.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_BLOB_DIRECTORY_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_BLOB_DIRECTORY_H_

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "tools/oxaqry/cli/settings.h"
#include "tools/oxaqry/cli/value_json.h"

namespace oxaqrycln::oxaqry {

// The blob directory as this machine reaches it. Raises CommandError when it is not set or no directory.
std::filesystem::path LocalBlobDirectory(const Settings& settings);
// The same as the query servers reach it; the local one when it was never set.
std::string RemoteBlobDirectory(const Settings& settings);

// A connected instance that keeps received files in a directory of this machine.
std::unique_ptr<clsQuery> ConnectWithBlobs(const Settings& settings, const std::filesystem::path& local);

// A native path as the component takes it. Raises CommandError for one that has no place in the code page.
std::string ComponentPath(const std::filesystem::path& path);
// The native name of a file that the component or a query server names. Raises CommandError for a name that would lead
// out of a directory, or drive a terminal.
std::string NativeName(std::string_view name);
// A document that holds native paths, which may be no UTF-8, as text with a line end.
std::string PathJson(const Json& document);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_BLOB_DIRECTORY_H_
