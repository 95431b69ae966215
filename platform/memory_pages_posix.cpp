#include "platform/memory_pages.h"

#include <sys/mman.h>

namespace oxaqrycln {

// The pages have the ordinary size: huge ones avoid most page faults, but a virtual machine often has to get them from
// its host first, which was measured to take several times as long as everything else.
char* MapPages(std::size_t byteCount) noexcept {
  void* memory = mmap(nullptr, byteCount, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  return memory == MAP_FAILED ? nullptr : static_cast<char*>(memory);
}

char* GrowPages(char* pages, std::size_t byteCount, std::size_t newByteCount) noexcept {
  void* moved = mremap(pages, byteCount, newByteCount, MREMAP_MAYMOVE);
  return moved == MAP_FAILED ? nullptr : static_cast<char*>(moved);
}

void UnmapPages(char* pages, std::size_t byteCount) noexcept { munmap(pages, byteCount); }

void PopulatePages(char* pages, std::size_t byteCount) noexcept { madvise(pages, byteCount, MADV_POPULATE_WRITE); }

}  // namespace oxaqrycln
