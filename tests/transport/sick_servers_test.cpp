// Requests that try sick servers last, over real sockets: what a sick server costs, its probe, and what is not its
// fault.
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <string>
#include <utility>

#include "platform/net/native_socket.h"
#include "tests/support/requester.h"
#include "tests/support/scripted_server.h"
#include "tests/support/server_socket.h"

namespace oxaqrycln::testing {
namespace {

using namespace std::chrono_literals;

// A listener whose queue is full, so that the system drops further connects.
class FullListener {
 public:
  FullListener() : listener_(Listen(port_, 0)) {
    for (NativeSocket& each : queue_) each = StartConnect(*NumericAddress("127.0.0.1"), port_).socket;
  }
  ~FullListener() {
    for (const NativeSocket each : queue_) CloseSocket(each);
    CloseSocket(listener_);
  }
  FullListener(const FullListener&) = delete;
  FullListener& operator=(const FullListener&) = delete;
  std::string Host() const { return "127.0.0.1," + std::to_string(port_); }

 private:
  std::uint16_t port_ = 0;
  NativeSocket listener_;
  std::array<NativeSocket, 4> queue_{};
};

struct TriesSickLast : Requester {
  explicit TriesSickLast(const std::string& hosts, std::int32_t timeoutSeconds = 10)
      : Requester(hosts, timeoutSeconds) {
    monitor.sickServers = SickServers::TriedLast;
    monitor.watchCount = 1;
  }
  // Each time that a request reports, which it does when its first wait begins, this much time passes.
  void PassWhileWaiting(Clock::Duration time) {
    monitor.onWait = [this, time](const RequestProgress&) { apartment->clock.Advance(time); };
  }
  std::size_t TriedCount() const { return monitor.outcome.servers.size(); }
  std::int32_t Failures(std::int32_t number) const { return apartment->servers.At(number).failures; }

