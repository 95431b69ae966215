// clock.h - the local date and time, and a steady time for waits. One per apartment.
// Tests set it: the wall clock alone (a jump), or both together (time passing).
#ifndef OXAQRYCLN_PLATFORM_CLOCK_H_
#define OXAQRYCLN_PLATFORM_CLOCK_H_

#include <chrono>
#include <cstdint>

#include "values/date_time.h"

namespace oxaqrycln {

class Clock {
 public:
  using Duration = std::chrono::nanoseconds;
  using SteadyPoint = std::chrono::time_point<std::chrono::steady_clock, Duration>;

  // The local date and time, and how much of that second has passed.
  DateTime Now() const noexcept;
  Duration PassedOfSecond() const noexcept;
  // Never jumps; moved by Advance only.
  SteadyPoint SteadyNow() const noexcept { return std::chrono::steady_clock::now() + advanced_; }

  // Sets the wall clock, which then runs on; the steady time does not notice.
  void SetWall(DateTime now) noexcept;
  // Moves the wall clock and the steady clock forward.
  void Advance(Duration duration) noexcept { advanced_ += duration; }

 private:
  // Since an instant at which a second of the wall clock began.
  Duration SinceWholeSecond() const noexcept;

  Duration advanced_{0};
  bool wallIsSet_ = false;
  DateTime wall_;            // valid when set: the time of the wall clock ...
  SteadyPoint wallSetAt_{};  // ... at this steady time
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_CLOCK_H_
