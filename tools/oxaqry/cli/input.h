// input.h - what a command reads: files, standard input, the answer to a question.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_INPUT_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_INPUT_H_

#include <iosfwd>
#include <string>

#include "tools/oxaqry/cli/run_environment.h"

namespace oxaqrycln::oxaqry {

// All bytes of a file, or of the input for "-". Raises CommandError, also for more than 64 MiB.
std::string ReadAll(const std::string& path, std::istream& in);

// All bytes, or the first line, of a file of at most 1 MiB. Both raise CommandError, which says what the file is.
std::string ReadSmallFile(const std::string& path, const std::string& what);
std::string ReadFirstLine(const std::string& path, const std::string& what);

// Asks on the terminal whether to go on, unless yes is set. Raises CommandError when the answer is not yes, and
// UsageError when there is no terminal.
void Confirm(const std::string& question, bool yes, const Output& output);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_INPUT_H_
