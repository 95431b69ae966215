#include "tests/support/allocations.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>

namespace oxaqrycln::testing {
namespace {

constexpr std::int64_t kNever = -1;

thread_local std::int64_t allocationsLeft = kNever;  // before the one that fails
thread_local std::int64_t heldBytes = 0;
thread_local std::int64_t mostBytes = 0;

void* Allocate(std::size_t byteCount) {
  if (allocationsLeft != kNever && allocationsLeft-- == 0) throw std::bad_alloc();
  void* const block = std::malloc(byteCount);  // NOLINT
  if (block == nullptr) throw std::bad_alloc();
  heldBytes += static_cast<std::int64_t>(malloc_usable_size(block));
  mostBytes = std::max(mostBytes, heldBytes);
  return block;
}

void* AllocateOrNull(std::size_t byteCount) noexcept {
  try {
    return Allocate(byteCount);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void Free(void* block) noexcept {
  if (block != nullptr) heldBytes -= static_cast<std::int64_t>(malloc_usable_size(block));
  std::free(block);  // NOLINT
}

}  // namespace

AllocationFailure::AllocationFailure(std::int64_t after) noexcept { allocationsLeft = after; }
AllocationFailure::~AllocationFailure() { allocationsLeft = kNever; }
bool AllocationFailure::HasHappened() const noexcept { return allocationsLeft == kNever; }

AllocationPeak::AllocationPeak() noexcept : start_(heldBytes) { mostBytes = heldBytes; }
std::size_t AllocationPeak::ByteCount() const noexcept { return static_cast<std::size_t>(mostBytes - start_); }

}  // namespace oxaqrycln::testing

void* operator new(std::size_t byteCount) { return oxaqrycln::testing::Allocate(byteCount); }
void* operator new(std::size_t byteCount, const std::nothrow_t& /*tag*/) noexcept {
  return oxaqrycln::testing::AllocateOrNull(byteCount);
}
void operator delete(void* block) noexcept { oxaqrycln::testing::Free(block); }
void operator delete(void* block, std::size_t /*byteCount*/) noexcept { oxaqrycln::testing::Free(block); }
