#include "platform/byte_block.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "platform/memory_pages.h"
#include "values/errors.h"

namespace oxaqrycln {
namespace {

// From this capacity on a block is a mapping of its own: untouched pages cost nothing. Smaller ones are on the heap.
constexpr std::size_t kMappedFrom = 1U << 20U;

constexpr std::size_t RoundedToPage(std::size_t byteCount) {
  return (byteCount + kMemoryPage - 1) / kMemoryPage * kMemoryPage;
}

char* OrOutOfMemory(void* memory) {
  if (memory == nullptr) throw RuntimeError(error::kOutOfMemory);
  return static_cast<char*>(memory);
}

}  // namespace

void ByteBlock::Reserve(std::size_t byteCount) {
  if (byteCount <= capacity_) return;
  if (byteCount < kMappedFrom) {
    data_ = OrOutOfMemory(std::realloc(data_, byteCount));  // NOLINT: a failure leaves data_ as it is
    capacity_ = byteCount;
    return;
  }
  const std::size_t rounded = RoundedToPage(byteCount);
  if (capacity_ >= kMappedFrom) {
    data_ = OrOutOfMemory(GrowPages(data_, capacity_, rounded));
  } else {
    char* mapped = OrOutOfMemory(MapPages(rounded));
    if (size_ > 0) std::memcpy(mapped, data_, size_);
    std::free(data_);
    data_ = mapped;
  }
  capacity_ = rounded;
}

std::size_t ByteBlock::MakePages(std::size_t byteCount) noexcept {
  if (capacity_ < kMappedFrom) return capacity_;
  const std::size_t begin = size_ / kMemoryPage * kMemoryPage;
  const std::size_t end = std::min(capacity_, RoundedToPage(size_ + byteCount));
  if (begin < end) PopulatePages(data_ + begin, end - begin);
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
    UnmapPages(data_, capacity_);
  }
  data_ = nullptr;
  size_ = 0;
  capacity_ = 0;
}

}  // namespace oxaqrycln
