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

Clock::Duration Clock::SinceWholeSecond() const noexcept {
  if (wallIsSet_) return SteadyNow() - wallSetAt_;
  return std::chrono::system_clock::now().time_since_epoch() + advanced_;
}

DateTime Clock::Now() const noexcept {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(SinceWholeSecond()).count();
  if (wallIsSet_) return DateTime::FromSeconds(wall_.seconds() + seconds);
  // The calendar is asked once in a quarter of an hour: time zones change on its boundaries only.
  constexpr std::int64_t kQuarter = 900;
  const std::int64_t begin = seconds - seconds % kQuarter;
  if (begin != quarterBegin_) {
    quarterBegin_ = begin;
    quarterLocal_ = LocalSecond(static_cast<std::time_t>(begin));
  }
  return DateTime::FromSeconds(quarterLocal_.seconds() + seconds - begin);
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
