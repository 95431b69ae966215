// A search of 1,000 rows whose texts are all taken through the C interface; SearchAndWalk/1000 is the same through the
// class.
#include <benchmark/benchmark.h>

#include <array>
#include <stdexcept>
#include <string>
#include <string_view>

#include "automation/c/oxaqrycln.h"
#include "bench/bench_query.h"

namespace oxaqrycln::bench {
namespace {

constexpr int kRows = 1000;

void Check(std::int32_t code) {
  if (code != OXAQRY_OK) throw std::runtime_error(oxaqry_last_error());
}

std::int32_t MemberOf(std::string_view name) {
  std::int32_t number = 0;
  Check(oxaqry_find_member(name.data(), name.size(), &number));
  return number;
}

class CQuery {
 public:
  CQuery() {
    Check(oxaqry_query_new(&query_));
    for (oxaqry_value*& value : values_) Check(oxaqry_value_new(&value));
    for (const auto& [name, text] : {std::pair{"strSessionID", std::string("S1")},
                                     {"strTELOUser", "webuser"},
                                     {"lngRequestTimeout", "60"},
                                     {"RemoteHosts", "127.0.0.1," + std::to_string(TheServer().port())}}) {
      SetText(0, text);
      Check(oxaqry_set_variable(query_, MemberOf(name), values_[0]));
    }
    Check(oxaqry_value_set_boolean(values_[0], 0));
    Check(oxaqry_call(query_, MemberOf("Init"), values_.data(), 1, nullptr));
  }
  ~CQuery() {
    for (oxaqry_value* const value : values_) oxaqry_value_free(value);
    oxaqry_query_free(query_);
  }
  CQuery(const CQuery&) = delete;
  CQuery& operator=(const CQuery&) = delete;

  void Search() {
    SetText(0, "rows:" + std::to_string(kRows));
    Check(oxaqry_value_set_long(values_[1], kRows));
    Check(oxaqry_value_set_long(values_[2], kRows));
    SetText(3, "");
    SetText(4, "");
    Check(oxaqry_call(query_, init_, values_.data(), 5, values_[5]));
  }

  // Returns how many rows there were.
  int TakeRowByRow(std::int32_t encoding) {
    for (int rows = 0;; ++rows) {
      std::array<const char*, 5> texts{};
      std::array<std::size_t, 5> lengths{};
      Check(
          oxaqry_call_for_texts(query_, next_, values_.data(), 4, values_[4], encoding, texts.data(), lengths.data()));
      benchmark::DoNotOptimize(texts);
      if (lengths[0] == 0) return rows;
    }
  }

  int TakeTogether() {
    constexpr std::array<std::int32_t, 4> kColumns = {0, 1, 2, 3};
    oxaqry_rows* rows = nullptr;
    Check(oxaqry_fetch_rows(query_, next_, kRows + 1, kColumns.data(), 4, OXAQRY_UNTIL_END, OXAQRY_UTF8, &rows));
    std::int32_t count = 0;
    const char* block = nullptr;
    const std::uint32_t* offsets = nullptr;
    Check(oxaqry_rows_read(rows, &count, nullptr, &block, &offsets));
    for (std::int32_t text = 0; text < count * 5; ++text) {
      benchmark::DoNotOptimize(std::string_view(block + offsets[text], offsets[text + 1] - offsets[text]));
    }
    Check(oxaqry_rows_free(rows));
    return count;
  }

 private:
  void SetText(std::size_t position, std::string_view text) {
    Check(oxaqry_value_set_text(values_[position], text.data(), text.size(), OXAQRY_UTF8));
  }

  oxaqry_query* query_ = nullptr;
  std::array<oxaqry_value*, 6> values_{};
  const std::int32_t init_ = MemberOf("TELOQueryArchiveInit");
  const std::int32_t next_ = MemberOf("TELOQueryArchiveNext");
};

template <typename Take>
void Measure(benchmark::State& state, Take&& take) {
  CQuery query;
  query.Search();
  for (auto _ : state) {
    query.Search();
    if (take(query) != kRows + 1) state.SkipWithError("rows are missing");
  }
  state.SetItemsProcessed(state.iterations() * kRows);
}

// 0 is UTF-8, 1 is Windows-1252.
void CRowByRow(benchmark::State& state) {
  const auto encoding = static_cast<std::int32_t>(state.range(0));
  Measure(state, [&](CQuery& query) { return query.TakeRowByRow(encoding); });
}
BENCHMARK(CRowByRow)->Arg(OXAQRY_UTF8)->Arg(OXAQRY_WINDOWS_1252)->UseRealTime();

void CFetchRows(benchmark::State& state) {
  Measure(state, [](CQuery& query) { return query.TakeTogether(); });
}
BENCHMARK(CFetchRows)->UseRealTime();

}  // namespace
}  // namespace oxaqrycln::bench
