#include "transport/response_buffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>

#include "platform/code_page.h"
#include "platform/errors.h"
#include "tests/support/allocations.h"
#include "tests/support/requester.h"
#include "tests/support/scripted_server.h"

namespace oxaqrycln::testing {
namespace {

ByteBlock Block(std::string_view text) {
  ByteBlock block;
  block.Append(text);
  return block;
}

std::vector<std::string> Lines(const ResponseBuffer& buffer) {
  std::vector<std::string> lines;
  for (std::int32_t i = 0; i < buffer.Count(); ++i) lines.emplace_back(buffer.Line(i));
  return lines;
}

struct Judged {
  const char* name;
  const char* response;
  bool success;
  const char* error;
  std::vector<std::string> lines;
};

TEST(InitBuffer, JudgesTheStatusLineAndSplitsTheRest) {
  for (const Judged& each :
       {Judged{"nothing behind the status line", "Status: OK\r\n", true, "", {}},
        Judged{"only a line end behind it", "Status: OK\r\n\r\n", true, "", {}},
        Judged{"status without a line end", "Status: OK", true, "", {}},
        Judged{"last line end left out", "Status: OK\r\na\r\nb", true, "", {"a", "b"}},
        Judged{"one line end is dropped", "Status: OK\r\na\r\n\r\n", true, "", {"a", ""}},
        Judged{"an empty line alone", "Status: OK\r\n\r\n\r\n", true, "", {"", ""}},
        Judged{"lone line end characters", "Status: OK\r\na\rb\nc\r\n\rd", true, "", {"a\rb\nc", "\rd"}},
        Judged{"the server's error text", "Status:   No hits  \r\nx", false, "No hits", {}},
        Judged{"letter case counts", "status: ok\r\na", false, "ok", {}},
        Judged{"more than OK", "Status: OK \r\na", false, "OK", {}},
        Judged{"short of a status word", "Oops", false, "", {}}, Judged{"empty answer", "", false, "", {}}}) {
    ScriptedServer server(ScriptedServer::Replies(Framed(each.response)));
    Requester page(server.Host());
    ResponseBuffer buffer;
    buffer.Assign(Block("old\r\n"), 0);
    std::string error;
    EXPECT_EQ(InitBuffer("^X^", page.execution, page.log, buffer, error), each.success) << each.name;
    EXPECT_EQ(error, each.error) << each.name;
    EXPECT_EQ(Lines(buffer), each.lines) << each.name;
    EXPECT_EQ(buffer.position(), 0) << each.name;
  }
}

TEST(InitBuffer, EmptiesTheBufferAlsoWhenTheTransportFails) {
  Requester page("");
  ResponseBuffer buffer;
  buffer.Assign(Block("old\r\nlines"), 0);
  buffer.MoveTo(1);
  std::string error;
  EXPECT_FALSE(InitBuffer("^X^", page.execution, page.log, buffer, error));
  EXPECT_EQ(error, "All query servers are currently busy");
  EXPECT_EQ(buffer.Count(), 0);
  EXPECT_TRUE(buffer.AtEnd());
  EXPECT_THROW(buffer.Line(0), RuntimeError);
}

TEST(ResponseBuffer, SortsByTheUpperCasedLinesInTwelveBytesALine) {
  constexpr std::int32_t kLines = 20'000;
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
        Case{"each is the start of the next", [](std::uint32_t i) { return std::string(i % 200, 'x'); }},
        Case{"two that agree for half a million characters",
             [](std::uint32_t i) { return std::string(i < 2 ? 500'000 : 0, 'x'); }}}) {
    std::string text;
    std::vector<std::string> lines;
    for (std::int32_t i = 0; i < kLines; ++i) {
      lines.push_back(each.line(static_cast<std::uint32_t>(i) * 7919U % kLines));
      text += lines.back() + "\r\n";
    }
    ResponseBuffer buffer;
    buffer.Assign(Block(text), 0);
    const auto shared = buffer.Share();
    const AllocationPeak peak;
    buffer.Sort();
    EXPECT_LE(peak.ByteCount(), 12U * kLines + 4096) << each.name;
    EXPECT_EQ(shared->Line(1), lines[1]) << each.name;  // what was shared keeps its order
    std::vector<std::pair<std::string, std::string>> keyed;
    for (const std::string& line : lines) keyed.emplace_back(UpperCase(line), line);
    std::ranges::stable_sort(keyed, {}, &std::pair<std::string, std::string>::first);
    std::ranges::transform(keyed, lines.begin(), &std::pair<std::string, std::string>::second);
    EXPECT_TRUE(Lines(buffer) == lines) << each.name;
  }
}

}  // namespace
}  // namespace oxaqrycln::testing
