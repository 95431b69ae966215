#include <pthread.h>

#include <atomic>
#include <new>

#include "platform/threads/process_fork.h"

namespace oxaqrycln {
namespace {

constinit std::atomic<std::uint32_t> forkCount = 0;
using ForkCall = void (*)();
constinit ForkCall afterFork = nullptr;  // in the child

void InChild() {
  forkCount.fetch_add(1, std::memory_order_relaxed);
  afterFork();
}

}  // namespace

std::uint32_t ForkCount() noexcept { return forkCount.load(std::memory_order_relaxed); }

void WatchForks(void (*before)(), void (*inParent)(), void (*inChild)()) {
  afterFork = inChild;
  if (pthread_atfork(before, inParent, &InChild) != 0) throw std::bad_alloc();
}

}  // namespace oxaqrycln
