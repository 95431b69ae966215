// The benchmarks; with one of these options, a program for a measurement of the whole process:
//   oxaqrycln_bench --requests N   sends N searches of 100 rows and nothing else (system calls)
//   oxaqrycln_bench --peak ROWS    one search; prints the peak memory that it added and the size of the answer
//   oxaqrycln_bench --sort ROWS    one search and two sorts; prints the peak memory that the sorts added and the rows
//   oxaqrycln_bench --first ROWS   prints the nanoseconds of the limit and of the first search of a process
//   oxaqrycln_bench --serve        prints the port of the benchmarks' server, which ends with standard input
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "bench/answers.h"
#include "bench/bench_query.h"
#include "bench/plain_client.h"

namespace {

using oxaqrycln::bench::BenchQuery;

long PeakKilobytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

long PresentKilobytes() {
  std::ifstream file("/proc/self/statm");  // sizes in pages: of the addresses, of what is there of them
  long addresses = 0;
  long present = 0;
  file >> addresses >> present;
  return present * (sysconf(_SC_PAGESIZE) / 1024);
}

int SendRequests(int count) {
  BenchQuery page;
  for (int i = 0; i < count; ++i) {
    if (page.Search(100) != 101) return 1;
  }
  return 0;
}

int MeasurePeak(int rows) {
  BenchQuery page;
  page.Search(10);
  const long before = PeakKilobytes();
  if (page.Search(rows) != rows + 1) return 1;
  const long added = (PeakKilobytes() - before) * 1024;
  const auto answer = static_cast<long>(oxaqrycln::bench::HitList(rows).size());
  std::printf("%ld %ld\n", added, answer);
  return 0;
}

int MeasureSort(int rows) {
  BenchQuery page;
  if (page.Search(rows) != rows + 1) return 1;
  const long before = PresentKilobytes();
  for (int sort = 0; sort < 2; ++sort) {  // the second one replaces an order
    if (page.query.TELOSortHitlistInit(1).ToLong() != rows + 1) return 1;
  }
  std::printf("%ld %d\n", (PeakKilobytes() - before) * 1024, rows);
  return 0;
}

template <typename Call>
long Nanoseconds(Call&& call) {
  const auto begin = std::chrono::steady_clock::now();
  call();
  return std::chrono::nanoseconds(std::chrono::steady_clock::now() - begin).count();
}

int MeasureFirst(int rows) {
  const std::size_t byteCount = oxaqrycln::bench::Framed(oxaqrycln::bench::HitList(rows)).size();
  const std::string request = oxaqrycln::bench::PlainText(rows);
  std::vector<char> buffer(byteCount + 65536, 'x');
  bool isWhole = true;
  const auto plain = [&] {
    const auto port = oxaqrycln::bench::TheServer().port();
    isWhole &= oxaqrycln::bench::PlainRequest(port, request, buffer, byteCount) == byteCount;
  };
  plain();  // the server makes the answer once
  BenchQuery page;
  const long limit = Nanoseconds(plain);
  const long component = Nanoseconds([&] { isWhole &= page.Search(rows) == rows + 1; });
  if (!isWhole) return 1;
  std::printf("%ld %ld\n", limit, component);
  return 0;
}

int Serve() {
  std::printf("%d\n", static_cast<int>(oxaqrycln::bench::TheServer().port()));
  std::fflush(stdout);
  while (std::getchar() != EOF) continue;
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  oxaqrycln::bench::TheServer();
  if (argc == 2 && std::string_view(argv[1]) == "--serve") return Serve();
  oxaqrycln::bench::StayOnProcessor(0);
  if (argc == 3 && std::string_view(argv[1]) == "--requests") return SendRequests(std::atoi(argv[2]));
  if (argc == 3 && std::string_view(argv[1]) == "--peak") return MeasurePeak(std::atoi(argv[2]));
  if (argc == 3 && std::string_view(argv[1]) == "--sort") return MeasureSort(std::atoi(argv[2]));
  if (argc == 3 && std::string_view(argv[1]) == "--first") return MeasureFirst(std::atoi(argv[2]));
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
