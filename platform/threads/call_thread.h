// call_thread.h - a thread for calls that may never return, so that their caller can abandon them in time.
#ifndef OXAQRYCLN_PLATFORM_THREADS_CALL_THREAD_H_
#define OXAQRYCLN_PLATFORM_THREADS_CALL_THREAD_H_

#include <chrono>
#include <functional>
#include <memory>
#include <thread>

namespace oxaqrycln {

class CallThread {
 public:
  // The thread is made by the first call.
  CallThread();
  // Ends the thread, unless a call was abandoned.
  ~CallThread();
  CallThread(const CallThread&) = delete;
  CallThread& operator=(const CallThread&) = delete;

  // Runs the call on the thread and raises what it raises. False when the limit passes first: the call is then
  // abandoned with everything that it owns, the thread ends after it, and nothing more can be run. Raises Out of memory
  // when no thread can be made.
  bool Run(std::function<void()> call, std::chrono::milliseconds limit);

 private:
  struct Shared;

  std::shared_ptr<Shared> shared_;
  std::thread thread_;
  bool isLost_ = false;  // a call was abandoned
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_THREADS_CALL_THREAD_H_
