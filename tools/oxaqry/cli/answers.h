// answers.h - tells answers of the component's methods from error texts.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_ANSWERS_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_ANSWERS_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "component/clsQuery.h"
#include "tools/oxaqry/cli/text.h"
#include "tools/oxaqry/cli/value_json.h"

namespace oxaqrycln::oxaqry {

struct Answer {
  bool isError;
  std::string text;
};

// The first line of a query server's answer to a live check, or the error text.
Answer CheckLive(clsQuery& query);
// All lines of the answer to a complete command part, joined by CR LF, or the error text.
Answer AskDirect(clsQuery& query, const std::string& commandPart);

// Whether the error text means that no server accepted a connection.
bool IsNoConnection(const std::string& errorText);

// The number of records that an ...Init returned; raises CommandError with its error text when it failed.
std::int32_t Count(const Variant& result, const Variant& status);
// Raises CommandError for an error text of the component.
[[noreturn]] void Fail(const std::string& errorText);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_ANSWERS_H_
