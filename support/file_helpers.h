// file_helpers.h - received files: their extension mapping and their removal.
#ifndef OXAQRYCLN_SUPPORT_FILE_HELPERS_H_
#define OXAQRYCLN_SUPPORT_FILE_HELPERS_H_

#include <string>
#include <string_view>

namespace oxaqrycln {

// Renames the file by the comma-separated OLD-NEW rules and returns its new name; returns the name as it came when no
// rule fits. A rename that fails is ignored: the new name is returned all the same.
std::string ChangeFileExt(std::string_view name, std::string_view rules);

// Deletes the files that match a path or pattern, then every directory beside them with the files in it (one level).
// Raises Bad file name for the empty text, and the errors of the file system.
void DeleteMatchingFiles(std::string_view pattern);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_SUPPORT_FILE_HELPERS_H_
