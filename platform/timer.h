// timer.h - calls back at a fixed interval, inside the yields of its loop. Late when nothing yields; never
// reentered.
#ifndef OXAQRYCLN_PLATFORM_TIMER_H_
#define OXAQRYCLN_PLATFORM_TIMER_H_

#include <chrono>
#include <functional>

#include "platform/event_loop.h"

namespace oxaqrycln {

class Timer {
 public:
  // Made disabled. The loop must outlive the timer.
  Timer(EventLoop& loop, std::chrono::milliseconds interval, std::function<void()> onTick);
  ~Timer();
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;

  // A different interval starts counting now; setting the same one again changes nothing, so that repeated calls do not
  // keep the timer from ticking.
  void SetInterval(std::chrono::milliseconds interval) noexcept;
  void Enable(bool enabled) noexcept;

 private:
  friend class EventLoop;
  bool FireIfDue(EventLoop::SteadyPoint now);
  EventLoop::SteadyPoint NextDue() const noexcept {
    return enabled_ && !ticking_ ? due_ : EventLoop::SteadyPoint::max();
  }

  EventLoop& loop_;
  std::chrono::milliseconds interval_;
  std::function<void()> onTick_;
  EventLoop::SteadyPoint due_{};
  bool enabled_ = false;
  bool ticking_ = false;  // the tick itself yields
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_TIMER_H_
