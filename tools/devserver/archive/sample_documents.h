// sample_documents.h - the documents of the sample archive, with their versions, page images, stored files and notes,
// and its transport orders.
// Invented, and the same in every run.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_SAMPLE_DOCUMENTS_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_SAMPLE_DOCUMENTS_H_

#include <array>
#include <string_view>

#include "tools/devserver/archive/database.h"

namespace oxaqrycln::devserver {

// Adds documents with IDs from 1001 to the nine archives in turn, which must exist.
void AddSampleDocuments(Database& database, int count);

inline constexpr std::array<std::string_view, 5> kOrderStatuses = {"open", "accepted", "loaded", "delivered",
                                                                   "cancelled"};
// Adds an order for every letter and fax received, and for some customer orders, which have no page images.
void AddSampleOrders(Database& database);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_SAMPLE_DOCUMENTS_H_
