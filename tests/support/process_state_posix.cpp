#include <ctime>
#include <fstream>
#include <iterator>

#include "tests/support/process_state.h"

namespace oxaqrycln::testing {
namespace {

namespace fs = std::filesystem;

std::size_t Entries(const char* directory) {
  return static_cast<std::size_t>(std::distance(fs::directory_iterator(directory), fs::directory_iterator()));
}

}  // namespace

fs::path ProgramPath() { return fs::read_symlink("/proc/self/exe"); }

std::size_t OpenDescriptors() { return Entries("/proc/self/fd"); }

std::size_t ThreadCount() { return Entries("/proc/self/task"); }

std::size_t ResidentBytes() {
  std::size_t all = 0;
  std::size_t resident = 0;
  std::ifstream("/proc/self/statm") >> all >> resident;
  return resident * 4096;
}

std::chrono::nanoseconds ThreadTime() {
  timespec used{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
  return std::chrono::seconds(used.tv_sec) + std::chrono::nanoseconds(used.tv_nsec);
}

}  // namespace oxaqrycln::testing
