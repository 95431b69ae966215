#include "archive/hit_row.h"

#include <gtest/gtest.h>
#include <sys/mman.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "values/errors.h"

namespace oxaqrycln::testing {
namespace {

constexpr std::size_t kPage = 4096;

// Reading a byte behind a line at the end of the first page ends the program.
class PageBeforeUnreadableMemory {
 public:
  PageBeforeUnreadableMemory() : pages_(mmap(nullptr, 2 * kPage, PROT_READ | PROT_WRITE, kFlags, -1, 0)) {
    if (pages_ == MAP_FAILED || mprotect(static_cast<char*>(pages_) + kPage, kPage, PROT_NONE) != 0) std::abort();
  }
  ~PageBeforeUnreadableMemory() { munmap(pages_, 2 * kPage); }
  std::string_view AtItsEnd(std::string_view text) {
    char* const start = static_cast<char*>(pages_) + kPage - text.size();
    std::memcpy(start, text.data(), text.size());
    return {start, text.size()};
  }

 private:
  static constexpr int kFlags = MAP_PRIVATE | MAP_ANONYMOUS;
  void* pages_;
};

TEST(HitRow, IsReadWithoutAByteBehindItsLine) {
  PageBeforeUnreadableMemory page;
  const std::string row =
      "^$(#Mail)\\Inbox^,^1262^,^1^,^Oak shelves^,^Somebody^,^15.11.2026^,^and so on, to 100 bytes^";
  int read = 0;
  for (std::size_t size = 0; size <= row.size(); ++size) {
    Variant channel;
    std::string columns;
    try {
      ReadHitRow(page.AtItsEnd(std::string_view(row).substr(0, size)), false, {&channel, nullptr, nullptr, nullptr},
                 columns);
      ++read;
    } catch (const RuntimeError&) {  // the reference is not complete yet
    }
  }
  EXPECT_GT(read, 80);
}

}  // namespace
}  // namespace oxaqrycln::testing
