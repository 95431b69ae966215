// date_time.h - a date and time of day in local time, to the second, counted as the automation rules do.
// Knows nothing of time zones or of the machine's clock (see clock.h).
#ifndef OXAQRYCLN_VALUES_DATE_TIME_H_
#define OXAQRYCLN_VALUES_DATE_TIME_H_

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace oxaqrycln {

// A calendar date and a time of day; month and day count from 1.
struct CivilTime {
  int year = 1899;
  int month = 12;
  int day = 30;
  int hour = 0;
  int minute = 0;
  int second = 0;
};

// Whole seconds since the zero date, 30.12.1899 00:00:00. The default value is the zero date.
class DateTime {
 public:
  constexpr DateTime() noexcept = default;

  static constexpr DateTime FromSeconds(std::int64_t seconds) noexcept { return DateTime(seconds); }
  // From days since the zero date; the fraction is the time of day, also before the zero date. Rounded to the second.
  // Raises Overflow outside the years 100 to 9999.
  static DateTime FromDays(double days);
  // Raises Invalid procedure call for a date or time that does not exist.
  static DateTime FromCivil(const CivilTime& civil);
  // From "2026-11-15T20:31:07" (also with a blank for the "T", or the date alone); nothing for any other text.
  static std::optional<DateTime> FromIso(std::string_view text);

  constexpr std::int64_t seconds() const noexcept { return seconds_; }
  double Days() const noexcept;
  CivilTime Civil() const noexcept;

  // "15.11.2026 20:31:07", always with both halves: the form of the log.
  std::string ToText() const;
  // The general form: without the time of day at midnight, without the date on the zero date.
  std::string ToGeneralText() const;
  // "2026-11-15T20:31:07".
  std::string ToIso() const;

  friend constexpr auto operator<=>(DateTime,
                                    DateTime) noexcept = default;  // NOLINT(modernize-use-nullptr): the check errs

 private:
  constexpr explicit DateTime(std::int64_t seconds) noexcept : seconds_(seconds) {}
  std::int64_t seconds_ = 0;
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_VALUES_DATE_TIME_H_
