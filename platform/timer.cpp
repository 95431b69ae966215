#include "platform/timer.h"

#include <utility>

namespace oxaqrycln {

Timer::Timer(EventLoop& loop, std::chrono::milliseconds interval, std::function<void()> onTick)
    : loop_(loop), interval_(interval), onTick_(std::move(onTick)) {
  loop_.timers_.push_back(this);
}

Timer::~Timer() { std::erase(loop_.timers_, this); }

void Timer::SetInterval(std::chrono::milliseconds interval) noexcept {
  if (interval == interval_) return;
  interval_ = interval;
  due_ = loop_.clock().SteadyNow() + interval_;
}

void Timer::Enable(bool enabled) noexcept {
  if (enabled && !enabled_) due_ = loop_.clock().SteadyNow() + interval_;
  enabled_ = enabled;
}

bool Timer::FireIfDue(EventLoop::SteadyPoint now) {
  if (!enabled_ || ticking_ || now < due_) return false;
  due_ = now + interval_;
  struct Ticking {
    bool& flag;
    explicit Ticking(bool& which) : flag(which) { flag = true; }
    ~Ticking() { flag = false; }
  } const ticking(ticking_);
  onTick_();
  return true;
}

}  // namespace oxaqrycln
