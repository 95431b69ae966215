#include "tools/devserver/archive/sample_orders.h"

#include <array>
#include <cstdio>
#include <string>
#include <string_view>

namespace oxaqrycln::devserver {
namespace {

constexpr std::array<std::string_view, 7> kPlaces = {"Ostwind, Kai 3", "Ährental",        "Überbach", "Größling am See",
                                                     "Brandach",       "Fønsby, Denmark", "Sankt Mia"};

std::string Formatted(const char* pattern, std::size_t first, std::size_t second = 0) {
  std::array<char, 32> buffer{};
  std::snprintf(buffer.data(), buffer.size(), pattern, first, second);
  return buffer.data();
}

}  // namespace

void AddSampleOrders(Database& database) {
  Statement documents(database,
                      "SELECT id, version, customer, date FROM document "
                      "WHERE archive_id IN (1, 3) OR (archive_id = 5 AND id % 5 = 0) ORDER BY id");
  Statement insert(
      database,
      "INSERT INTO transport_order (id, status, document_id, version, customer, origin, destination, date, "
      "weight) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)");
  for (std::size_t index = 0; documents.Next(); ++index) {
    const std::size_t origin = index * 5 % kPlaces.size();
    const std::size_t destination = (origin + 1 + index % (kPlaces.size() - 1)) % kPlaces.size();
    const std::size_t weight = 5 + index * 37 % 240;  // in 100 kg
    insert.BindUtf8(1, Formatted("FA-%04zu", index + 1)).BindUtf8(2, kOrderStatuses[index * 3 % kOrderStatuses.size()]);
    insert.Bind(3, documents.Number(0)).Bind(4, documents.Number(1)).Bind(5, std::string_view(documents.Text(2)));
    insert.BindUtf8(6, kPlaces[origin]).BindUtf8(7, kPlaces[destination]);
    insert.Bind(8, std::string_view(documents.Text(3))).BindUtf8(9, Formatted("%zu,%zu", weight / 10, weight % 10));
    insert.Run();
  }
}

}  // namespace oxaqrycln::devserver
