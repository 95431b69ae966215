// Runs a query and prints its hit list: first_query HOST,PORT QUERY
#include <cstdlib>
#include <iostream>

#include "client/archive.h"

int main(int argc, char** argv) try {
  if (argc != 3) return std::cerr << "usage: first_query HOST,PORT QUERY\n", 2;
  const char* const password = std::getenv("ARCHIVE_PASSWORD");
  oxaqrycln::client::Settings settings{.hosts = argv[1], .user = "webuser", .password = password ? password : ""};
  oxaqrycln::client::Archive archive(settings);
  const auto hits = archive.Search({.query = argv[2], .max = 20, .format = "Full text"});
  std::cout << hits.total() << " hits\n";
  for (const auto& hit : hits) {
    std::cout << hit.document.channel << '/' << hit.document.archive << '/' << hit.document.id;
    for (const auto& value : hit.values) std::cout << "  " << value;
    std::cout << '\n';
  }
} catch (const oxaqrycln::client::Error& error) {
  std::cerr << error.what() << '\n';
  return 1;
}
