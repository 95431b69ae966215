#include "platform/byte_block.h"

#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <chrono>
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
constexpr std::size_t kSpareUpTo = 128U << 20U;

void Unmap(char* data, std::size_t capacity) noexcept {
  if (data != nullptr) munmap(data, capacity);
}

// The blocks that are kept: two, since an answer is received while the one before it is still held.
class SpareBlocks {
 public:
  constexpr SpareBlocks() noexcept = default;
  ~SpareBlocks() { GiveBack(std::chrono::seconds::zero()); }
  SpareBlocks(const SpareBlocks&) = delete;
  SpareBlocks& operator=(const SpareBlocks&) = delete;

  // One of at least byteCount bytes, and not of much more; nullptr when there is none.
  char* Take(std::size_t byteCount, std::size_t& capacity) noexcept {
    if (byteCount < kSpareFrom) return nullptr;
    const std::lock_guard lock(mutex_);
    for (Spare& spare : spares_) {
      if (spare.capacity < byteCount || spare.capacity / 2 > byteCount) continue;
      capacity = spare.capacity;
      return std::exchange(spare, {}).data;
    }
    return nullptr;
  }

  // Takes the place of the one that has been kept longest.
  void Keep(char* data, std::size_t capacity) noexcept {
    Spare spare{data, capacity, std::chrono::steady_clock::now()};
    {
      const std::lock_guard lock(mutex_);
      std::swap(*std::ranges::min_element(spares_, {}, &Spare::keptAt), spare);
    }
    Unmap(spare.data, spare.capacity);
  }

  void GiveBack(std::chrono::seconds unusedFor) noexcept {
    const auto latest = std::chrono::steady_clock::now() - unusedFor;
    std::array<Spare, kMost> old{};
    {
      const std::lock_guard lock(mutex_);
      for (std::size_t i = 0; i < kMost; ++i) {
        if (spares_[i].keptAt <= latest) {
          old[i] = std::exchange(spares_[i], {});
        } else {
          MakeReclaimable(spares_[i]);
        }
      }
    }
    for (const Spare& spare : old) Unmap(spare.data, spare.capacity);
  }

 private:
  static constexpr std::size_t kMost = 2;
  struct Spare {
    char* data = nullptr;
    std::size_t capacity = 0;
    std::chrono::steady_clock::time_point keptAt;
    bool reclaimable = false;
  };
  // From now on the system may take the pages, one by one, until they are written to again.
  static void MakeReclaimable(Spare& spare) noexcept {
    if (!std::exchange(spare.reclaimable, true)) madvise(spare.data, spare.capacity, MADV_FREE);
  }

  std::mutex mutex_;
  std::array<Spare, kMost> spares_;
};
constinit SpareBlocks spareBlocks;

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
    char* mapped = spareBlocks.Take(rounded, rounded);
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
  } else if (capacity_ >= kSpareFrom && capacity_ <= kSpareUpTo) {
    spareBlocks.Keep(data_, capacity_);
  } else {
    Unmap(data_, capacity_);
  }
  data_ = nullptr;
  size_ = 0;
  capacity_ = 0;
}

void ByteBlock::GiveBackSpares(std::chrono::seconds unusedFor) noexcept { spareBlocks.GiveBack(unusedFor); }

}  // namespace oxaqrycln
