#include "values/date_time.h"

#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdio>

#include "values/errors.h"

namespace oxaqrycln {
namespace {

using std::chrono::sys_days;

constexpr std::int64_t kSecondsADay = 86400;
constexpr sys_days kZeroDay{std::chrono::year{1899} / 12 / 30};

// Days since the zero date, rounded down, and the second of that day.
struct Split {
  std::int64_t day;
  std::int64_t second;
};
Split SplitSeconds(std::int64_t seconds) noexcept {
  std::int64_t day = seconds / kSecondsADay;
  std::int64_t second = seconds % kSecondsADay;
  if (second < 0) {
    second += kSecondsADay;
    --day;
  }
  return {day, second};
}

std::string Format(const char* form, int a, int b, int c) {
  char text[48];
  const int length = std::snprintf(text, sizeof text, form, a, b, c);
  return {text, static_cast<std::size_t>(length)};
}

}  // namespace

DateTime DateTime::FromDays(double days) {
  // The years 100 to 9999.
  constexpr std::int64_t kDayAfterLast = 2958466;
  if (!(days > -657435.0 && days < static_cast<double>(kDayAfterLast))) throw RuntimeError(error::kOverflow);
  const double whole = std::trunc(days);
  const double second = std::round(std::fabs(days - whole) * static_cast<double>(kSecondsADay));
  const auto seconds = static_cast<std::int64_t>(whole) * kSecondsADay + static_cast<std::int64_t>(second);
  // The last half second of the last day rounds up to the following day.
  if (seconds >= kDayAfterLast * kSecondsADay) throw RuntimeError(error::kOverflow);
  return DateTime(seconds);
}

DateTime DateTime::FromCivil(const CivilTime& civil) {
  const std::chrono::year_month_day date{std::chrono::year{civil.year},
                                         std::chrono::month{static_cast<unsigned>(civil.month)},
                                         std::chrono::day{static_cast<unsigned>(civil.day)}};
  if (!date.ok() || civil.year < 100 || civil.year > 9999 || civil.hour < 0 || civil.hour > 23 || civil.minute < 0 ||
      civil.minute > 59 || civil.second < 0 || civil.second > 59) {
    throw RuntimeError(error::kInvalidProcedureCall);
  }
  const std::int64_t day = (sys_days{date} - kZeroDay).count();
  return DateTime(day * kSecondsADay + std::int64_t{civil.hour} * 3600 + std::int64_t{civil.minute} * 60 +
                  civil.second);
}

std::optional<DateTime> DateTime::FromIso(std::string_view text) {
  CivilTime civil;
  char between = 'T';
  int end = 0;
  const std::string copy(text);
  const int fields = std::sscanf(copy.c_str(), "%4d-%2d-%2d%n%c%2d:%2d:%2d%n", &civil.year, &civil.month, &civil.day,
                                 &end, &between, &civil.hour, &civil.minute, &civil.second, &end);
  const bool whole = static_cast<std::size_t>(end) == text.size();
  if (!whole || (fields != 3 && fields != 7) || (between != 'T' && between != ' ')) return std::nullopt;
  try {
    return FromCivil(civil);
  } catch (const RuntimeError&) {
    return std::nullopt;
  }
}

double DateTime::Days() const noexcept {
  const Split split = SplitSeconds(seconds_);
  const double fraction = static_cast<double>(split.second) / static_cast<double>(kSecondsADay);
  const auto day = static_cast<double>(split.day);
  return split.day < 0 ? day - fraction : day + fraction;
}

CivilTime DateTime::Civil() const noexcept {
  const Split split = SplitSeconds(seconds_);
  const std::chrono::year_month_day date{kZeroDay + std::chrono::days{split.day}};
  const auto second = static_cast<int>(split.second);
  return {static_cast<int>(date.year()),
          static_cast<int>(static_cast<unsigned>(date.month())),
          static_cast<int>(static_cast<unsigned>(date.day())),
          second / 3600,
          second / 60 % 60,
          second % 60};
}

std::string DateTime::ToText() const {
  const CivilTime c = Civil();
  return Format("%02d.%02d.%04d", c.day, c.month, c.year) + Format(" %02d:%02d:%02d", c.hour, c.minute, c.second);
}

std::string DateTime::ToGeneralText() const {
  const Split split = SplitSeconds(seconds_);
  std::string text = ToText();
  if (split.second == 0 && split.day != 0) return text.substr(0, 10);
  if (split.day == 0) return text.substr(11);
  return text;
}

std::string DateTime::ToIso() const {
  const CivilTime c = Civil();
  return Format("%04d-%02d-%02d", c.year, c.month, c.day) + Format("T%02d:%02d:%02d", c.hour, c.minute, c.second);
}

}  // namespace oxaqrycln
