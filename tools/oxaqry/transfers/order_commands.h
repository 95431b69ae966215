// order_commands.h - the commands on transport orders, and the one that prints a hit list.
// As those of commands.h; paths are native, other texts that a person gave UTF-8.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_TRANSFERS_ORDER_COMMANDS_H_
#define OXAQRYCLN_TOOLS_OXAQRY_TRANSFERS_ORDER_COMMANDS_H_

#include <cstdint>
#include <string>
#include <vector>

#include "tools/oxaqry/cli/output.h"
#include "tools/oxaqry/documents/search_command.h"
#include "tools/oxaqry/transfers/fetched_file.h"

namespace oxaqrycln::oxaqry {

struct OrdersRequest {
  std::string query = "*";
  std::string status;  // only orders of this one; "" for all
  std::int32_t maxLines = 100;
};
int ListOrders(const Settings& settings, const OrdersRequest& request, const Output& output);

int SetOrderStatus(const Settings& settings, const std::string& order, const std::string& status, const Output& output);

struct OrderPagesRequest {
  std::vector<std::string> orders;
  FetchTarget target;
};
// Fetches the page images of the orders as one file.
int FetchOrderPages(const Settings& settings, const OrderPagesRequest& request, const Output& output);

struct PrintHitsRequest {
  SearchRequest search;
  std::string title;  // "" for the query
  FetchTarget target;
};
// Runs a query and fetches its hit list as a PDF file.
int PrintHits(const Settings& settings, const PrintHitsRequest& request, const Output& output);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_TRANSFERS_ORDER_COMMANDS_H_
