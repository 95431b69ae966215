#include "tools/oxaqry/transfers/order_command_line.h"

#include <limits>
#include <memory>

#include "tools/oxaqry/cli/command_parser.h"
#include "tools/oxaqry/transfers/order_commands.h"

namespace oxaqrycln::oxaqry {
namespace {

void AddList(CommandParser& parser, CLI::App& orders) {
  const auto request = std::make_shared<OrdersRequest>();
  CLI::App* const list = parser.AddQuery(
      orders, "list", "list transport orders",
      "Examples:\n  oxaqry orders list --status open --hosts localhost,2001\n"
      "  oxaqry orders list 'origin:brandach' --max 20 --hosts localhost,2001",
      [request](const Settings& settings, const Output& output) { return ListOrders(settings, *request, output); });
  list->add_option("QUERY", request->query, "the query expression (default \"*\")")->type_name("");
  list->add_option("--status", request->status, "only orders of this status")->type_name("S");
  list->add_option("--max", request->maxLines, "largest number of orders to show, 0 for all (default 100)")
      ->check(CLI::Validator(CLI::Range(std::int32_t{0}, std::numeric_limits<std::int32_t>::max())).description(""))
      ->type_name("N");
}

void AddSet(CommandParser& parser, CLI::App& orders) {
  const auto order = std::make_shared<std::string>();
  const auto status = std::make_shared<std::string>();
  CLI::App* const set = parser.AddQuery(orders, "set", "give a transport order another status",
                                        "Example:\n  oxaqry orders set FA-0001 loaded --hosts localhost,2001",
                                        [order, status](const Settings& settings, const Output& output) {
                                          return SetOrderStatus(settings, *order, *status, output);
                                        });
  set->add_option("ID", *order, "the order")->required()->type_name("");
  set->add_option("STATUS", *status, "its new status")->required()->type_name("");
}

void AddTiff(CommandParser& parser, CLI::App& orders) {
  const auto request = std::make_shared<OrderPagesRequest>();
  CLI::App* const tiff = parser.AddQuery(
      orders, "tiff", "fetch the page images of transport orders as one file",
      "Example:\n  oxaqry orders tiff FA-0001 FA-0002 -o orders.tif --blob-local /srv/blobs --hosts localhost,2001",
      [request](const Settings& settings, const Output& output) {
        return FetchOrderPages(settings, *request, output);
      });
  tiff->add_option("ID", request->orders, "the orders, in the order of their pages")->required()->type_name("");
  AddFetchTarget(*tiff, request->target);
}

}  // namespace

void AddOrderCommands(CommandParser& parser) {
  CLI::App* const orders = parser.AddGroup("orders", "list transport orders, fetch their pages, change their status",
                                           "Example:\n  oxaqry orders list --status open --hosts localhost,2001");
  AddList(parser, *orders);
  AddSet(parser, *orders);
  AddTiff(parser, *orders);
}

}  // namespace oxaqrycln::oxaqry
