// call_thread.h - a thread for calls that may never return, so that who makes them gives up in time.
#ifndef OXAQRYCLN_PLATFORM_THREADS_CALL_THREAD_H_
#define OXAQRYCLN_PLATFORM_THREADS_CALL_THREAD_H_

#include <chrono>
#include <functional>
#include <memory>
#include <thread>

namespace oxaqrycln {

class CallThread {
 public:
  // No thread is there before the first call.
  CallThread();
  // Ends the thread, unless a call was given up.
  ~CallThread();
  CallThread(const CallThread&) = delete;
  CallThread& operator=(const CallThread&) = delete;

  // Runs the call on the thread and raises what it raises. False when the limit passes before it is over: the call is
  // then left to itself, with all that it holds, and the thread ends behind it; nothing more can be run. Raises Out of
  // memory when there is no thread to be had.
  bool Run(std::function<void()> call, std::chrono::milliseconds limit);

 private:
  struct Desk;

  std::shared_ptr<Desk> desk_;
  std::thread thread_;
  bool isLost_ = false;  // a call was given up
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_THREADS_CALL_THREAD_H_
