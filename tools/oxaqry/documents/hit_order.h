// hit_order.h - puts the hits of a search in the order that a person asked for.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTS_HIT_ORDER_H_
#define OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTS_HIT_ORDER_H_

#include <cstdint>
#include <string>
#include <vector>

#include "component/clsQuery.h"

namespace oxaqrycln::oxaqry {

// Sorts the hit list of the query that this instance, which has sorted nothing yet, ran last; TELOSortHitlistNext then
// reads it. order: "COLUMN[:desc]" in UTF-8, a column's title, whatever its letter case, or its number from 1. titles:
// those of the display columns; rowCount: what TELOQueryArchiveInit returned, 1 or more. Takes the place of the records
// that the ...Next methods read. Raises CommandError for a column that is not there or not the only one of its title.
void SortHits(clsQuery& query, const std::string& order, const std::vector<std::string>& titles, std::int32_t rowCount);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTS_HIT_ORDER_H_
