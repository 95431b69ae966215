// The commands "orders list", "orders set" and "orders tiff".
#include "client/archive.h"
#include "tools/oxaqry/cli/archive.h"
#include "tools/oxaqry/cli/command_families.h"
#include "tools/oxaqry/cli/result.h"
#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/cli/value_json.h"
#include "tools/oxaqry/transfers/fetched_file.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

struct ListRequest {
  std::string query = "*";
  std::string status;  // only orders of this one; "" for all
  std::int32_t max = 100;
};

// The status is compared here, because each query server has a query language of its own. All orders are requested
// then.
std::vector<client::TransportOrder> ReadOrders(client::Archive& archive, const ListRequest& request) {
  std::vector<client::TransportOrder> orders = archive.Orders(request.query, request.status.empty() ? request.max : 0);
  if (request.status.empty()) return orders;
  const auto upper = [](const std::string& text) { return UpperCase(TextFromUtf8(text)); };
  const std::string wanted = upper(request.status);
  std::erase_if(orders, [&](const client::TransportOrder& order) { return upper(order.status) != wanted; });
  const auto limit = static_cast<std::size_t>(request.max);
  if (limit > 0 && orders.size() > limit) orders.resize(limit);
  return orders;
}

int ListOrders(const Settings& settings, const ListRequest& request, const Output& output) {
  client::Archive archive = OpenArchive(settings, output);
  Table table({"Order", "Status", "Document", "Version"});
  Json list = Json::array();
  for (const client::TransportOrder& order : ReadOrders(archive, request)) {
    std::vector<std::string> cells{order.id, order.status, order.document, order.version};
    cells.insert(cells.end(), order.columns.begin(), order.columns.end());
    table.Add(Cells(cells));
    list.push_back({{"order", order.id},
                    {"status", order.status},
                    {"document", order.document},
                    {"version", order.version},
                    {"columns", order.columns}});
  }
  return PrintResult(output, {{"orders", std::move(list)}}, table.Text(TerminalColumns(output)));
}

struct SetRequest {
  std::string order;
  std::string status;
};

int SetStatus(const Settings& settings, const SetRequest& request, const Output& output) {
  OpenArchive(settings, output).SetOrderStatus(request.order, request.status);
  return PrintResult(output, {{"order", request.order}, {"status", request.status}, {"done", true}},
                     "Set the status of " + request.order + " to " + request.status);
}

struct PagesRequest {
  std::vector<std::string> orders;
  FetchTarget target;
};

int FetchPages(const Settings& settings, const PagesRequest& request, const Output& output) {
  const auto ask = [&](client::Archive& archive) { return archive.FetchOrders(request.orders); };
  return FetchFile(settings, request.target, output, ask, "Fetched ", {{"orders", request.orders}});
}

}  // namespace

void AddOrderCommands(CommandParser& parser) {
  CLI::App* const orders = parser.AddGroup("orders", "list transport orders, fetch their pages, change their status",
                                           "Example:\n  oxaqry orders list --status open --hosts localhost,2001");
  const auto [list, listed] = parser.AddQuery(*orders, "list", "list transport orders",
                                              "Examples:\n  oxaqry orders list --status open --hosts localhost,2001\n"
                                              "  oxaqry orders list 'origin:brandach' --max 20 --hosts localhost,2001",
                                              ListOrders);
  list->add_option("QUERY", listed->query, "the query expression (default \"*\")");
  list->add_option("--status", listed->status, "only orders of this status, in any letter case")->type_name("S");
  list->add_option("--max", listed->max, "largest number of orders to show, 0 for all (default 100)")
      ->check(FromZero<std::int32_t>())
      ->type_name("N");
  const auto [set, change] =
      parser.AddQuery(*orders, "set", "give a transport order another status",
                      "Example:\n  oxaqry orders set FA-0001 loaded --hosts localhost,2001", SetStatus);
  set->add_option("ID", change->order, "the order")->required();
  set->add_option("STATUS", change->status, "its new status")->required();
  const auto [tiff, pages] = parser.AddQuery(
      *orders, "tiff", "fetch the page images of transport orders as one file",
      "Example:\n  oxaqry orders tiff FA-0001 FA-0002 -o orders.tif --blob-local /srv/blobs --hosts localhost,2001",
      FetchPages);
  tiff->add_option("ID", pages->orders, "the orders, in the order of their pages")->required();
  AddFetchTarget(*tiff, pages->target);
}

}  // namespace oxaqrycln::oxaqry
