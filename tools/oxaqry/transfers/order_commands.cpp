// The commands "orders" and "print-hits".
#include "tools/oxaqry/transfers/order_commands.h"

#include <limits>
#include <ostream>

#include "tools/oxaqry/cli/answers.h"
#include "tools/oxaqry/cli/blob_directory.h"
#include "tools/oxaqry/cli/progress.h"
#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/cli/value_json.h"
#include "tools/oxaqry/documents/hit_order.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

struct Order {
  std::string status;
  std::string document;
  std::string version;
  std::vector<std::string> columns;  // the first one is its id
};

Order NextOrder(clsQuery& query, std::int32_t number) {
  Variant status;
  Variant document;
  Variant version;
  const std::string columns = query.OstranaQueryFahrauftraegeNext(&status, &document, &version);
  if (columns.empty()) {
    throw CommandError("transport order " + std::to_string(number) +
                       " of the answer is malformed: see the log (--log-dir) and ask the query server's operator");
  }
  return {status.ToText(), document.ToText(), version.ToText(), SplitColumns(columns)};
}

// The status is compared here, since each query server has a query language of its own: all orders are asked for then.
std::vector<Order> ReadOrders(clsQuery& query, const OrdersRequest& request) {
  const std::string wanted = UpperCase(TextFromUtf8(request.status));
  const auto limit = static_cast<std::size_t>(request.maxLines);
  Variant status;
  const Variant result = query.OstranaQueryFahrauftraegeInit(
      FieldFromUtf8(request.query), wanted.empty() ? request.maxLines : std::numeric_limits<std::int32_t>::max(),
      &status);
  const std::int32_t count = Count(result, status);
  std::vector<Order> orders;
  for (std::int32_t number = 1; number <= count; ++number) {
    if (!wanted.empty() && limit > 0 && orders.size() == limit) break;
    Order order = NextOrder(query, number);
    if (wanted.empty() || UpperCase(order.status) == wanted) orders.push_back(std::move(order));
  }
  return orders;
}

void PrintJson(const std::vector<Order>& orders, std::ostream& out) {
  Json list = Json::array();
  for (const Order& order : orders) {
    Json columns = Json::array();
    for (std::size_t i = 1; i < order.columns.size(); ++i) columns.push_back(ToUtf8(order.columns[i]));
    list.push_back({{"order", ToUtf8(order.columns.front())},
                    {"status", ToUtf8(order.status)},
                    {"document", ToUtf8(order.document)},
                    {"version", ToUtf8(order.version)},
                    {"columns", std::move(columns)}});
  }
  out << Json{{"orders", std::move(list)}}.dump(2) << '\n';
}

void PrintTable(const std::vector<Order>& orders, std::ostream& out) {
  Table table({"Order", "Status", "Document", "Version"});
  for (const Order& order : orders) {
    std::vector<std::string> cells{Printable(order.columns.front()), Printable(order.status), Printable(order.document),
                                   Printable(order.version)};
    for (std::size_t i = 1; i < order.columns.size(); ++i) cells.push_back(Printable(order.columns[i]));
    table.Add(std::move(cells));
  }
  table.Print(out);
}

}  // namespace

int ListOrders(const Settings& settings, const OrdersRequest& request, const Output& output) {
  const auto query = settings.Connect();
  const std::vector<Order> orders = ReadOrders(*query, request);
  if (output.json) {
    PrintJson(orders, output.out);
  } else {
    PrintTable(orders, output.out);
  }
  return 0;
}

int SetOrderStatus(const Settings& settings, const std::string& order, const std::string& newStatus,
                   const Output& output) {
  const std::string orderField = FieldFromUtf8(order);
  const std::string statusField = FieldFromUtf8(newStatus);
  const auto query = settings.Connect();
  Variant status;
  Count(query->OstranaUpdateFahrauftraegeStatus(orderField, statusField, &status), status);
  if (output.json) {
    output.out << Json{{"order", order}, {"status", newStatus}, {"done", true}}.dump(2) << '\n';
  } else {
    output.out << "Set the status of " << order << " to " << newStatus << '\n';
  }
  return 0;
}

int FetchOrderPages(const Settings& settings, const OrderPagesRequest& request, const Output& output) {
  std::string list;
  for (const std::string& order : request.orders) list.append(list.empty() ? "" : ",").append(FieldFromUtf8(order));
  const auto ask = [&](clsQuery& query, Variant& name, Variant& length, Variant& status) {
    return query.OstranaGetFahrauftraegeMultiTIFF(list, &name, &length, &status);
  };
  const FetchedFile file = FetchFile(settings, request.target, ask, output);
  if (output.json) {
    output.out << PathJson({{"orders", request.orders}, {"file", file.path.string()}, {"bytes", file.byteCount}});
  } else {
    output.out << "Fetched " << file.path.string() << " (" << ByteText(file.byteCount) << ")\n";
  }
  return 0;
}

int PrintHits(const Settings& settings, const PrintHitsRequest& request, const Output& output) {
  const SearchRequest& search = request.search;
  const std::string title = FieldFromUtf8(request.title.empty() ? search.query : request.title);
  std::int32_t rowCount = 0;
  const auto ask = [&](clsQuery& query, Variant& name, Variant& length, Variant& status) {
    const Variant result = query.TELOQueryArchiveInit(
        FieldFromUtf8(search.query), search.maxLines, search.maxHits, FieldFromUtf8(search.format),
        FieldFromUtf8(search.rights), FieldFromUtf8(search.layoutFieldId), FieldFromUtf8(search.layoutId), nullptr,
        nullptr, nullptr, nullptr, &status);
    rowCount = result.ToLong();
    if (rowCount < 0) return result;
    if (search.sort && rowCount > 0) {
      SortHits(query, *search.sort, SplitColumns(query.TELOSortHitlistNext()), rowCount);
    }
    return query.FennikPrintHitlistPDF(title, &name, &length, &status);
  };
  const FetchedFile file = FetchFile(settings, request.target, ask, output);
  const std::int32_t hitCount = rowCount - 1;  // without the titles
  if (output.json) {
    output.out << PathJson({{"hits", hitCount}, {"file", file.path.string()}, {"bytes", file.byteCount}});
  } else {
    output.out << "Printed " << hitCount << (hitCount == 1 ? " hit to " : " hits to ") << file.path.string() << " ("
               << ByteText(file.byteCount) << ")\n";
  }
  return 0;
}

}  // namespace oxaqrycln::oxaqry
