#include "support/response_buffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/allocations.h"
#include "tests/support/buffer_of.h"
#include "values/code_page.h"

namespace oxaqrycln::testing {
namespace {

TEST(ResponseBuffer, SortsByTheUpperCasedLinesInSixBytesALine) {
  constexpr std::int32_t kLines = 4'000;
  std::mt19937 random(7);
  const auto any = [&](std::uint32_t i) {
    std::string line(i % 12, '\0');
    for (char& each : line) each = std::string_view("aAbB,z\xE4\xC4\0", 9)[random() % 9];
    return line;
  };
  struct Case {
    const char* name;
    std::function<std::string(std::uint32_t)> line;
  };
  for (const Case& each :
       {Case{"any characters", any}, Case{"empty lines", [](std::uint32_t) { return std::string(); }},
        Case{"one letter", [](std::uint32_t i) { return std::string(1, static_cast<char>('a' + i % 26)); }},
        Case{"a long common start",
             [](std::uint32_t i) { return (i % 2 == 0 ? "channel " : "CHANNEL ") + std::to_string(i % 977); }},
        Case{"each is the start of the next", [](std::uint32_t i) { return std::string(i % 100, 'x'); }},
        Case{"two that agree for half a million characters",
             [](std::uint32_t i) { return std::string(i < 2 ? 500'000 : 0, 'x'); }}}) {
    std::string text;
    std::vector<std::string> lines;
    for (std::int32_t i = 0; i < kLines; ++i) {
      lines.push_back(each.line(static_cast<std::uint32_t>(i) * 7919U % kLines));
      text += lines.back() + "\r\n";
    }
    ResponseBuffer buffer = BufferOf(text);
    const ResponseBuffer copy = buffer;
    const AllocationPeak peak;
    buffer.Sort();
    EXPECT_LE(peak.ByteCount(), 6U * kLines + 2048) << each.name;
    EXPECT_EQ(copy.Line(1), lines[1]) << each.name;  // which shares the lines, but not their order
    std::vector<std::pair<std::string, std::string>> keyed;
    for (const std::string& line : lines) keyed.emplace_back(UpperCase(line), line);
    std::ranges::stable_sort(keyed, {}, &std::pair<std::string, std::string>::first);
    std::ranges::transform(keyed, lines.begin(), &std::pair<std::string, std::string>::second);
    for (std::int32_t i = 0; i < kLines; ++i) {
      ASSERT_TRUE(buffer.Line(i) == lines[static_cast<std::size_t>(i)]) << each.name << " " << i;
    }
  }
}

}  // namespace
}  // namespace oxaqrycln::testing
