#include "platform/clock.h"

#include <gtest/gtest.h>

namespace oxaqrycln {
namespace {

using namespace std::chrono_literals;

TEST(Clock, RunsOnFromWhereItWasSetAndAdvancesBothTimes) {
  Clock clock;
  clock.SetWall(DateTime::FromCivil({2026, 11, 15, 23, 59, 58}));
  const auto steady = clock.SteadyNow();
  clock.Advance(2s);
  EXPECT_GE(clock.Now(), DateTime::FromCivil({2026, 11, 16, 0, 0, 0}));
  EXPECT_GE(clock.SteadyNow() - steady, 2s);
  EXPECT_LT(clock.PassedOfSecond(), 1s);
}

}  // namespace
}  // namespace oxaqrycln
