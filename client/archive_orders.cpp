// Transport orders, and printed hit lists.
#include <limits>
#include <utility>

#include "client/archive.h"
#include "client/blob_files.h"
#include "client/query_access.h"
#include "client/text.h"
#include "values/code_page.h"

namespace oxaqrycln::client {

std::vector<TransportOrder> Archive::Orders(std::string_view queryText, std::int32_t max) {
  QueryAccess& query = *access_;
  if (max < 0) throw BadArgument("the limit of a list is 0 or more");
  const std::int32_t count = query.Count(query->OstranaQueryFahrauftraegeInit(
      RequestText(queryText, "the query"), max == 0 ? std::numeric_limits<std::int32_t>::max() : max, query.status()));
  std::vector<TransportOrder> orders;
  query.ForEach(count, "transport order", [&] {
    Variant status;
    Variant document;
    Variant version;
    std::vector<std::string> columns =
        Fields(ToUtf8(query->OstranaQueryFahrauftraegeNext(&status, &document, &version)));
    if (columns.empty()) return;
    std::string id = std::move(columns.front());
    columns.erase(columns.begin());
    orders.push_back({std::move(id), TextOf(status), TextOf(document), TextOf(version), std::move(columns)});
  });
  return orders;
}

void Archive::SetOrderStatus(std::string_view order, std::string_view status) {
  QueryAccess& query = *access_;
  query.Count(query->OstranaUpdateFahrauftraegeStatus(RequestText(order, "the order"),
                                                      RequestText(status, "the status"), query.status()));
}

std::optional<std::filesystem::path> Archive::FetchOrders(const std::vector<std::string>& orders) {
  QueryAccess& query = *access_;
  std::string list;
  for (const std::string& order : orders) list.append(list.empty() ? "" : ",").append(RequestText(order, "the order"));
  return FetchFile(query, settings_, [&](Variant* name, Variant* length) {
    return query->OstranaGetFahrauftraegeMultiTIFF(list, name, length, query.status());
  });
}

std::optional<std::filesystem::path> Archive::PrintHits(const SearchOptions& options, std::string_view title) {
  QueryAccess& query = *access_;
  BlobDirectory(settings_);  // before any request
  const std::string titleText = RequestText(title, "the title");
  const HitList hits = ReadHits(options);
  if (hits.flags_.empty()) return std::nullopt;  // the rights allow no archive
  if (!options.sort.empty()) {
    // The first sort of the class's list is ascending when its first row is greater than the last one, otherwise
    // descending; each further sort reverses the direction.
    const std::size_t column = hits.Column(options.sort);
    const int sorts = hits.BeginsGreater(column) == (options.order == Order::Descending) ? 2 : 1;
    for (int i = 0; i < sorts; ++i) query->TELOSortHitlistInit(static_cast<std::int32_t>(column + 1));
    query.CheckOwn("the hit list cannot be sorted");
  }
  return FetchFile(query, settings_, [&](Variant* name, Variant* length) {
    return query->FennikPrintHitlistPDF(titleText, name, length, query.status());
  });
}

}  // namespace oxaqrycln::client
