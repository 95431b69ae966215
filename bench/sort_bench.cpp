// The sort of the channel list beside a stable sort of upper-cased keys that are ready.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>
#include <vector>

#include "bench/answers.h"
#include "platform/code_page.h"
#include "transport/response_buffer.h"

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

}  // namespace
}  // namespace oxaqrycln::bench
