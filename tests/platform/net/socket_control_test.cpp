// The socket control apart from the requests that use it, over real sockets.
#include "platform/net/socket_control.h"

#include <gtest/gtest.h>

#include <atomic>

#include "tests/support/scripted_server.h"

namespace oxaqrycln::testing {
namespace {

using namespace std::chrono_literals;

class NoEvents final : public SocketEvents {
  void DataArrival() override {}
  void PeerClosed() override {}
  void Error(std::int32_t /*number*/, std::string_view /*description*/) override {}
};

TEST(SocketControl, SendsEverythingReadingOrNotAndThenDoesNotWakeTheLoop) {
  for (const bool reads : {true, false}) {
    const std::string sent(32U << 20U, 'x');
    std::atomic<bool> begin = false;
    std::atomic<std::size_t> taken = 0;
    ScriptedServer server([&](Peer& peer) {
      for (int waits = 0; !begin && waits < 10'000; ++waits) peer.Pause(1);
      taken = peer.ReadBytes(sent.size()).size();
      peer.WaitForClose();
    });
    const Clock clock;
    EventLoop loop(clock);
    const Resolver resolver = ResolveHost;
    NoEvents events;
    SocketControl socket(loop, resolver, events);
    socket.SetRemote("127.0.0.1", server.port(), std::nullopt);
    socket.Connect();
    // The system may finish even a connect to this machine a moment later.
    for (int yields = 0; socket.State() == SocketState::Connecting && yields < 10'000; ++yields) {
      loop.RunUntil(clock.SteadyNow() + 1ms);
    }
    ASSERT_EQ(socket.State(), SocketState::Connected);
    socket.SendData(sent);
    ASSERT_LT(socket.SentByteCount(), static_cast<std::int64_t>(sent.size()));
    if (!reads) socket.StopReading();
    begin = true;
    for (int yields = 0; taken < sent.size() && yields < 30'000; ++yields) loop.RunUntil(clock.SteadyNow() + 1ms);
    ASSERT_EQ(taken, sent.size()) << reads;
    loop.RunUntil(clock.SteadyNow() + 10ms);  // in which it may find that the last piece is sent
    const auto until = clock.SteadyNow() + 50ms;
    loop.RunUntil(until);
    EXPECT_GE(clock.SteadyNow(), until) << reads;
  }
}

}  // namespace
}  // namespace oxaqrycln::testing
