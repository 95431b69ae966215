// input.h - files and answers that a person gives.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_INPUT_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_INPUT_H_

#include <iosfwd>
#include <string>

#include "tools/oxaqry/cli/output.h"

namespace oxaqrycln::oxaqry {

// Everything of a file, or of the input for "-"; raises CommandError, also for more than 64 MiB.
std::string ReadAll(const std::string& path, std::istream& in);

// Asks on a terminal whether to go on; raises CommandError when the answer is not yes, and UsageError where nobody can
// be asked. Nothing is asked when the answer was given beforehand.
void Confirm(const std::string& question, bool yes, const Output& output);

// The bytes of a file of at most 1 MiB, and its first line. Both raise CommandError, which says what the file is for.
std::string ReadSmallFile(const std::string& path, const std::string& what);
std::string ReadFirstLine(const std::string& path, const std::string& what);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_INPUT_H_