  RequestMonitor& monitor = *execution.monitor();
};

struct SickCase {
  const char* name;
  std::string host;
  bool wasSent;
  Clock::Duration wait;  // that passes in the first request
  const char* error;
};

TEST(SickServers, CostOneRequestAtMost) {
  const FullListener full;
  ScriptedServer silent(ScriptedServer::Silent());
  ScriptedServer resetting([](Peer& peer) {
    peer.ReadRequest();
    peer.Reset();
  });
  ScriptedServer closing([](Peer& peer) { peer.ReadRequest(); });
  for (const SickCase& each : {SickCase{"refuses", "127.0.0.1," + std::to_string(UnusedPort()), false, 0s, "10061"},
                               SickCase{"swallows connects", full.Host(), false, 6s, "10060"},
                               SickCase{"never answers", silent.Host(), true, 12s, ""},
                               SickCase{"resets", resetting.Host(), true, 0s, "10054"},
                               SickCase{"closes", closing.Host(), true, 0s, "10054"}}) {
    ScriptedServer healthy(ScriptedServer::Replies(Framed("pong")));
    TriesSickLast page(each.host + "|" + healthy.Host());
    page.monitor.onWait = [&, isFirst = true](const RequestProgress&) mutable {
      if (std::exchange(isFirst, false)) page.apartment->clock.Advance(each.wait);
    };
    EXPECT_EQ(page.Request("^Ping^"), !each.wasSent) << each.name << page.error;
    EXPECT_EQ(page.TriedCount(), each.wasSent ? 1U : 2U) << each.name;
    EXPECT_EQ(page.monitor.outcome.servers.at(0).error.substr(0, 5), each.error) << each.name;
    EXPECT_EQ(page.Failures(1), 1) << each.name;
    EXPECT_FALSE(page.apartment->servers.At(1).busy) << each.name;
    for (int request = 2; request <= 4; ++request) {
      EXPECT_TRUE(page.Request("^Ping^")) << each.name << page.error;
      EXPECT_EQ(page.TriedCount(), 1U) << each.name;
    }
    EXPECT_EQ(healthy.Requests().size(), each.wasSent ? 3U : 4U) << each.name;
  }
}

TEST(SickServers, AreClosedOrResetRightAfterTheConnectAndCostOneRequestAtMostToo) {
  for (const bool resets : {false, true}) {
    ScriptedServer sick([resets](Peer& peer) {
      if (resets) peer.Reset();
    });
    ScriptedServer healthy(ScriptedServer::Replies(Framed("pong")));
    TriesSickLast page(sick.Host() + "|" + healthy.Host());
    page.Request("^Ping^");  // may have been sent before the connection broke
    EXPECT_EQ(page.Failures(1), 1);
    EXPECT_TRUE(page.Request("^Ping^")) << page.error;
  }
}

TEST(SickServers, ShareTheTimeForTheirConnects) {
  const FullListener full;
  const std::string host = full.Host();
  const std::string two = host + "|" + host;
  const std::string eight = two + "|" + two + "|" + two + "|" + two;
  struct Case {
    const char* name;
    std::string hosts;
    std::int32_t timeout;
    Clock::Duration step;
    std::size_t leastTried;
    std::size_t mostTried;
    SickServers policy = SickServers::TriedLast;
  };
  for (const Case& each :
       {Case{"one has it all", host, 10, 6s, 1, 1}, Case{"two have half each", two, 10, 6s, 2, 2},
        Case{"eight have a second at least", eight, 3, 600ms, 2, 4},
        Case{"the first has it all without the policy", two, 10, 6s, 1, 1, SickServers::ClaimedInOrder}}) {
    TriesSickLast page(each.hosts, each.timeout);
    page.monitor.sickServers = each.policy;
    page.PassWhileWaiting(each.step);
    for (int request = 1; request <= 2; ++request) {  // the second one claims the sick servers again
      EXPECT_FALSE(page.Request("^Ping^")) << each.name;
      EXPECT_EQ(page.monitor.outcome.result, RequestResult::TimedOut) << each.name << page.error;
      EXPECT_GE(page.TriedCount(), each.leastTried) << each.name;
      EXPECT_LE(page.TriedCount(), each.mostTried) << each.name;
    }
  }
}

TEST(SickServers, AreAllTriedBeforeARequestFailsWithTheLastError) {
  const std::string refusing = "127.0.0.1," + std::to_string(UnusedPort());
  TriesSickLast page(refusing + "|" + refusing);
  for (int request = 1; request <= 2; ++request) {
    EXPECT_FALSE(page.Request("^Ping^"));
    EXPECT_EQ(page.error, "Winsock Error (10061 - Connection was refused)");
    EXPECT_EQ(page.monitor.outcome.result, RequestResult::ConnectionFailed);
    EXPECT_EQ(page.TriedCount(), 2U);
  }
}

TEST(SickServers, AreProbedByOneRequestWhenTheirTimeIsOver) {
  const ScriptedServer::Script closes = [](Peer& peer) { peer.ReadRequest(); };
  ScriptedServer first({closes, closes, ScriptedServer::Replies(Framed("first"))});
  ScriptedServer second(ScriptedServer::Replies(Framed("second")));
  TriesSickLast page(first.Host() + "|" + second.Host());
  Clock& clock = page.apartment->clock;
  const auto answer = [&] { return page.Request("^Ping^") ? page.text : std::string(); };
  EXPECT_EQ(answer(), "");
  EXPECT_EQ(answer(), "second");
  clock.Advance(30s);
  EXPECT_EQ(answer(), "");  // the probe fails
  clock.Advance(30s);
  EXPECT_EQ(answer(), "second");
  clock.Advance(30s);
  EXPECT_EQ(answer(), "first");
  EXPECT_EQ(page.Failures(1), 0);
  EXPECT_EQ(answer(), "first");
}

class BrokenSource final : public SendSource {
 public:
  std::string_view NextPiece() override { throw RuntimeError(57); }
};

TEST(SickServers, AreNotThoseWhoseRequestFailedByAnotherFault) {
  ScriptedServer server(ScriptedServer::Silent());
  TriesSickLast page(server.Host());
  BrokenSource source;
  EXPECT_FALSE(page.execution.Request({.request = "^Ping^", .data = &source}, &page.error));
  EXPECT_EQ(page.monitor.outcome.result, RequestResult::ConnectionFailed);
  page.monitor.onWait = [&](const RequestProgress&) { page.monitor.isCancelled = true; };
  EXPECT_FALSE(page.Request("^Ping^"));
  EXPECT_EQ(page.monitor.outcome.result, RequestResult::Cancelled);
  EXPECT_EQ(page.Failures(1), 0);
}

}  // namespace
}  // namespace oxaqrycln::testing
