// fetched_file.h - what the commands share that have a query server put a file into the blob directory.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_TRANSFERS_FETCHED_FILE_H_
#define OXAQRYCLN_TOOLS_OXAQRY_TRANSFERS_FETCHED_FILE_H_

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "client/archive.h"
#include "tools/oxaqry/cli/command_parser.h"
#include "tools/oxaqry/cli/value_json.h"

namespace oxaqrycln::oxaqry {

inline constexpr const char* kStandardOutput = "-";

// Where a fetched file is put.
struct FetchTarget {
  std::string output;  // a file or directory, or kStandardOutput; "" for the current directory
  bool force = false;  // overwrites an existing file
  bool keep = false;   // leaves the file in the blob directory, too
};

// Asks for the file: its path in the blob directory, or nothing when there is no such content.
using AskForFile = std::function<std::optional<std::filesystem::path>(client::Archive& archive)>;

// Asks for the file and moves it from the blob directory to its target. Prints what + its name, or with --json the
// members, the file and its bytes; nothing when the target is the output. Raises CommandError, also when there is no
// such file, client::Error and Interrupted. Returns the exit status.
int FetchFile(const Settings& settings, const FetchTarget& wanted, const Output& output, const AskForFile& ask,
              const char* what, Json members);

// Adds "-o,--output" and "--force"; the meaning is that of the first.
void AddOutput(CLI::App& command, std::string& output, bool& force, const char* meaning);
// These, and "--keep".
void AddFetchTarget(CLI::App& command, FetchTarget& target);

// Raises UsageError when both a file and a JSON document are to be written on the output.
void CheckOutput(const std::string& target, const Output& output);
// Writes the bytes of a file on the output. Raises CommandError and Interrupted.
void CopyToOutput(const std::filesystem::path& file, const Output& output);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_TRANSFERS_FETCHED_FILE_H_
