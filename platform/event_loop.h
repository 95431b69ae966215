// event_loop.h - the cooperative yield of an apartment: socket events, timers and posted calls run inside it.
// Holds nothing of the operating system; belongs to one thread.
#ifndef OXAQRYCLN_PLATFORM_EVENT_LOOP_H_
#define OXAQRYCLN_PLATFORM_EVENT_LOOP_H_

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include "platform/clock.h"
#include "platform/poller.h"

namespace oxaqrycln {

// Is called when a watched socket is ready. May end its own watch or any other.
class ReadySink {
 public:
  virtual void OnReady(Ready found) = 0;

 protected:
  ~ReadySink() = default;
};

class EventLoop {
 public:
  using WatchId = std::uint64_t;  // 0 is no watch
  using SteadyPoint = Clock::SteadyPoint;

  explicit EventLoop(const Clock& clock) noexcept : clock_(clock) {}
  EventLoop(const EventLoop&) = delete;
  EventLoop& operator=(const EventLoop&) = delete;

  WatchId Watch(NativeSocket socket, Ready wanted, ReadySink& sink);
  void Change(WatchId watch, Ready wanted) noexcept;
  void Unwatch(WatchId watch) noexcept;

  // Runs a call of the host inside the next yield; to be posted from the loop's own thread. What the call throws leaves
  // through the yield; the calls posted after it run in the next one.
  void Post(std::function<void()> call) { posted_.push_back(std::move(call)); }

  // Runs the timers that are due and nothing else; false when none was.
  bool RunDueTimers() { return RunDueTimers(clock_.SteadyNow()); }
  // Runs what is ready and returns without waiting.
  void RunReady();
  // The same, but waits in the poller for something to run, at the latest until the time given.
  void RunUntil(SteadyPoint latest);

  // The next wait starts with a few microseconds of spinning: the event is likely to come before a parked thread could
  // be woken.
  void ExpectSoon() noexcept { expectsSoon_ = true; }

  const Clock& clock() const noexcept { return clock_; }

 private:
  friend class Timer;
  struct Watched {
    WatchId id;
    ReadySink* sink;
  };
  bool RunPosted();
  bool RunDueTimers(SteadyPoint now);
  void SpinUntil(SteadyPoint until) const noexcept;
  SteadyPoint NextTimer(SteadyPoint latest) const noexcept;
  void Dispatch();

  const Clock& clock_;
  std::vector<PollEntry> entries_;  // entries_[i] is polled for watched_[i]
  std::vector<Watched> watched_;
  WatchId lastId_ = 0;
  bool expectsSoon_ = false;
  std::vector<class Timer*> timers_;
  std::vector<std::function<void()>> posted_;
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_EVENT_LOOP_H_
