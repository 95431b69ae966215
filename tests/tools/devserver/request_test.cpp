#include "tools/devserver/protocol/request.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>

namespace oxaqrycln::devserver {
namespace {

std::optional<CommandShape> ShapeOf(std::string_view command) {
  if (command == "Two") return CommandShape{2};
  if (command == "Body") return CommandShape{1, Form::kBody};
  if (command == "Rows") return CommandShape{3, Form::kRows};
  return command == "None" ? std::optional(CommandShape{0}) : std::nullopt;
}

TEST(Request, IsJudgedByItsCaretsAndItsCommand) {
  const std::pair<const char*, RequestState> cases[] = {
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
      // Only a line end ends a request that a body follows.
      {"^s^,^u^,^p^,^Body^,^1^", RequestState::kShort},
      {"^s^,^u^,^p^,^Body^,^1^\r", RequestState::kPartial},
      {"^s^,^u^,^p^,^Body^,^1^\r\n", RequestState::kBody},
      {"^s^,^u^,^p^,^Body^,^1^\r\n^,^x^\r\n", RequestState::kBody},
      {"^s^,^u^,^p^,^Body^\r\n^", RequestState::kBad},
      {"^s^,^u^,^p^,^Two^,^a^\r\n^,^b^", RequestState::kComplete},
  };
  for (const auto& [text, state] : cases) EXPECT_EQ(JudgeRequest(text, ShapeOf).state, state) << text;
  EXPECT_EQ(JudgeRequest("^s^,^u^,^p^,^Body^,^9^\r\nfile^\r\n", ShapeOf).textByteCount, 22U);
}

// A packet may end anywhere, so no part of the request may look complete.
TEST(Request, WithRowsIsCompleteOnlyAfterACompleteRow) {
  const std::string begin = "^s^,^u^,^p^,^Rows^,^";
  const std::pair<const char*, std::string> cases[] = {
      {"one row", "title^,^^Ref^,^Doc^^,^/dir^"},
      {"several rows", "title^,^^Ref^,^Doc^\r\n^a^,^b^\r\n^c^,^d^^,^/dir^"},
      {"no title, no directory", "^,^^Ref^,^Doc^^,^^"},
      {"empty fields", "t^,^^Ref^,^^,^Doc^\r\n^^,^^,^b^\r\n^^,^^,^^^,^/dir^"},
      {"one column", "t^,^^Ref^\r\n^^\r\n^a^^,^/dir^"},
      {"commas and carets", "t,^^,^^R^e,f^,^D^\r\n^,a^,^b,^^,^/dir^"},
  };
  for (const auto& [name, text] : cases) {
    const std::string whole = begin + text;
    for (std::size_t count = begin.size(); count < whole.size(); ++count) {
      const RequestState state = JudgeRequest(whole.substr(0, count), ShapeOf).state;
      EXPECT_NE(state, RequestState::kComplete) << name << ": " << whole.substr(0, count);
    }
    EXPECT_EQ(JudgeRequest(whole, ShapeOf).state, RequestState::kComplete) << name;
  }
  EXPECT_EQ(JudgeRequest(begin + "t^,^no row^,^/dir^", ShapeOf).state, RequestState::kShort);
  EXPECT_EQ(JudgeRequest("^s^,^u^,^p^,^Rows^", ShapeOf).state, RequestState::kShort);
}

TEST(Request, JoinsRows) {
  using Case = std::pair<std::vector<std::string>, std::vector<std::string>>;
  for (const auto& [parameters, joined] :
       {Case{{"t", "^a", "b^\r\n^c", "d^", "/dir"}, {"t", "^a^,^b^\r\n^c^,^d^", "/dir"}},
        Case{{"t", "^a^", "/dir"}, {"t", "^a^", "/dir"}}, Case{{"t", "^", "", "^", ""}, {"t", "^^,^^,^^", ""}},
        Case{{"t", "/dir"}, {"t", "/dir"}}, Case{{}, {}}}) {
    EXPECT_EQ(JoinRows(parameters), joined);
  }
}

TEST(Request, KeepsLoneCaretsAndCommasInItsFields) {
  EXPECT_THAT(SplitRequest("^a^b^,^,c^,^^").fields, ::testing::ElementsAre("a^b", ",c", ""));
  EXPECT_THAT(SplitRequest("a^,^b^").fields, ::testing::IsEmpty());
}

}  // namespace
}  // namespace oxaqrycln::devserver
