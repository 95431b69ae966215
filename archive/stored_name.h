// stored_name.h - the name under which a file is stored whose name came from outside.
#ifndef OXAQRYCLN_ARCHIVE_STORED_NAME_H_
#define OXAQRYCLN_ARCHIVE_STORED_NAME_H_

#include <string>
#include <string_view>

namespace oxaqrycln {

// The last part of the name, after "\" and "/". Raises Bad file name if it could leave the directory or is the name of
// a device; see IsPlainFileName.
std::string StoredName(std::string_view name);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_ARCHIVE_STORED_NAME_H_
