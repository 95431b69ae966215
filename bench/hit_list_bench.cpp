// The walk through a hit list compared with a hand-written split into five reused strings, and the cost of a row from a
// thousand rows to a million.
#include <benchmark/benchmark.h>

#include <array>
#include <cstring>
#include <string>

#include "bench/answers.h"
#include "bench/bench_query.h"

namespace oxaqrycln::bench {
namespace {

constexpr int kManyRows = 1'000'000;

// One row "^$(#channel)\archive^,^document^,^version^,^columns..." into channel, archive, document, version, columns.
void SplitByHand(std::string_view row, std::array<std::string, 5>& out) {
  const std::size_t first = row.find("^,^", 1);
  const std::size_t second = row.find("^,^", first + 3);
  const std::size_t third = row.find("^,^", second + 3);
  const std::size_t middle = row.find(")\\");
  out[0].assign(row, 4, middle - 4);
  out[1].assign(row, middle + 2, first - middle - 2);
  out[2].assign(row, first + 3, second - first - 3);
  out[3].assign(row, second + 3, third - second - 3);
  out[4].assign(row, third + 2);
}

void WalkByHand(benchmark::State& state) {
  const std::string text = HitList(kManyRows);
  std::size_t start = 0;
  for (int line = 0; line < 6; ++line) start = text.find("\r\n", start) + 2;
  std::array<std::string, 5> out;
  for (auto _ : state) {
    for (std::size_t at = start; at < text.size();) {
      const auto* end = static_cast<const char*>(std::memchr(text.data() + at, '\r', text.size() - at));
      const auto length = static_cast<std::size_t>(end - text.data()) - at;
      SplitByHand({text.data() + at, length}, out);
      benchmark::DoNotOptimize(out);
      at += length + 2;
    }
  }
  state.SetItemsProcessed(state.iterations() * kManyRows);
}
BENCHMARK(WalkByHand)->UseRealTime();

void WalkByComponent(benchmark::State& state) {
  BenchQuery page;
  for (auto _ : state) {
    state.PauseTiming();
    if (page.Search(kManyRows) != kManyRows + 1) state.SkipWithError("wrong number of rows");
    state.ResumeTiming();
    if (page.Walk() != kManyRows + 1) state.SkipWithError("the walk ended early");
  }
  state.SetItemsProcessed(state.iterations() * kManyRows);
}
BENCHMARK(WalkByComponent)->UseRealTime();

void SearchAndWalk(benchmark::State& state) {
  const auto rows = static_cast<int>(state.range(0));
  BenchQuery page;
  page.Search(rows);
  for (auto _ : state) {
    if (page.Search(rows) != rows + 1 || page.Walk() != rows + 1) state.SkipWithError("rows are missing");
  }
  state.SetItemsProcessed(state.iterations() * rows);
}
BENCHMARK(SearchAndWalk)->RangeMultiplier(10)->Range(1000, kManyRows)->UseRealTime();

}  // namespace
}  // namespace oxaqrycln::bench
