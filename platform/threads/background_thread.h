// background_thread.h - starts a thread of the component inside a host's process, with all signals blocked, so that no
// handler of the host runs on it.
#ifndef OXAQRYCLN_PLATFORM_THREADS_BACKGROUND_THREAD_H_
#define OXAQRYCLN_PLATFORM_THREADS_BACKGROUND_THREAD_H_

#include <functional>
#include <thread>

namespace oxaqrycln {

// Starts a thread that runs the body. Raises Out of memory when the system has no thread left, and std::bad_alloc. The
// signal mask of the calling thread is the same afterwards, also on failure.
std::thread StartBackgroundThread(std::function<void()> body);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_THREADS_BACKGROUND_THREAD_H_
