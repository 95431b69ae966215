// The commands "orders list", "orders set" and "orders tiff".
#include <limits>
#include <optional>

#include "tools/oxaqry/cli/command_families.h"
#include "tools/oxaqry/cli/result.h"
#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/cli/text.h"
#include "tools/oxaqry/transfers/fetched_file.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

struct ListRequest {
  std::string query = "*";
  std::string status;  // only orders of this one; "" for all
  std::int32_t maxLines = 100;
};

// The columns of each order: id, status, document, version, and what the query server adds.
using Order = std::vector<std::string>;

// The status is compared here, because each query server has a query language of its own. All orders are requested
// then.
std::vector<Order> ReadOrders(ArchiveQuery& archive, const ListRequest& request) {
  const std::string wanted = UpperCase(TextFromUtf8(request.status));
  const auto limit = static_cast<std::size_t>(request.maxLines);
  std::vector<Order> orders;
  const std::int32_t count = archive.Count(archive->OstranaQueryFahrauftraegeInit(
      FieldFromUtf8(request.query), wanted.empty() ? request.maxLines : std::numeric_limits<std::int32_t>::max(),
      archive.status()));
  archive.ForEach(count, "transport order", [&](std::int32_t) {
    Variant status;
    Variant document;
    Variant version;
    const Order columns = SplitColumns(archive->OstranaQueryFahrauftraegeNext(&status, &document, &version));
    const bool isWanted = wanted.empty() || UpperCase(status.ToText()) == wanted;
    if (columns.empty() || !isWanted || (!wanted.empty() && limit > 0 && orders.size() == limit)) return;
    orders.push_back({columns.front(), status.ToText(), document.ToText(), version.ToText()});
    orders.back().insert(orders.back().end(), columns.begin() + 1, columns.end());
  });
  return orders;
}

int ListOrders(const Settings& settings, const ListRequest& request, const Output& output) {
  ArchiveQuery archive(settings, output);
  Table table({"Order", "Status", "Document", "Version"});
  Json list = Json::array();
  for (const Order& order : ReadOrders(archive, request)) {
    table.Add(Cells(order));
    list.push_back({{"order", ToUtf8(order[0])},
                    {"status", ToUtf8(order[1])},
                    {"document", ToUtf8(order[2])},
                    {"version", ToUtf8(order[3])},
                    {"columns", JsonList({order.begin() + 4, order.end()})}});
  }
  return PrintResult(output, {{"orders", std::move(list)}}, table.Text(TerminalColumns(output)));
}

struct SetRequest {
  std::string order;
  std::string status;
};

int SetStatus(const Settings& settings, const SetRequest& request, const Output& output) {
  const std::string order = FieldFromUtf8(request.order);
  const std::string status = FieldFromUtf8(request.status);
  ArchiveQuery archive(settings, output);
  archive.Count(archive->OstranaUpdateFahrauftraegeStatus(order, status, archive.status()));
  return PrintResult(output, {{"order", request.order}, {"status", request.status}, {"done", true}},
                     "Set the status of " + request.order + " to " + request.status);
}

struct PagesRequest {
  std::vector<std::string> orders;
  FetchTarget target;
};

int FetchPages(const Settings& settings, const PagesRequest& request, const Output& output) {
  std::string list;
  for (const std::string& order : request.orders) list.append(list.empty() ? "" : ",").append(FieldFromUtf8(order));
  const auto ask = [&](ArchiveQuery& archive, Variant* name, Variant* length) {
    return archive->OstranaGetFahrauftraegeMultiTIFF(list, name, length, archive.status());
  };
  FetchFile(settings, request.target, output, ask, [&] {
    return FetchResult{{{"orders", request.orders}}, "Fetched "};
  });
  return 0;
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
  list->add_option("--max", listed->maxLines, "largest number of orders to show, 0 for all (default 100)")
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
