// What a text answer's status line means for the response buffer.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/requester.h"
#include "tests/support/scripted_server.h"
#include "transport/request.h"

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

}  // namespace
}  // namespace oxaqrycln::testing
