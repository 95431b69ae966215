// fetched_file.h - what the commands share that have a query server put a file into the blob directory.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_TRANSFERS_FETCHED_FILE_H_
#define OXAQRYCLN_TOOLS_OXAQRY_TRANSFERS_FETCHED_FILE_H_

#include <functional>
#include <string>

#include "tools/oxaqry/cli/archive_query.h"
#include "tools/oxaqry/cli/command_parser.h"
#include "tools/oxaqry/cli/value_json.h"

namespace oxaqrycln::oxaqry {

// Where a fetched file is put.
struct FetchTarget {
  std::string output;  // a file or directory; "" for the current directory
  bool force = false;  // overwrites an existing file
  bool keep = false;   // leaves the file in the blob directory, too
};

// Calls the method that asks for the file, with its outputs, and returns what it returned.
using AskForFile = std::function<Variant(ArchiveQuery& archive, Variant* name, Variant* length)>;
// What the result says of the file: the members of the JSON document before the file's own, and the text before its
// name.
struct FetchResult {
  Json members;
  std::string text;
};

// Asks for the file, moves it from the blob directory to its target and prints the result, which is composed after the
// request. Raises CommandError, also when there is no such file, and Interrupted.
void FetchFile(const Settings& settings, const FetchTarget& wanted, const Output& output, const AskForFile& ask,
               const std::function<FetchResult()>& result);

// The options "-o,--output" and "--force"; the meaning is that of the first.
void AddOutput(CLI::App& command, std::string& output, bool& force, const char* meaning);
// These, and "--keep".
void AddFetchTarget(CLI::App& command, FetchTarget& target);

// An instance for files in a directory of this machine, which the query servers know as the remote blob directory.
void UseBlobDirectory(ArchiveQuery& archive, const Settings& settings, const std::filesystem::path& local);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_TRANSFERS_FETCHED_FILE_H_
