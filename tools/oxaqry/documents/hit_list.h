// hit_list.h - a query and its hit list, for the commands that show or print one.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTS_HIT_LIST_H_
#define OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTS_HIT_LIST_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/oxaqry/cli/archive_query.h"
#include "tools/oxaqry/cli/command_parser.h"

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
void AddSearchArguments(CLI::App& command, SearchRequest& request);

struct HitList {
  std::int32_t rowCount = 0;  // with the title row
  Variant totalHits;
  Variant layoutKeys;
  Variant layoutValues;
  Variant isMultiTiff;
  std::vector<std::string> titles;  // of the display columns
};
// Runs the query and sorts its hits. The rows are then read by TELOSortHitlistNext, the titles again as the first one.
// Raises CommandError.
HitList RunQuery(ArchiveQuery& archive, const SearchRequest& request);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTS_HIT_LIST_H_
