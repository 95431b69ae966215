#include "values/date_time.h"

#include <gtest/gtest.h>

#include "platform/clock.h"
#include "values/errors.h"

namespace oxaqrycln {
namespace {

using namespace std::chrono_literals;

TEST(DateTime, CountsDaysAsTheAutomationRulesDo) {
  struct Case {
    double days;
    const char* iso;
  };
  for (const Case& each : {Case{0, "1899-12-30T00:00:00"}, Case{0.5, "1899-12-30T12:00:00"},
                           Case{-1.25, "1899-12-29T06:00:00"}, Case{46341.0, "2026-11-15T00:00:00"},
                           Case{36585.75, "2000-02-29T18:00:00"}, Case{2958465, "9999-12-31T00:00:00"}}) {
    const DateTime date = DateTime::FromDays(each.days);
    EXPECT_EQ(date.ToIso(), each.iso) << each.days;
    EXPECT_DOUBLE_EQ(date.Days(), each.days) << each.iso;
    EXPECT_EQ(DateTime::FromIso(each.iso), date) << each.iso;
  }
  EXPECT_THROW(DateTime::FromDays(2958466.5), RuntimeError);
  EXPECT_THROW(DateTime::FromCivil({2026, 2, 29, 0, 0, 0}), RuntimeError);
  for (const char* bad : {"", "2026-11-15T", "2026-13-01", "2026-11-15T25:00:00", "2026-11-15x", "15.11.2026"}) {
    EXPECT_EQ(DateTime::FromIso(bad), std::nullopt) << bad;
  }
}

TEST(DateTime, HasALogFormAndAGeneralForm) {
  const DateTime both = DateTime::FromCivil({2026, 11, 5, 8, 3, 7});
  EXPECT_EQ(both.ToText(), "05.11.2026 08:03:07");
  EXPECT_EQ(both.ToGeneralText(), "05.11.2026 08:03:07");
  EXPECT_EQ(DateTime::FromCivil({2026, 11, 5, 0, 0, 0}).ToGeneralText(), "05.11.2026");
  EXPECT_EQ(DateTime::FromDays(0.25).ToGeneralText(), "06:00:00");
}

}  // namespace
}  // namespace oxaqrycln
