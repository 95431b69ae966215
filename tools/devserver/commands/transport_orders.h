// transport_orders.h - the commands on transport orders: querying them, their page images, their status.
// The page images of an order are those of its document. The orders themselves come from the sample archive.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_TRANSPORT_ORDERS_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_TRANSPORT_ORDERS_H_

#include "tools/devserver/commands/commands.h"

namespace oxaqrycln::devserver {

// Parameters: query, max lines; 0 or "" is no limit. A record for each order, by its ID: ID, status, document ID,
// version, customer, origin, destination, date, weight.
Reply QueryFahrauftraege(const Call& call);
// Parameters: order IDs with commas between them, the blob directory. One TIFF of all their pages, in this order.
Reply GetFahrauftraegeMultiTiff(const Call& call);
// Parameters: order ID, status, one of kOrderStatuses.
Reply UpdateFahrauftraegeStatus(const Call& call);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_TRANSPORT_ORDERS_H_
