#include <algorithm>
#include <ctime>

#include "platform/local_time.h"

namespace oxaqrycln {

DateTime LocalTime(std::int64_t unixSeconds) noexcept {
  const auto time = static_cast<std::time_t>(unixSeconds);
  std::tm local{};
  localtime_r(&time, &local);
  constexpr int kLastSecond = 59;  // a leap second has no place in a DateTime
  return DateTime::FromCivil({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min,
                              std::min(local.tm_sec, kLastSecond)});
}

}  // namespace oxaqrycln
