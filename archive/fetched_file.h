// fetched_file.h - the requests that make the query server put a file into the blob directory.
// For the methods of every family that fetch a file. Has no state.
#ifndef OXAQRYCLN_ARCHIVE_FETCHED_FILE_H_
#define OXAQRYCLN_ARCHIVE_FETCHED_FILE_H_

#include <initializer_list>

#include "component/query_state.h"

namespace oxaqrycln {

// The outputs of a method; nullptr for one that was left out.
struct FileOutputs {
  Variant* name;
  Variant* length;
  Variant* status;
};

// What becomes of name and length when the answer names no file: they stay, or become "" and Long 0.
enum class NoFile { kLeavesOutputs, kClearsOutputs };

// Sends the elements, the last of which is the path of the blob directory for the query servers. Sets the result to
// Long 1 on success; on failure only the status is written. Raises Bad file name for a name that could leave the
// directory.
void FetchFile(const clsQuery& query, QueryState& state, std::initializer_list<Variant> elements, NoFile noFile,
               const FileOutputs& outputs, Variant& result);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_ARCHIVE_FETCHED_FILE_H_
