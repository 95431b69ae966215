// bench_query.h - a clsQuery against the canned server, and the request it sends for a number of rows.
#ifndef OXAQRYCLN_BENCH_BENCH_QUERY_H_
#define OXAQRYCLN_BENCH_BENCH_QUERY_H_

#include <string>

#include "bench/canned_server.h"
#include "component/clsQuery.h"

namespace oxaqrycln::bench {

struct BenchQuery {
  BenchQuery() {
    query.strSessionID = "S1";
    query.strTELOUser = "webuser";
    query.lngRequestTimeout = 60;
    query.RemoteHosts("127.0.0.1," + std::to_string(TheServer().port()));
    query.Init(false);
  }
  // -1 when it failed.
  int Search(int rows) {
    return query.TELOQueryArchiveInit("rows:" + std::to_string(rows), rows, rows, "", "").ToLong();
  }
  // All rows with all outputs; returns how many there were.
  int Walk() {
    int rows = 0;
    while (!query.TELOQueryArchiveNext(&channel, &archive, &document, &version).empty()) ++rows;
    return rows;
  }

  clsQuery query;
  Variant channel;
  Variant archive;
  Variant document;
  Variant version;
};

// The request that the component sends for the same search.
inline std::string PlainText(int rows) {
  const std::string n = std::to_string(rows);
  return "^S1^,^webuser^,^^,^QueryArchive^,^rows:" + n + "^,^" + n + "^,^" + n + "^,^^,^^,^^,^^";
}

}  // namespace oxaqrycln::bench

#endif  // OXAQRYCLN_BENCH_BENCH_QUERY_H_
