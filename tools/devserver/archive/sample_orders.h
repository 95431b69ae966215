// sample_orders.h - the transport orders of the sample archive. Invented, and the same in every run.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_SAMPLE_ORDERS_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_SAMPLE_ORDERS_H_

#include <array>
#include <string_view>

#include "tools/devserver/archive/database.h"

namespace oxaqrycln::devserver {

inline constexpr std::array<std::string_view, 5> kOrderStatuses = {"open", "accepted", "loaded", "delivered",
                                                                   "cancelled"};

// Adds an order for every letter and fax received, and for some customer orders, which have no page images.
void AddSampleOrders(Database& database);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_SAMPLE_ORDERS_H_
