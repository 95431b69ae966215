// local_time.h - the system's time zone.
#ifndef OXAQRYCLN_PLATFORM_LOCAL_TIME_H_
#define OXAQRYCLN_PLATFORM_LOCAL_TIME_H_

#include <cstdint>

#include "values/date_time.h"

namespace oxaqrycln {

// The local date and time of a moment, in seconds since 1970-01-01 00:00 UTC. Read off the calendar, so that a change
// of daylight saving time shows as a wall clock shows it.
DateTime LocalTime(std::int64_t unixSeconds) noexcept;

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_LOCAL_TIME_H_
