// result.h - prints the result of a command: text or a table for people, one JSON document with --json.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_RESULT_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_RESULT_H_

#include <string>
#include <string_view>
#include <vector>

#include "tools/oxaqry/cli/output.h"
#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/cli/value_json.h"

namespace oxaqrycln::oxaqry {

// Bytes of the document that are no UTF-8, as those of a path may be, become U+FFFD. The text is one line, UTF-8.
void PrintResult(const Output& output, const Json& document, std::string_view text);
void PrintResult(const Output& output, const Json& document, const Table& table);

// Texts of the component as a JSON list.
Json JsonList(const std::vector<std::string>& texts);
// Texts of the component as cells of a table.
std::vector<std::string> Cells(const std::vector<std::string>& texts);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_RESULT_H_
