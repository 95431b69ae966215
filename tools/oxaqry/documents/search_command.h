// search_command.h - the command "search".
#ifndef OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTS_SEARCH_COMMAND_H_
#define OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTS_SEARCH_COMMAND_H_

#include <cstdint>
#include <optional>
#include <string>

#include "tools/oxaqry/cli/output.h"
#include "tools/oxaqry/cli/settings.h"

namespace oxaqrycln::oxaqry {

struct SearchRequest {
  std::string query;
  std::int32_t maxLines = 100;
  std::int32_t maxHits = 1000;
  std::string format;
  std::string rights;
  std::string layoutId;
  std::string layoutFieldId;
  std::optional<std::string> sort;  // "COLUMN[:desc]"
};

int Search(const Settings& settings, const SearchRequest& request, const Output& output);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTS_SEARCH_COMMAND_H_
