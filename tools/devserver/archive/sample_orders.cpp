#include "tools/devserver/archive/sample_orders.h"

#include "tools/devserver/archive/sample_documents.h"

namespace oxaqrycln::devserver {
namespace {

constexpr std::array<std::string_view, 7> kPlaces = {"Ostwind, Kai 3", "Ährental",        "Überbach", "Größling am See",
                                                     "Brandach",       "Fønsby, Denmark", "Sankt Mia"};

}  // namespace

void AddSampleOrders(Database& database) {
  Statement documents(database,
                      "SELECT id, version, customer, date FROM document "
                      "WHERE archive_id IN (1, 3) OR (archive_id = 5 AND id % 5 = 0) ORDER BY id");
  Statement insert(
      database,
      "INSERT INTO transport_order (id, status, document_id, version, customer, origin, destination, date, "
      "weight) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)");
  for (std::size_t index = 0; documents.executeStep(); ++index) {
    const std::size_t origin = index * 5 % kPlaces.size();
    const std::size_t destination = (origin + 1 + index % (kPlaces.size() - 1)) % kPlaces.size();
    const std::size_t weight = 5 + index * 37 % 240;  // in 100 kg
    insert.Run(Utf8{Format("FA-%04zu", index + 1)}, Utf8{kOrderStatuses[index * 3 % kOrderStatuses.size()]},
               documents.Number(0), documents.Number(1), documents.Text(2), Utf8{kPlaces[origin]},
               Utf8{kPlaces[destination]}, documents.Text(3), Utf8{Format("%zu,%zu", weight / 10, weight % 10)});
  }
}

}  // namespace oxaqrycln::devserver
