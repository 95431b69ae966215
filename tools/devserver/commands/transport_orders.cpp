#include "tools/devserver/commands/handlers.h"

#include <algorithm>

#include "tools/devserver/archive/documents.h"
#include "tools/devserver/archive/page_source.h"
#include "tools/devserver/archive/query_parser.h"
#include "tools/devserver/archive/sample_documents.h"
#include "tools/devserver/protocol/answer_text.h"
#include "tools/devserver/protocol/errors.h"
#include "tools/devserver/protocol/request.h"
#include "values/code_page.h"
#include "values/text_parts.h"

namespace oxaqrycln::devserver {
namespace {

constexpr std::array<QueryField, 7> kOrderFields = {
    {{"id"}, {"status"}, {"customer"}, {"origin"}, {"destination"}, {"date"}, {"weight"}}};
constexpr std::size_t kMostOrders = 200;

struct Order {
  std::string id;  // in the letter case of the archive
  std::int64_t documentId;
  std::int64_t version;
};

Order FindOrder(Database& database, std::string_view id) {
  Statement query(database, "SELECT id, document_id, version FROM transport_order WHERE id = ?", id);
  if (!query.executeStep()) throw ServerError("There is no transport order '" + Printable(id) + "'");
  return {query.Text(0), query.Number(1), query.Number(2)};
}

std::vector<Order> FindOrders(Database& database, const std::string& list) {
  const std::vector<std::string_view> ids = Split(list, ',');
  if (ids.empty()) throw ServerError("The list of transport orders is empty");
  if (ids.size() > kMostOrders) throw ServerError("More than " + std::to_string(kMostOrders) + " transport orders");
  std::vector<Order> orders;
  for (const std::string_view id : ids) orders.push_back(FindOrder(database, Trimmed(id, " \t")));
  return orders;
}

std::string KnownStatus(const std::string& text) {
  const auto* const found = std::ranges::find(kOrderStatuses, LowerCase(text));
  if (found != kOrderStatuses.end()) return std::string(*found);
  throw ServerError("'" + Printable(text) + "' is not a status of a transport order (" + Join(kOrderStatuses, ", ") +
                    ")");
}

// The first order's ID, and the number of the others.
std::string FileName(const std::vector<Order>& orders) {
  const std::string more = orders.size() > 1 ? "_and_" + std::to_string(orders.size() - 1) : "";
  return orders.front().id + more + ".tif";
}

}  // namespace

Reply QueryFahrauftraege(const Call& call) {
  const std::string expression = ParseQuery(call.parameters[0], kOrderFields);
  const std::int64_t maxLines = ParseLimit("Max lines", call.parameters[1]);
  Statement query(call.database,
                  "SELECT id, status, document_id, version, customer, origin, destination, date, weight "
                  "FROM transport_order WHERE ?1 = '' OR number IN "
                  "(SELECT rowid FROM transport_order_text WHERE transport_order_text MATCH ?1) ORDER BY id LIMIT ?2",
                  expression, maxLines == 0 ? -1 : maxLines);
  std::string lines;
  while (query.executeStep()) lines += Record(query.Texts()) + "\r\n";
  return lines;
}

Reply GetFahrauftraegeMultiTiff(const Call& call) {
  const std::vector<Order> orders = FindOrders(call.database, call.parameters[0]);
  call.blobs.Require(call.parameters[1]);
  TiffWriter writer;
  std::int64_t pageCount = 0;
  for (const Order& order : orders) {
    PageSource source(call.database, order.documentId, order.version);
    pageCount += source.pageCount();
    for (std::int64_t page = 1; page <= source.pageCount(); ++page) writer.Add(source.Read(page));
  }
  if (pageCount == 0) throw ServerError("The transport orders have no pages");
  return StoreContent(call, FileName(orders), writer.Finish());
}

Reply UpdateFahrauftraegeStatus(const Call& call) {
  const Order order = FindOrder(call.database, call.parameters[0]);
  const std::string status = KnownStatus(call.parameters[1]);
  Statement(call.database, "UPDATE transport_order SET status = ? WHERE id = ?", status, order.id).Run();
  return std::string();
}

}  // namespace oxaqrycln::devserver
