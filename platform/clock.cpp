#include "platform/clock.h"

#include <ctime>

namespace oxaqrycln {
namespace {

DateTime LocalSecond(std::time_t time) noexcept {
  std::tm local{};
  localtime_r(&time, &local);
  // Read off the calendar, so that a change of daylight time shows as the wall clock shows it.
  const CivilTime civil{local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
                        local.tm_hour,        local.tm_min,     local.tm_sec < 60 ? local.tm_sec : 59};
  return DateTime::FromCivil(civil);
}

}  // namespace

Clock::Reading Clock::Read() const noexcept {
  using std::chrono::duration_cast;
  using std::chrono::seconds;
  if (wallIsSet_) {
    const Duration since = SteadyNow() - wallSetAt_;
    const auto whole = std::chrono::floor<seconds>(since);
    return {DateTime::FromSeconds(wall_.seconds() + whole.count()), since - whole};
  }
  const auto now = std::chrono::system_clock::now().time_since_epoch() + advanced_;
  const auto whole = std::chrono::floor<seconds>(now);
  return {LocalSecond(static_cast<std::time_t>(whole.count())), duration_cast<Duration>(now - whole)};
}

void Clock::SetWall(DateTime now) noexcept {
  wallIsSet_ = true;
  wall_ = now;
  wallSetAt_ = SteadyNow();
}

}  // namespace oxaqrycln
