// Runs a query and prints its hit list, in Windows-1252 as the archive holds it: first_query HOST,PORT QUERY
#include <cstdlib>
#include <iostream>

#include "component/clsQuery.h"

int main(int argc, char** argv) {
  using namespace oxaqrycln;
  if (argc != 3) {
    std::cerr << "usage: first_query HOST,PORT QUERY\n";
    return 2;
  }
  clsQuery query;
  query.strTELOUser = "webuser";
  if (const char* password = std::getenv("ARCHIVE_PASSWORD")) query.strTELOPwd = password;
  query.lngRequestTimeout = 10;  // seconds
  query.RemoteHosts(argv[1]);
  if (!query.Init(false)) return 1;  // false: without the web user database

  Variant totalHits;
  Variant status;
  const Variant rows = query.TELOQueryArchiveInit(argv[2], /*lngMaxLines=*/20, /*lngQueryMax=*/1000, "Full text", "",
                                                  Missing, Missing, nullptr, nullptr, &totalHits, nullptr, &status);
  if (rows.ToLong() < 0) {
    std::cerr << status.ToText() << '\n';
    return 1;
  }
  std::cout << totalHits.ToText() << " hits\n";
  Variant archive;
  Variant documentId;
  for (std::int32_t row = 0; row < rows.ToLong(); ++row) {  // the first row holds the column titles
    const std::string columns = query.TELOQueryArchiveNext(nullptr, &archive, &documentId);
    std::cout << archive.ToText() << ' ' << documentId.ToText() << "  " << columns << '\n';
  }
}
