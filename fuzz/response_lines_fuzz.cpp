// The lines of an answer, and their sorting. Input: a line whose length is the position where the lines begin, LF, the
// answer.
#include "fuzz/input.h"
#include "tests/support/buffer_of.h"
#include "values/code_page.h"

using namespace oxaqrycln;
using namespace oxaqrycln::fuzz;

namespace {

void RequireLines(const ResponseBuffer& buffer, const std::vector<std::string_view>& expected, const char* claim) {
  Require(static_cast<std::size_t>(buffer.Count()) == expected.size(), claim);
  for (std::size_t i = 0; i < expected.size(); ++i) {
    Require(buffer.Line(static_cast<std::int32_t>(i)) == expected[i], claim);
  }
  Require(ErrorOf([&] { buffer.Line(buffer.Count()); }) == error::kSubscriptOutOfRange, "there is no further line");
  Require(ErrorOf([&] { buffer.Line(-1); }) == error::kSubscriptOutOfRange, "there is no line below 0");
}

// Swaps neighbours as long as any are in the wrong order.
void BubbleSort(std::vector<std::string_view>& lines) {
  for (bool changed = true; std::exchange(changed, false);) {
    for (std::size_t i = 1; i < lines.size(); ++i) {
      if (UpperCase(lines[i - 1]) <= UpperCase(lines[i])) continue;
      std::swap(lines[i - 1], lines[i]);
      changed = true;
    }
  }
}

}  // namespace

void oxaqrycln::fuzz::Run(std::string_view text) {
  const std::size_t start = CutOff(text, "\n").size();
  ResponseBuffer buffer = testing::BufferOf(text, start);

  std::string_view answer = text.substr(std::min(start, text.size()));
  if (answer.ends_with("\r\n")) answer.remove_suffix(2);
  std::vector<std::string_view> expected;
  if (!answer.empty()) expected = Parts(answer, "\r\n");
  RequireLines(buffer, expected, "a line is the text between line ends");

  if (expected.size() > 64) return;
  const ResponseBuffer arrived = buffer;
  const auto inOrder = expected;
  BubbleSort(expected);
  buffer.Sort();
  RequireLines(buffer, expected, "lines are sorted by their upper-cased text, equal ones as they came");
  buffer.Sort();
  RequireLines(buffer, expected, "sorting again changes nothing");
  RequireLines(arrived, inOrder, "a copy keeps its order");
}
