// allocations.h - watches what operator new gives to the calling thread, and lets it fail. A test program that links
// this replaces the operators for all of its code.
#ifndef OXAQRYCLN_TESTS_SUPPORT_ALLOCATIONS_H_
#define OXAQRYCLN_TESTS_SUPPORT_ALLOCATIONS_H_

#include <cstddef>
#include <cstdint>

namespace oxaqrycln::testing {

// While it lives, the allocation that follows so many others on this thread raises std::bad_alloc, once.
class AllocationFailure {
 public:
  explicit AllocationFailure(std::int64_t after) noexcept;
  ~AllocationFailure();
  AllocationFailure(const AllocationFailure&) = delete;
  AllocationFailure& operator=(const AllocationFailure&) = delete;
  // Whether it has been raised.
  bool HasHappened() const noexcept;
};

// The largest sum of bytes that this thread has held beyond those at its start.
class AllocationPeak {
 public:
  AllocationPeak() noexcept;
  std::size_t ByteCount() const noexcept;

 private:
  std::int64_t start_;
};

}  // namespace oxaqrycln::testing

#endif  // OXAQRYCLN_TESTS_SUPPORT_ALLOCATIONS_H_
