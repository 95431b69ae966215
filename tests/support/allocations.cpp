#include "tests/support/allocations.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace oxaqrycln::testing {
namespace {

constexpr std::int64_t kNever = -1;
constexpr std::size_t kHeader = alignof(std::max_align_t);

thread_local std::int64_t allocationsLeft = kNever;  // before the one that fails
thread_local std::int64_t heldBytes = 0;
thread_local std::int64_t mostBytes = 0;

void* Allocate(std::size_t byteCount) {
  if (allocationsLeft != kNever && allocationsLeft-- == 0) throw std::bad_alloc();
  // Its size stands in front of each block.
  auto* const block = static_cast<std::size_t*>(std::malloc(kHeader + byteCount));  // NOLINT
  if (block == nullptr) throw std::bad_alloc();
  *block = byteCount;
  heldBytes += static_cast<std::int64_t>(byteCount);
  mostBytes = std::max(mostBytes, heldBytes);
  return reinterpret_cast<char*>(block) + kHeader;
}

void* AllocateOrNull(std::size_t byteCount) noexcept {
  try {
    return Allocate(byteCount);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void Free(void* block) noexcept {
  if (block == nullptr) return;
  void* const whole = static_cast<char*>(block) - kHeader;
  heldBytes -= static_cast<std::int64_t>(*static_cast<std::size_t*>(whole));
  std::free(whole);  // NOLINT
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
