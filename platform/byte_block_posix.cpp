#include "platform/byte_block.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <utility>

#include "platform/errors.h"

namespace oxaqrycln {
namespace {

// From this capacity on a block is a mapping of its own: untouched pages cost nothing, and huge pages spare most of
// the page faults. Smaller blocks come from the heap.
constexpr std::size_t kMappedFrom = 1U << 20U;
constexpr std::size_t kPage = 4096;

// What is worth keeping, and what is too much to be kept.
constexpr std::size_t kSpareFrom = 16U << 20U;
constexpr std::size_t kSpareUpTo = 256U << 20U;

// The block that is kept; has no destructor, so that nothing runs when the process or library ends.
struct Spare {
  std::mutex mutex;
  char* data = nullptr;
  std::size_t capacity = 0;
};
constinit Spare spare;

void Unmap(char* data, std::size_t capacity) noexcept {
  if (data != nullptr) munmap(data, capacity);
}

// A kept block of at least byteCount bytes, and not of much more; nullptr when there is none.
char* TakeSpare(std::size_t byteCount, std::size_t& capacity) noexcept {
  if (byteCount < kSpareFrom) return nullptr;
  const std::lock_guard lock(spare.mutex);
  if (spare.capacity < byteCount || spare.capacity / 2 > byteCount) return nullptr;
  capacity = std::exchange(spare.capacity, 0);
  return std::exchange(spare.data, nullptr);
}

// Keeps the block in the place of the one that was kept; false when it is not worth it.
bool KeepSpare(char* data, std::size_t capacity) noexcept {
  if (capacity < kSpareFrom || capacity > kSpareUpTo) return false;
  {
    const std::lock_guard lock(spare.mutex);
    std::swap(spare.data, data);
    std::swap(spare.capacity, capacity);
  }
  Unmap(data, capacity);
  return true;
}

char* Map(std::size_t byteCount) {
  void* memory = mmap(nullptr, byteCount, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (memory == MAP_FAILED) throw RuntimeError(error::kOutOfMemory);
  madvise(memory, byteCount, MADV_HUGEPAGE);
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
  std::size_t rounded = (byteCount + kPage - 1) / kPage * kPage;
  if (capacity_ >= kMappedFrom) {
    void* moved = mremap(data_, capacity_, rounded, MREMAP_MAYMOVE);
    if (moved == MAP_FAILED) throw RuntimeError(error::kOutOfMemory);
    data_ = static_cast<char*>(moved);
  } else {
    char* mapped = TakeSpare(rounded, rounded);
    if (mapped == nullptr) mapped = Map(rounded);
    if (size_ > 0) std::memcpy(mapped, data_, size_);
    std::free(data_);
    data_ = mapped;
  }
  capacity_ = rounded;
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
  } else if (!KeepSpare(data_, capacity_)) {
    Unmap(data_, capacity_);
  }
  data_ = nullptr;
  size_ = 0;
  capacity_ = 0;
}

void ByteBlock::ReleaseSpare() noexcept {
  char* data = nullptr;
  std::size_t capacity = 0;
  {
    const std::lock_guard lock(spare.mutex);
    std::swap(spare.data, data);
    std::swap(spare.capacity, capacity);
  }
  Unmap(data, capacity);
}

}  // namespace oxaqrycln
