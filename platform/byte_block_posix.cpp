#include "platform/byte_block.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "values/errors.h"

namespace oxaqrycln {
namespace {

// From this capacity on a block is a mapping of its own: untouched pages cost nothing. Its pages are ordinary ones:
// huge pages spare most of the page faults, but a virtual machine often has to get theirs from its host first, which
// was measured to take several times as long as all the rest. Smaller blocks come from the heap.
constexpr std::size_t kMappedFrom = 1U << 20U;
constexpr std::size_t kPage = 4096;

constexpr std::size_t RoundedToPage(std::size_t byteCount) { return (byteCount + kPage - 1) / kPage * kPage; }

char* Map(std::size_t byteCount) {
  void* memory = mmap(nullptr, byteCount, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (memory == MAP_FAILED) throw RuntimeError(error::kOutOfMemory);
  return static_cast<char*>(memory);
}

}  // namespace

void ByteBlock::Reserve(std::size_t byteCount) {
  if (byteCount <= capacity_) return;
  if (byteCount < kMappedFrom) {
    void* grown = std::realloc(data_, byteCount);  // NOLINT: grown is kept below, data_ stays on failure
    if (grown == nullptr) throw RuntimeError(error::kOutOfMemory);
    data_ = static_cast<char*>(grown);
    capacity_ = byteCount;
    return;
  }
  const std::size_t rounded = RoundedToPage(byteCount);
  if (capacity_ >= kMappedFrom) {
    void* moved = mremap(data_, capacity_, rounded, MREMAP_MAYMOVE);
    if (moved == MAP_FAILED) throw RuntimeError(error::kOutOfMemory);
    data_ = static_cast<char*>(moved);
  } else {
    char* mapped = Map(rounded);
    if (size_ > 0) std::memcpy(mapped, data_, size_);
    std::free(data_);
    data_ = mapped;
  }
  capacity_ = rounded;
}

std::size_t ByteBlock::MakePages(std::size_t byteCount) noexcept {
  if (capacity_ < kMappedFrom) return capacity_;
  const std::size_t begin = size_ / kPage * kPage;
  const std::size_t end = std::min(capacity_, RoundedToPage(size_ + byteCount));
  // A system that cannot do it makes them one by one.
  if (begin < end) madvise(data_ + begin, end - begin, MADV_POPULATE_WRITE);
  return end;
}

void ByteBlock::Append(std::string_view bytes) {
  if (bytes.empty()) return;
  if (size_ + bytes.size() > capacity_) Reserve(std::max(size_ + bytes.size(), capacity_ + capacity_ / 2));
  std::memcpy(data_ + size_, bytes.data(), bytes.size());
  size_ += bytes.size();
}

void ByteBlock::Release() noexcept {
  if (capacity_ < kMappedFrom) {
    std::free(data_);
  } else {
    munmap(data_, capacity_);
  }
  data_ = nullptr;
  size_ = 0;
  capacity_ = 0;
}

}  // namespace oxaqrycln
