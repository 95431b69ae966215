// What a page sees of the ways in which an answer can arrive, over real sockets.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>

#include "tests/support/process_state.h"
#include "tests/support/requester.h"
#include "tests/support/scripted_server.h"

namespace oxaqrycln::testing {
namespace {

using namespace std::chrono_literals;

TEST(Receiver, EndsAFaultyAnswerInOneErrorAndTheNextRequestWorks) {
  struct Fault {
    const char* name;
    const char* bytes;
    const char* logLine;  // what the log must hold besides
    bool resets = false;  // ends with a reset instead of a close
  };
  for (const Fault& fault :
       {Fault{"closes without a byte", "", "### <ERROR> Winsock error occured: 10054"},
        Fault{"closes in the body", "TotalBytes:99\r\nabc", "First string packet received: 3 bytes"},
        Fault{"resets in the body", "TotalBytes:99\r\nabc", "Releasing server #1", true},
        Fault{"count is text", "TotalBytes:many\r\nabc", "Processing error in function 'Winsock_DataArrival()': "}}) {
    SCOPED_TRACE(fault.name);
    ScriptedServer server({[&](Peer& peer) {
                             peer.ReadRequest();
                             peer.Send(fault.bytes);
                             if (fault.resets) peer.Reset();
                           },
                           ScriptedServer::Replies(Framed("fine"))});
    Requester page(server.Host());
    EXPECT_FALSE(page.Request("^X^"));
    EXPECT_EQ(page.error.rfind("Winsock Error (10054 - ", 0), 0U) << page.error;
    EXPECT_NE(page.Log().find(fault.logLine), std::string::npos) << page.Log();
    EXPECT_TRUE(page.Request("^Y^")) << page.error;
    EXPECT_EQ(page.text, "fine");
    EXPECT_EQ(page.apartment->controls.Winsock(1).State(), SocketState::Closed);
  }
}

TEST(Receiver, MakesMemoryOnlyAsTheBytesCome) {
  ScriptedServer server(ScriptedServer::Replies("TotalBytes:2147483647\r\n" + std::string(100'000, 'a')));
  Requester page(server.Host());
  const std::size_t before = ResidentBytes();
  std::size_t most = 0;
  EventLoop& loop = page.apartment->loop;
  const ConnectionSlot& slot = page.apartment->controls.Slot(1);
  const std::function<void()> watch = [&] {
    most = std::max(most, ResidentBytes());
    if (slot.bytesReceived == 100'000) return page.apartment->clock.Advance(20s);
    loop.Post(watch);
  };
  loop.Post(watch);
  EXPECT_FALSE(page.Request("^X^"));
  EXPECT_EQ(page.error, "Timeout of 10 seconds occured while waiting for server response");
  EXPECT_LT(most, before + (8U << 20U));
}

TEST(Receiver, PutsALargeAnswerTogetherWhole) {
  std::string text;
  for (int i = 0; text.size() < 3'000'000; ++i) text += "line " + std::to_string(i) + "\r\n";
  ScriptedServer server(ScriptedServer::Replies(Framed(text)));
  Requester page(server.Host());
  ASSERT_TRUE(page.Request("^X^")) << page.error;
  EXPECT_TRUE(page.text == text);
}

}  // namespace
}  // namespace oxaqrycln::testing
