// process_fork.h - tells a process from the child that fork() makes of it.
#ifndef OXAQRYCLN_PLATFORM_THREADS_PROCESS_FORK_H_
#define OXAQRYCLN_PLATFORM_THREADS_PROCESS_FORK_H_

#include <cstdint>

namespace oxaqrycln {

// Changes in every child process that is made after the first WatchForks().
std::uint32_t ForkCount() noexcept;
// Has before() called ahead of each fork() of the process, and inParent() or inChild() behind it, all on the thread
// that forks: to hold a lock meanwhile. To be called once. Raises std::bad_alloc. Nothing on a system without fork().
void WatchForks(void (*before)(), void (*inParent)(), void (*inChild)());

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_THREADS_PROCESS_FORK_H_
