// Request execution: the pool, fail-over, time-out, re-entry and what is given back, over real sockets.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <semaphore>
#include <thread>

#include "support/text_helpers.h"
#include "tests/support/process_state.h"
#include "tests/support/requester.h"
#include "tests/support/scripted_server.h"

namespace oxaqrycln::testing {
namespace {

using namespace std::chrono_literals;

constexpr const char* kAllBusy = "All query servers are currently busy";

const DateTime kNoon = DateTime::FromCivil({2026, 11, 15, 12, 0, 0});

std::string UnusedHost() { return "127.0.0.1," + std::to_string(UnusedPort()); }
// Nothing listens at 127.0.0.2. A connect to it by its IPv6 spelling is under way first, and the poller finds that it
// is refused.
SocketAddress RefusingThroughThePoller() { return *NumericAddress("::ffff:127.0.0.2"); }

TEST(Request, SendsPrefixAndCommandAndLogsEveryStep) {
  ScriptedServer server(ScriptedServer::Replies(Framed("pong")));
  Requester page(server.Host());
  ASSERT_TRUE(page.Request("^Ping^,^1^")) << page.error;
  EXPECT_EQ(server.Requests().at(0), "^S1^,^webuser^,^" + Encode("secret") + "^,^Ping^,^1^");
  const std::string log = page.Log();
  std::size_t at = 0;
  for (const char* line :
       {"Found free server #1: 127.0.0.1:", "Winsock connection established",
        "Winsock(1): First string packet received: 4 bytes", "Winsock(1): All packets received: 4 bytes in total",
        "\r\nResponse received: \r\npong\r\n", "Releasing server #1"}) {
    const std::size_t found = log.find(line, at);
    ASSERT_NE(found, std::string::npos) << line << "\nnot in order in\n" << log;
    at = found;
  }
  EXPECT_FALSE(page.apartment->servers.At(1).busy);
}

TEST(Request, FailsOverToTheNextServerAndLeavesTheRefusingOneBusy) {
  ScriptedServer server(ScriptedServer::Replies(Framed("pong")));
  Requester page(UnusedHost() + "|" + server.Host());
  ASSERT_TRUE(page.Request("^Ping^")) << page.error;
  EXPECT_EQ(page.text, "pong");
  EXPECT_TRUE(page.apartment->servers.At(1).busy);
  EXPECT_FALSE(page.apartment->servers.At(2).busy);
  const std::string log = page.Log();
  EXPECT_NE(log.find("!!! <WARNING> Winsock error occured: 10061 - "), std::string::npos) << log;
  EXPECT_NE(log.find(" - trying to contact another server instance"), std::string::npos);
  EXPECT_EQ(log.find("Releasing server #1"), std::string::npos);
  EXPECT_NE(log.find("Releasing server #2"), std::string::npos);
}

TEST(Request, EndsAtOnceWhenEveryServerIsBusyOrRefusesAndLeavesNoDescriptor) {
  Requester page(UnusedHost() + "|two.example," + std::to_string(UnusedPort()));
  page.apartment->resolver = [](const std::string&) {
    return LookupResult{{RefusingThroughThePoller(), RefusingThroughThePoller()}, 0};
  };
  const std::size_t before = OpenDescriptors();
  EXPECT_FALSE(page.Request("^Ping^"));
  EXPECT_EQ(page.error, kAllBusy);  // both were tried and stay busy
  EXPECT_EQ(OpenDescriptors(), before);
  EXPECT_FALSE(page.Request("^Ping^"));
  EXPECT_EQ(page.error, kAllBusy);
}

TEST(Request, SendsPrintRequestsToPrintServersOnly) {
  ScriptedServer first(ScriptedServer::Replies(Framed("first")));
  ScriptedServer second(ScriptedServer::Replies(Framed("second")));
  Requester page(first.Host() + ",0|" + second.Host() + ",1");
  ASSERT_TRUE(page.Request("^GETsegmentPRINTFILE2^,^x^")) << page.error;
  EXPECT_EQ(page.text, "second");
  ASSERT_TRUE(page.Request("^GetSegmentData^,^x^")) << page.error;
  EXPECT_EQ(page.text, "first");
  Requester without(first.Host() + ",0");
  EXPECT_FALSE(without.Request("^GetSegmentPrintfile2^,^x^"));
  EXPECT_EQ(without.error, kAllBusy);
}

TEST(Request, TimesOutOnASilentServerUsingNoProcessorTime) {
  ScriptedServer server({ScriptedServer::Silent(), ScriptedServer::Replies(Framed("awake"))});
  Requester page(server.Host(), 1);
  const std::chrono::nanoseconds before = ThreadTime();
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(page.Request("^Ping^"));
  const auto took = std::chrono::steady_clock::now() - start;
  const std::chrono::nanoseconds used = ThreadTime() - before;
  EXPECT_EQ(page.error, "Timeout of 1 seconds occured while waiting for server response");
  EXPECT_GE(took, 1s);
  EXPECT_LT(used, 50ms);  // the systems count in steps of up to 16 ms
  EXPECT_NE(page.Log().find("!!! <WARNING> Timeout occured - last Winsock state: 7"), std::string::npos);
  EXPECT_FALSE(page.apartment->servers.At(1).busy);
  ASSERT_TRUE(page.Request("^Ping^")) << page.error;
  EXPECT_EQ(page.text, "awake");
}

TEST(Request, ThatHasTimedOutDoesNotTakeAnAnswerThatArrivesInItsLastYield) {
  std::promise<void> mayAnswer;
  std::promise<void> sent;
  std::atomic<bool> asked = false;
  ScriptedServer server([&](Peer& peer) {
    peer.ReadRequest();
    asked = true;
    mayAnswer.get_future().wait_for(10s);
    peer.Send(Framed("late"));
    sent.set_value();
    peer.WaitForClose();
  });
  Requester page(server.Host());
  Apartment& apartment = *page.apartment;
  apartment.controls.ReleaseTimer().Enable(false);  // its tick yields
  // The time passes in one yield, and the answer is sent in the next one, which is the last.
  const std::function<void()> passTime = [&] {
    if (!asked) return apartment.loop.Post(passTime);
    apartment.clock.Advance(20s);
    apartment.loop.Post([&] {
      mayAnswer.set_value();
      ASSERT_EQ(sent.get_future().wait_for(10s), std::future_status::ready) << "no answer to be late";
    });
  };
  apartment.loop.Post(passTime);
  EXPECT_FALSE(page.Request("^Ping^"));
  EXPECT_EQ(page.error, "Timeout of 10 seconds occured while waiting for server response");
  EXPECT_EQ(page.Log().find("packet received"), std::string::npos) << page.Log();
}

TEST(Request, HasOneTimeoutForAllTheServersItTries) {
  Requester page("a.example,1|b.example,1|c.example,1|d.example,1", 1);
  Apartment& apartment = *page.apartment;
  const auto mayEnd = std::make_shared<std::counting_semaphore<>>(0);
  apartment.resolver = [mayEnd](const std::string&) {
    (void)mayEnd->try_acquire_for(10s);
    return LookupResult{{}, 11001};
  };
  apartment.clock.SetWall(kNoon);
  // Each lookup takes 700 ms by the apartment's clock and fails in a later yield.
  std::int32_t begun = 0;
  std::int32_t ended = 0;
  const std::function<void()> step = [&] {
    if (begun < 4 && apartment.servers.At(begun + 1).busy) {
      ++begun;
      apartment.clock.Advance(700ms);
    } else if (ended < begun) {
      ++ended;
      mayEnd->release();
    }
    apartment.loop.Post(step);
  };
  apartment.loop.Post(step);
  EXPECT_FALSE(page.Request("^Ping^"));
  EXPECT_EQ(page.error, "Timeout of 1 seconds occured while waiting for server response");
  EXPECT_EQ(begun, 3);  // the second boundary after the first passes during the third lookup
  mayEnd->release(4);
}

TEST(Request, CountsSecondBoundariesThatAJumpOfTheWallClockDoesNotTouch) {
  ScriptedServer server(ScriptedServer::Replies(Framed("late"), 300));
  Requester page(server.Host(), 20);
  page.apartment->loop.Post([&] { page.apartment->clock.SetWall(DateTime::FromCivil({2031, 1, 1, 0, 0, 0})); });
  EXPECT_TRUE(page.Request("^Ping^")) << page.error;

  // Time that really passes ends it: from 0.7 seconds after a boundary on, the 21st boundary is 20.3 seconds away.
  ScriptedServer silent(ScriptedServer::Silent());
  Requester waiting(silent.Host(), 20);
  Clock& clock = waiting.apartment->clock;
  clock.SetWall(kNoon);
  clock.Advance(700ms);
  waiting.apartment->loop.Post([&] { clock.Advance(20'300ms); });
  const Clock::SteadyPoint start = clock.SteadyNow();
  EXPECT_FALSE(waiting.Request("^Ping^"));
  EXPECT_EQ(waiting.error, "Timeout of 20 seconds occured while waiting for server response");
  EXPECT_LT(clock.SteadyNow() - start, 21s);
}

TEST(Request, RefusesReentryAndLeavesTheRunningRequestAlone) {
  ScriptedServer server(ScriptedServer::Replies(Framed("outer"), 50));
  Requester page(server.Host());
  bool innerResult = true;
  std::string innerError;
  page.apartment->loop.Post([&] { innerResult = page.execution.Request({.request = "^Inner^"}, &innerError); });
  ASSERT_TRUE(page.Request("^Outer^")) << page.error;
  EXPECT_FALSE(innerResult);
  EXPECT_EQ(innerError, "Winsock Error (previous request not finished properly)");
  EXPECT_EQ(page.text, "outer");
  EXPECT_NE(page.Log().find("!!! <WARNING> Server request cancelled due to previous one still running"),
            std::string::npos);
}

TEST(Request, InterleavesTwoInstancesOfOneApartmentThroughTheirYields) {
  ScriptedServer slow(ScriptedServer::Replies(Framed("slow"), 100));
  ScriptedServer quick(ScriptedServer::Replies(Framed("quick")));
  Requester page(slow.Host() + "|" + quick.Host());
  const auto secondSlot = static_cast<std::int16_t>(page.apartment->controls.GetFreeControl());
  RequestExecution second(page.apartment, page.timeout, {page.session, page.user, page.password}, page.log);
  second.UseSlot(secondSlot);
  std::string secondText;
  page.apartment->loop.Post([&] {
    ASSERT_TRUE(second.Request({.request = "^Ping^"}, nullptr));
    secondText = second.TakeResponse().View();
  });
  ASSERT_TRUE(page.Request("^Ping^")) << page.error;
  EXPECT_EQ(page.text, "slow");
  EXPECT_EQ(secondText, "quick");
}

TEST(Request, SendsToAPeerThatNeverReadsOnlyAsLongAsTheTimeoutAllows) {
  ScriptedServer server([](Peer& peer) { peer.Pause(5000); });
  Requester page(server.Host(), 0);
  const std::string request = "^" + std::string(64U << 20U, 'x') + "^";
  EXPECT_FALSE(page.Request(request));
  EXPECT_EQ(page.error, "Timeout of 0 seconds occured while waiting for server response");
}

TEST(Request, ReportsBadPortsUnknownHostsAndUnreachableOnesAsSocketErrors) {
  ScriptedServer server(ScriptedServer::Replies(Framed("pong")));
  // No route leads to a broadcast address by TCP, so that nothing leaves this machine.
  Requester page("127.0.0.1,65536|127.0.0.1,-1|no-such-host.invalid,1|255.255.255.255,1|" + server.Host());
  page.apartment->resolver = [](const std::string&) { return LookupResult{{}, 11001}; };
  ASSERT_TRUE(page.Request("^Ping^")) << page.error;
  const std::string log = page.Log();
  for (const char* number : {"10049", "11001", "10051"}) {
    EXPECT_NE(log.find(std::string("Winsock error occured: ") + number + " - "), std::string::npos) << number << log;
  }
  EXPECT_EQ(log.find("10061 - "), std::string::npos) << "another port was tried\n" << log;
}

TEST(Request, LooksAHostNameUpOnceTriesItsAddressesInOrderAndLooksAgainAfterAFailedConnect) {
  auto server = std::make_unique<ScriptedServer>(ScriptedServer::Replies(Framed("pong")));
  Requester page("archive.example," + std::to_string(server->port()));
  std::atomic<int> lookups = 0;
  // The first two refuse, at once and later; the others reach the server.
  const SocketAddress answering = *NumericAddress("127.0.0.1");
  page.apartment->resolver = [&](const std::string& host) {
    ++lookups;
    EXPECT_EQ(host, "archive.example");
    return LookupResult{
        {*NumericAddress("::1"), RefusingThroughThePoller(), answering, *NumericAddress("::ffff:127.0.0.1")}, 0};
  };
  ASSERT_TRUE(page.Request("^Ping^")) << page.error;
  ASSERT_TRUE(page.apartment->servers.At(1).address.has_value());
  EXPECT_EQ(page.apartment->servers.At(1).address->bytes, answering.bytes);
  ASSERT_TRUE(page.Request("^Ping^")) << page.error;
  EXPECT_EQ(lookups, 1);
  server.reset();
  EXPECT_FALSE(page.Request("^Ping^"));
  page.apartment->servers.Release(1);
  EXPECT_FALSE(page.Request("^Ping^"));
  EXPECT_EQ(lookups, 2);
}

TEST(Request, AnErrorThrownInsideAYieldGivesServerAndSocketBack) {
  ScriptedServer server({ScriptedServer::Silent(), ScriptedServer::Replies(Framed("pong"))});
  Requester page(server.Host());
  page.apartment->loop.Post([] { throw RuntimeError(5); });
  EXPECT_FALSE(page.Request("^Ping^"));
  EXPECT_EQ(page.error, "General processing error: 5 - Invalid procedure call or argument");
  EXPECT_FALSE(page.apartment->servers.At(1).busy);
  EXPECT_TRUE(page.Request("^Ping^")) << page.error;
}

TEST(Request, RunsAtMostSixteenLookupsAtOnceWhichItsTimeoutLeavesBehind) {
  std::promise<void> release;
  const auto released = release.get_future().share();
  std::atomic<int> lookups = 0;
  Requester page("slow.example,1", -1);
  page.apartment->resolver = [released, &lookups](const std::string&) {
    ++lookups;
    released.wait_for(20s);
    return LookupResult{{}, 11001};
  };
  const std::size_t descriptors = OpenDescriptors();
  std::thread([] {}).join();  // a sanitizer may start a thread of its own with the first one
  const std::size_t before = ThreadCount();
  for (int i = 0; i < 16; ++i) {
    EXPECT_FALSE(page.Request("^Ping^"));
    EXPECT_EQ(page.error, "Timeout of -1 seconds occured while waiting for server response") << i;
    EXPECT_EQ(OpenDescriptors(), descriptors) << i;
    EXPECT_FALSE(page.apartment->servers.At(1).busy) << i;
  }
  for (int i = 0; i < 100; ++i) {
    EXPECT_FALSE(page.Request("^Ping^"));
    EXPECT_EQ(page.error, "Winsock Error (11002 - Host was not found; the name server did not answer)") << i;
    page.apartment->servers.Release(1);
  }
  EXPECT_LE(ThreadCount(), before + 16);
  release.set_value();
  // The look-ups that have ended make room for others.
  page.timeout = 10;
  for (int i = 0; i < 10'000 && lookups <= 16; ++i) {
    std::this_thread::yield();
    page.Request("^Ping^");
    page.apartment->servers.Release(1);
  }
  EXPECT_GT(lookups, 16);
  EXPECT_NE(page.Log().find("Winsock error occured: 11001 - "), std::string::npos);
}

}  // namespace
}  // namespace oxaqrycln::testing
