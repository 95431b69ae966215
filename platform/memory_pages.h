// memory_pages.h - the system's calls for memory by the page. Sizes are multiples of kMemoryPage.
#ifndef OXAQRYCLN_PLATFORM_MEMORY_PAGES_H_
#define OXAQRYCLN_PLATFORM_MEMORY_PAGES_H_

#include <cstddef>

namespace oxaqrycln {

inline constexpr std::size_t kMemoryPage = 4096;

// Takes addresses; memory is made page by page when it is first written to. Null when there are none.
char* MapPages(std::size_t byteCount) noexcept;
// Makes a mapping larger, moving its pages where its addresses do not suffice. Null on failure; the mapping then stays.
char* GrowPages(char* pages, std::size_t byteCount, std::size_t newByteCount) noexcept;
void UnmapPages(char* pages, std::size_t byteCount) noexcept;
// Makes the memory of these pages at once, as far as the system can.
void PopulatePages(char* pages, std::size_t byteCount) noexcept;

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_MEMORY_PAGES_H_
