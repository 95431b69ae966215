// result.h - prints the result of a command: a text for people, one JSON document with --json.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_RESULT_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_RESULT_H_

#include <string>
#include <string_view>
#include <vector>

#include "tools/oxaqry/cli/run_environment.h"
#include "tools/oxaqry/cli/value_json.h"

namespace oxaqrycln::oxaqry {

// Bytes of the document that are no UTF-8, as those of a path may be, become U+FFFD. The text is UTF-8; a line end is
// added unless it has one or is empty. Returns the exit status 0.
int PrintResult(const Output& output, const Json& document, std::string_view text);

// Writes a warning, which is UTF-8, on standard error: a line of text, or a JSON object {"warning":TEXT} with --json.
void Warn(const Output& output, const std::string& text);

// UTF-8 texts as cells of a table.
std::vector<std::string> Cells(const std::vector<std::string>& texts);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_RESULT_H_
