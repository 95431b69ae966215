#include "component/query_watch.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <functional>
#include <string>
#include <thread>

#include "tests/support/allocations.h"
#include "tests/support/page.h"
#include "transport/apartment.h"

namespace oxaqrycln::testing {
namespace {

using namespace std::chrono_literals;

struct OutcomeCase {
  const char* name;
  ScriptedServer::Script script;
  RequestResult result;
  const char* text;  // "" for any
  bool isBusy = false;
};

TEST(QueryWatch, ReportsWhatBecameOfEachRequest) {
  for (const OutcomeCase& each :
       {OutcomeCase{"an answer", ScriptedServer::Replies(Answer({"a,1"})), RequestResult::Succeeded, ""},
        OutcomeCase{"an error of the server", ScriptedServer::Replies(Framed("Status: No rights\r\n")),
                    RequestResult::Refused, "No rights"},
        OutcomeCase{"a connection that breaks", [](Peer& peer) { peer.ReadRequest(); }, RequestResult::ConnectionFailed,
                    "Winsock Error (10054 - Connection was reset by the remote side)"},
        OutcomeCase{"no answer in time", ScriptedServer::Silent(), RequestResult::TimedOut,
                    "Timeout of 10 seconds occured while waiting for server response"},
        OutcomeCase{"all servers busy", ScriptedServer::Silent(), RequestResult::AllBusy,
                    "All query servers are currently busy", true}}) {
    InOwnThread([&] {
      Page page({each.script});
      QueryWatch watch(page.query);
      if (each.result == RequestResult::TimedOut) {
        watch.OnWait([](const RequestProgress&) { Apartment::Current()->clock.Advance(12s); });
      }
      if (each.isBusy) Apartment::Current()->servers.GetFreeServer(false, "another");
      Variant status;
      const bool succeeds = each.result == RequestResult::Succeeded;
      EXPECT_EQ(page.query.TELOGetChannelsInit(&status), succeeds ? Variant::Long(1) : kFailed) << each.name;
      const RequestOutcome& outcome = watch.LastRequest();
      EXPECT_EQ(outcome.result, each.result) << each.name;
      EXPECT_EQ(outcome.text, each.text) << each.name;
      EXPECT_EQ(status, Variant(outcome.text)) << each.name;
      EXPECT_EQ(outcome.wasSent, !each.isBusy) << each.name;
      ASSERT_EQ(outcome.servers.size(), each.isBusy ? 0U : 1U) << each.name;
      EXPECT_EQ(watch.Servers().at(0).isBusy, each.isBusy) << each.name;
      EXPECT_EQ(watch.LastError().number, 0) << each.name;
    });
  }
}

TEST(QueryWatch, CancelsARunningRequestFromAnyThreadUntilItIsResumed) {
  InOwnThread([] {
    Page page({ScriptedServer::Silent(), ScriptedServer::Replies(Answer({"a,1"}))});
    QueryWatch watch(page.query);
    std::atomic<bool> waits = false;
    watch.OnWait([&](const RequestProgress&) { waits = true; });
    std::thread canceller([&] {
      for (int tries = 0; !waits && tries < 10'000; ++tries) std::this_thread::sleep_for(1ms);
      watch.Cancel();
    });
    Variant status;
    EXPECT_EQ(page.query.TELOGetChannelsInit(&status), kFailed);
    canceller.join();
    EXPECT_EQ(status, Variant("Request cancelled"));
    EXPECT_EQ(watch.LastRequest().result, RequestResult::Cancelled);
    EXPECT_NE(page.Log().find("!!! <WARNING> Request cancelled"), std::string::npos) << page.Log();
    EXPECT_EQ(page.Log().find("<ERROR>"), std::string::npos) << page.Log();
    EXPECT_FALSE(watch.Servers().at(0).isBusy);
    EXPECT_EQ(page.query.TELOGetChannelsInit(), kFailed);
    EXPECT_TRUE(watch.LastRequest().servers.empty());
    watch.Resume();
    EXPECT_EQ(page.query.TELOGetChannelsInit(), Variant::Long(1));
  });
}

TEST(QueryWatch, ShowsHowFarARequestIs) {
  InOwnThread([] {
    std::atomic<bool> goOn = false;
    const std::string answer = Answer({std::string(1000, 'x')});
    Page page({[&](Peer& peer) {
      peer.ReadRequest();
      peer.Send(std::string_view(answer).substr(0, 500));
      for (int waits = 0; !goOn && waits < 10'000; ++waits) peer.Pause(1);
      peer.Send(std::string_view(answer).substr(500));
      peer.WaitForClose();
    }});
    QueryWatch watch(page.query);
    RequestProgress seen;
    watch.OnWait([&](const RequestProgress& progress) {
      if (progress.received == 0) return;
      seen = progress;
      goOn = true;
    });
    EXPECT_EQ(page.query.TELOGetChannelsInit(), Variant::Long(1));
    EXPECT_EQ(seen.announced, 1014);  // "Status: OK", the line and two line ends
    EXPECT_LT(seen.received, seen.announced);
    EXPECT_GT(seen.sent, 0);
    EXPECT_EQ(watch.Progress().received, watch.Progress().announced);
  });
}

TEST(QueryWatch, NamesEveryServerThatWasTriedAndHasTheInstanceTrySickOnesLast) {
  InOwnThread([] {
    ScriptedServer server(ScriptedServer::Replies(Answer({"a,1"})));
    const std::uint16_t unused = UnusedPort();
    clsQuery query;
    clsQuery other;
    query.RemoteHosts("127.0.0.1," + std::to_string(unused) + "|" + server.Host());
    query.lngRequestTimeout = 10;
    other.lngRequestTimeout = 10;
    ASSERT_TRUE(query.Init(false) && other.Init(false));
    const auto tried = [](clsQuery& instance) {
      const QueryWatch watch(instance);
      Apartment::Current()->servers.At(1).busy = false;
      EXPECT_EQ(instance.TELOGetChannelsInit(), Variant::Long(1));
      std::string text;
      for (const auto& each : watch.LastRequest().servers) text += std::to_string(each.port) + each.error + " ";
      return text;
    };
    const std::string sound = std::to_string(server.port()) + " ";
    const std::string both = std::to_string(unused) + "10061 - Connection was refused " + sound;
    QueryWatch watch(query);
    EXPECT_EQ(tried(query), both);
    EXPECT_TRUE(watch.Servers().at(0).isBusy);
    watch.SetSickServers(SickServers::TriedLast);
    EXPECT_EQ(tried(query), sound);
    EXPECT_EQ(watch.Servers().at(0).failures, 1);
    EXPECT_EQ(tried(other), both);
  });
}

class CountedConnection final : public Connection {
 public:
  explicit CountedConnection(int& closes) : closes_(closes) {}
  void Open(std::string_view /*connectionString*/) override {}
  std::shared_ptr<Recordset> Execute(std::string_view /*statement*/) override {
    throw RuntimeError(error::kInternalError, "of the host");
  }
  std::int32_t State() const override { return 1; }
  bool TakesBackslashLiterally() const override { return true; }
  void Close() override { ++closes_; }

 private:
  int& closes_;
};

TEST(QueryWatch, LendsTheInstanceAConnectionOfTheHostAndReportsItsErrors) {
  InOwnThread([] {
    int closes = 0;
    {
      clsQuery query;
      QueryWatch watch(query);
      ASSERT_TRUE(query.Init(false));
      query.GetUserRights(1);
      EXPECT_EQ(watch.LastError().number, 91);
      watch.UseDatabase(std::make_shared<CountedConnection>(closes));
      query.GetUserRights(1);
      EXPECT_EQ(watch.LastError().description, "of the host");
      query.Encode("x");
      EXPECT_EQ(watch.LastError().number, 0);
    }
    EXPECT_EQ(closes, 1);
  });
}

TEST(QueryWatch, ReportsExhaustedMemoryWhereAResultCannot) {
  WithAnswer({"gamma,a longer text for which memory is needed", "alpha,1", "beta,2"}, [](Page& page) {
    page.query.strDebugLogPath = "";  // a line of the log may be lost
    const QueryWatch watch(page.query);
    const std::array<std::string, 4> expected{"alpha", "beta", "gamma", ""};
    int after = 0;
    for (bool failed = true; failed && after < 1000; ++after) {
      std::array<std::string, 4> names;
      bool isComplete = false;
      bool isReported = false;
      {
        const AllocationFailure failure(after);
        const Variant count = page.query.TELOGetChannelsInit();
        isReported = count == kFailed || watch.LastError().number == error::kOutOfMemory;
        for (std::string& name : names) {
          name = page.query.TELOGetChannelsNext();
          isReported = isReported || watch.LastError().number == error::kOutOfMemory;
        }
        failed = failure.HasHappened();
        isComplete = IsSame(count, Variant::Long(3)) && names == expected;
      }
      EXPECT_TRUE(isComplete || isReported) << "the allocation after " << after;
      Apartment::Current()->servers.At(1).busy = false;
    }
    EXPECT_GT(after, 10);
    EXPECT_LT(after, 1000);
  });
}

}  // namespace
}  // namespace oxaqrycln::testing
