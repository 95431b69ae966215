#include "platform/clock.h"

#include "platform/local_time.h"

namespace oxaqrycln {

Clock::Duration Clock::SinceWholeSecond() const noexcept {
  if (wallIsSet_) return SteadyNow() - wallSetAt_;
  return std::chrono::system_clock::now().time_since_epoch() + advanced_;
}

DateTime Clock::Now() const noexcept {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(SinceWholeSecond()).count();
  if (wallIsSet_) return DateTime::FromSeconds(wall_.seconds() + seconds);
  return LocalTime(seconds);
}

Clock::Duration Clock::PassedOfSecond() const noexcept {
  const Duration since = SinceWholeSecond();
  return since - std::chrono::floor<std::chrono::seconds>(since);
}

void Clock::SetWall(DateTime now) noexcept {
  wallIsSet_ = true;
  wall_ = now;
  wallSetAt_ = SteadyNow();
}

}  // namespace oxaqrycln
