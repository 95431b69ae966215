// fetched_file.h - the requests after which a file of the query server lies in the blob directory.
// For the methods of every family that fetch one. Holds no state.
#ifndef OXAQRYCLN_ARCHIVE_FETCHED_FILE_H_
#define OXAQRYCLN_ARCHIVE_FETCHED_FILE_H_

#include <initializer_list>

#include "component/query_state.h"

namespace oxaqrycln {

// What a method receives for its outputs; nullptr for one that was left out.
struct FileOutputs {
  Variant* name;
  Variant* length;
  Variant* status;
};

// What an answer that names no file does to name and length: nothing, or "" and Long 0.
enum class NoFile { kLeavesOutputs, kClearsOutputs };

// Sends the elements, whose last one is the blob directory as the query servers reach it. Sets the result to Long 1 on
// success; on failure only the status is written. Raises Bad file name for a name that could leave the directory.
void FetchFile(const clsQuery& query, QueryState& state, std::initializer_list<Variant> elements, NoFile noFile,
               const FileOutputs& outputs, Variant& result);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_ARCHIVE_FETCHED_FILE_H_
