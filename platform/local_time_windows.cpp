#include <winsock2.h>
// windows.h follows winsock2.h.
#include <windows.h>

#include "platform/local_time.h"

namespace oxaqrycln {

DateTime LocalTime(std::int64_t unixSeconds) noexcept {
  constexpr std::int64_t kTicksPerSecond = 10'000'000;
  constexpr std::int64_t kSecondsTo1970 = 11'644'473'600;  // from 1601, where the system's time begins
  const auto ticks = static_cast<std::uint64_t>((unixSeconds + kSecondsTo1970) * kTicksPerSecond);
  const FILETIME time{static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32U)};
  SYSTEMTIME universal{};
  SYSTEMTIME local{};
  FileTimeToSystemTime(&time, &universal);
  if (SystemTimeToTzSpecificLocalTime(nullptr, &universal, &local) == 0) local = universal;
  return DateTime::FromCivil({local.wYear, local.wMonth, local.wDay, local.wHour, local.wMinute, local.wSecond});
}

}  // namespace oxaqrycln
