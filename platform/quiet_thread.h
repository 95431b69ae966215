// quiet_thread.h - a thread of the component inside somebody else's process: no signal of the process ends on it.
#ifndef OXAQRYCLN_PLATFORM_QUIET_THREAD_H_
#define OXAQRYCLN_PLATFORM_QUIET_THREAD_H_

#include <functional>
#include <thread>

namespace oxaqrycln {

// Starts a thread that runs the body. Raises Out of memory when there is no thread to be had.
std::thread StartQuietThread(std::function<void()> body);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_QUIET_THREAD_H_
