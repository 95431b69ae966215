// blob_files.h - paths of the blob directory, and the files that a server puts there. Not installed.
#ifndef OXAQRYCLN_CLIENT_BLOB_FILES_H_
#define OXAQRYCLN_CLIENT_BLOB_FILES_H_

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "client/query_access.h"
#include "client/settings.h"

namespace oxaqrycln::client {

std::filesystem::path PathOf(std::string_view utf8);
std::string Utf8Of(const std::filesystem::path& path);
// A path as the class takes it, which separates its parts with "/" and "\". Raises BadArgument.
std::string PathText(const std::filesystem::path& path);

// As this machine reaches it. Raises BadArgument when the settings name none.
std::filesystem::path BlobDirectory(const Settings& settings);

// Calls a method that has the server put a file into the blob directory, with its outputs for the name and the length.
// Returns the file's path, or nothing when there is no such content. Raises what the failure of the request was, and
// Error when the file is not there or has another length.
std::optional<std::filesystem::path> FetchFile(QueryAccess& query, const Settings& settings,
                                               const std::function<Variant(Variant* name, Variant* length)>& ask);

}  // namespace oxaqrycln::client

#endif  // OXAQRYCLN_CLIENT_BLOB_FILES_H_
