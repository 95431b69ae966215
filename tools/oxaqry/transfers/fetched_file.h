// fetched_file.h - what the commands share that have a query server put a file into the blob directory.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_TRANSFERS_FETCHED_FILE_H_
#define OXAQRYCLN_TOOLS_OXAQRY_TRANSFERS_FETCHED_FILE_H_

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>

#include "component/clsQuery.h"
#include "tools/oxaqry/cli/command_parser.h"

namespace oxaqrycln::oxaqry {

// Where a person wants a fetched file.
struct FetchTarget {
  std::string output;  // a file or directory; "" for the current one
  bool force = false;  // overwrites a file there
  bool keep = false;   // the blob directory keeps its file
};

struct FetchedFile {
  std::filesystem::path path;
  std::int64_t byteCount;
};

// Calls the method that asks for the file, with its outputs, and returns what it returned.
using AskForFile = std::function<Variant(clsQuery& query, Variant& name, Variant& length, Variant& status)>;

// Asks for the file and moves it from the blob directory to its target. Raises CommandError, also when there was none,
// and Interrupted.
FetchedFile FetchFile(const Settings& settings, const FetchTarget& target, const AskForFile& ask, const Output& output);

// The options "-o,--output" and "--force"; the meaning is that of the first.
void AddOutput(CLI::App& command, std::string& output, bool& force, const char* meaning);
// These, and "--keep".
void AddFetchTarget(CLI::App& command, FetchTarget& target);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_TRANSFERS_FETCHED_FILE_H_
