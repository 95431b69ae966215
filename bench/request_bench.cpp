// Requests a second with answers of 100 rows, and bytes a second with a million rows, compared with the plain limit.
#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

#include "bench/answers.h"
#include "bench/bench_query.h"
#include "bench/plain_client.h"

namespace oxaqrycln::bench {
namespace {

void PlainRequests(benchmark::State& state) {
  const auto rows = static_cast<int>(state.range(0));
  const std::size_t byteCount = Framed(HitList(rows)).size();
  const std::string request = PlainText(rows);
  std::vector<char> buffer(byteCount + 65536);
  std::memset(buffer.data(), 1, buffer.size());
  PlainRequest(TheServer().port(), request, buffer, byteCount);  // the server makes the answer once
  for (auto _ : state) {
    if (PlainRequest(TheServer().port(), request, buffer, byteCount) != byteCount) state.SkipWithError("cut short");
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(byteCount));
}
BENCHMARK(PlainRequests)->Arg(100)->Arg(1'000'000)->UseRealTime();

void ComponentRequests(benchmark::State& state) {
  const auto rows = static_cast<int>(state.range(0));
  BenchQuery page;
  page.Search(rows);
  for (auto _ : state) {
    if (page.Search(rows) != rows + 1) state.SkipWithError("wrong number of rows");
    if (rows <= 100 && page.Walk() != rows + 1) state.SkipWithError("the walk ended early");
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(Framed(HitList(rows)).size()));
}
BENCHMARK(ComponentRequests)->Arg(100)->Arg(1'000'000)->UseRealTime();

// For hosts in other languages, whose pages may leave rows unread.
void RequestsWithoutWalk(benchmark::State& state) {
  const auto rows = static_cast<int>(state.range(0));
  BenchQuery page;
  for (auto _ : state) {
    if (page.Search(rows) != rows + 1) state.SkipWithError("wrong number of rows");
  }
}
BENCHMARK(RequestsWithoutWalk)->Arg(100)->UseRealTime();

}  // namespace
}  // namespace oxaqrycln::bench
