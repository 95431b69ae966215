// The sorts of the channel list and of a hit list compared with a stable sort of keys that are ready.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>
#include <vector>

#include "bench/answers.h"
#include "bench/bench_query.h"
#include "support/response_buffer.h"
#include "values/code_page.h"

namespace oxaqrycln::bench {
namespace {

constexpr int kLines = 100'000;

ResponseBuffer Channels() {
  ByteBlock text;
  text.Append(ChannelLines(kLines));
  ResponseBuffer buffer;
  buffer.Assign(std::move(text), 0);
  return buffer;
}

void SortReadyKeys(benchmark::State& state) {
  const ResponseBuffer channels = Channels();
  std::vector<std::string> ready;
  for (std::int32_t i = 0; i < channels.Count(); ++i) ready.push_back(UpperCase(channels.Line(i)));
  for (auto _ : state) {
    state.PauseTiming();
    std::vector<std::string> keys = ready;
    state.ResumeTiming();
    std::ranges::stable_sort(keys);
    benchmark::DoNotOptimize(keys);
  }
}
BENCHMARK(SortReadyKeys)->UseRealTime();

void SortChannels(benchmark::State& state) {
  const ResponseBuffer ready = Channels();
  for (auto _ : state) {
    state.PauseTiming();
    ResponseBuffer channels = ready;
    state.ResumeTiming();
    channels.Sort();
    benchmark::DoNotOptimize(channels);
  }
}
BENCHMARK(SortChannels)->UseRealTime();

constexpr int kRows = 1'000'000;
constexpr int kTitleColumn = 1;
constexpr int kDateColumn = 3;

// The upper-cased title of each row, or its date as year, month, day.
std::vector<std::string> ReadyHitKeys(int column) {
  BenchQuery page;
  page.Search(kRows);
  std::vector<std::string> keys;
  page.query.TELOQueryArchiveNext();
  for (std::string row; !(row = page.query.TELOQueryArchiveNext()).empty();) {  // ^title^,^customer^,^dd.mm.yyyy^
    if (column == kTitleColumn) {
      keys.push_back(UpperCase(row.substr(1, row.find("^,^") - 1)));
    } else {
      const std::string date = row.substr(row.size() - 11, 10);
      keys.push_back(date.substr(6) + date.substr(3, 2) + date.substr(0, 2));
    }
  }
  return keys;
}

void SortReadyHitKeys(benchmark::State& state) {
  const std::vector<std::string> ready = ReadyHitKeys(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    state.PauseTiming();
    std::vector<std::string> keys = ready;
    state.ResumeTiming();
    std::ranges::stable_sort(keys);
    benchmark::DoNotOptimize(keys);
  }
}
BENCHMARK(SortReadyHitKeys)->Arg(kTitleColumn)->Arg(kDateColumn)->UseRealTime();

void SortHitList(benchmark::State& state) {
  BenchQuery page;
  for (auto _ : state) {
    state.PauseTiming();
    page.Search(kRows);
    state.ResumeTiming();
    const Variant rows = page.query.TELOSortHitlistInit(static_cast<std::int32_t>(state.range(0)));
    if (rows.ToLong() != kRows + 1) state.SkipWithError("the hit list was not sorted");
  }
}
BENCHMARK(SortHitList)->Arg(kTitleColumn)->Arg(kDateColumn)->UseRealTime();

}  // namespace
}  // namespace oxaqrycln::bench
