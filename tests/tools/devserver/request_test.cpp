#include "tools/devserver/request.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace oxaqrycln::devserver {
namespace {

std::optional<std::size_t> CountOf(std::string_view command) {
  if (command == "Two") return 2;
  return command == "None" ? std::optional<std::size_t>(0) : std::nullopt;
}

TEST(Request, IsJudgedByItsCaretsAndItsCommand) {
  struct Case {
    const char* text;
    RequestState state;
  };
  const Case cases[] = {
      {"", RequestState::kPartial},
      {"^", RequestState::kPartial},
      {"^s", RequestState::kPartial},
      {"^s^", RequestState::kShort},
      {"^s^,", RequestState::kPartial},
      {"^s^,^u^,^p^", RequestState::kShort},
      {"^s^,^u^,^p^,^None", RequestState::kPartial},
      {"^s^,^u^,^p^,^None^", RequestState::kComplete},
      {"^^,^^,^^,^None^", RequestState::kComplete},
      {"^s^,^u^,^p^,^None^,^x^", RequestState::kComplete},
      {"^s^,^u^,^p^,^None^,^x", RequestState::kPartial},
      {"^s^,^u^,^p^,^Two^", RequestState::kShort},
      {"^s^,^u^,^p^,^Two^,^a^,^", RequestState::kPartial},
      {"^s^,^u^,^p^,^Two^,^a^,^^", RequestState::kComplete},
      {"^s^,^u^,^p^,^Two^,^a^b^,^,c^", RequestState::kComplete},
      {"^s^,^u^,^p^,^Other^", RequestState::kBad},
      {"^s^,^u^,^p^,^Other^,^a", RequestState::kBad},
      {"GET / HTTP/1.0", RequestState::kBad},
  };
  for (const Case& row : cases) EXPECT_EQ(JudgeRequest(row.text, CountOf), row.state) << row.text;
}

TEST(Request, KeepsLoneCaretsAndCommasInItsFields) {
  EXPECT_THAT(SplitRequest("^a^b^,^,c^,^^").fields, testing::ElementsAre("a^b", ",c", ""));
  EXPECT_THAT(SplitRequest("a^,^b^").fields, testing::IsEmpty());
}

}  // namespace
}  // namespace oxaqrycln::devserver
