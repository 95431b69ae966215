// What a text answer's status line means for the response buffer.
#include <gtest/gtest.h>

#include "tests/support/buffer_of.h"
#include "tests/support/requester.h"
#include "tests/support/scripted_server.h"
#include "transport/request.h"

namespace oxaqrycln::testing {
namespace {

TEST(InitBuffer, JudgesTheStatusLine) {
  struct Judged {
    const char* name;
    const char* response;
    bool success;
    const char* error;
    std::int32_t lineCount = 0;
  };
  for (const Judged& each :
       {Judged{"nothing behind the status line", "Status: OK\r\n", true, ""},
        Judged{"only a line end behind it", "Status: OK\r\n\r\n", true, ""},
        Judged{"status without a line end", "Status: OK", true, ""},
        Judged{"lines behind it", "Status: OK\r\na\r\nb", true, "", 2},
        Judged{"the server's error text", "Status:   No hits  \r\nx", false, "No hits"},
        Judged{"letter case counts", "status: ok\r\na", false, "ok"},
        Judged{"more than OK", "Status: OK \r\na", false, "OK"}, Judged{"short of a status word", "Oops", false, ""},
        Judged{"empty answer", "", false, ""}}) {
    ScriptedServer server(ScriptedServer::Replies(Framed(each.response)));
    Requester page(server.Host());
    ResponseBuffer buffer = BufferOf("old\r\n");
    std::string error;
    EXPECT_EQ(InitBuffer("^X^", page.execution, page.log, buffer, error), each.success) << each.name;
    EXPECT_EQ(error, each.error) << each.name;
    EXPECT_EQ(buffer.Count(), each.lineCount) << each.name;
    EXPECT_EQ(buffer.position(), 0) << each.name;
  }
}

TEST(InitBuffer, EmptiesTheBufferAlsoWhenTheTransportFails) {
  Requester page("");
  ResponseBuffer buffer = BufferOf("old\r\nlines");
  buffer.MoveTo(1);
  std::string error;
  EXPECT_FALSE(InitBuffer("^X^", page.execution, page.log, buffer, error));
  EXPECT_EQ(error, "All query servers are currently busy");
  EXPECT_EQ(buffer.Count(), 0);
  EXPECT_TRUE(buffer.AtEnd());
}

}  // namespace
}  // namespace oxaqrycln::testing
