// stored_name.h - what a file is stored under whose name came from outside.
#ifndef OXAQRYCLN_ARCHIVE_STORED_NAME_H_
#define OXAQRYCLN_ARCHIVE_STORED_NAME_H_

#include <string>
#include <string_view>

namespace oxaqrycln {

// The last part of the name, behind "\" and "/". Raises Bad file name for one that could leave the directory or stands
// for a device; see IsPlainFileName.
std::string StoredName(std::string_view name);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_ARCHIVE_STORED_NAME_H_
