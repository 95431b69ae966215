#include <winsock2.h>
// windows.h follows winsock2.h.
#include <windows.h>

#include <cstring>

#include "platform/memory_pages.h"

namespace oxaqrycln {

// Committed pages count against the limit of the system, but get memory only when they are first written to.
char* MapPages(std::size_t byteCount) noexcept {
  return static_cast<char*>(VirtualAlloc(nullptr, byteCount, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
}

// The system cannot move pages, so the bytes are copied.
char* GrowPages(char* pages, std::size_t byteCount, std::size_t newByteCount) noexcept {
  char* const larger = MapPages(newByteCount);
  if (larger == nullptr) return nullptr;
  std::memcpy(larger, pages, byteCount);
  UnmapPages(pages, byteCount);
  return larger;
}

void UnmapPages(char* pages, std::size_t /*byteCount*/) noexcept { VirtualFree(pages, 0, MEM_RELEASE); }

// The system has no call that makes pages for writing.
void PopulatePages(char* /*pages*/, std::size_t /*byteCount*/) noexcept {}

}  // namespace oxaqrycln
