#include "transport/server_table.h"

#include <gtest/gtest.h>

#include <array>

#include "support/text_helpers.h"
#include "tests/support/requester.h"
#include "tests/support/temporary_directory.h"
#include "values/errors.h"

namespace oxaqrycln::testing {
namespace {

using namespace std::chrono_literals;

const DateTime kTenOClock = DateTime::FromCivil({2026, 11, 15, 10, 0, 0});
const DateTime kOneMinutePastTen = DateTime::FromCivil({2026, 11, 15, 10, 1, 0});

class ServerTableTest : public ::testing::Test {
 protected:
  void Load(std::string_view hosts) { servers.Load(hosts, log); }
  TemporaryDirectory logs;
  std::string directory{logs.path()};
  std::string session{"S1"};
  Apartment apartment;
  SessionLog log{directory, session, apartment.clock};
  ServerTable& servers = apartment.servers;
};

TEST_F(ServerTableTest, ReadsEntriesAndKeepsTheFirstList) {
  Load("h,1|srv-b,2002,0|c,3,|d,4,1,user," + Encode("pass") + "|e,5,2,user|f,6,1,user,ZZ");
  ASSERT_EQ(servers.Count(), 6);
  EXPECT_EQ(servers.At(6).password, "");  // it cannot be decoded
  EXPECT_NE(logs.Read("S1.log").find("'Decode()': 13 - "), std::string::npos);
  EXPECT_TRUE(servers.At(1).print);
  EXPECT_FALSE(servers.At(2).print);
  EXPECT_FALSE(servers.At(3).print);
  EXPECT_TRUE(servers.At(4).print);
  EXPECT_EQ(servers.At(4).password, "pass");
  EXPECT_FALSE(servers.At(5).print);
  EXPECT_EQ(servers.At(5).password, "");
  EXPECT_NE(logs.Read("S1.log").find("     Setting query server #2: srv-b - 2002 - 0\r\n"), std::string::npos);
  Load("other,9");
  EXPECT_EQ(servers.At(1).host, "h");
}

TEST_F(ServerTableTest, ABadEntryLeavesTheTableUnsetForALaterAssignment) {
  std::string tooMany = "h,1";
  for (int i = 0; i < 32767; ++i) tooMany += "|h,1";
  for (const std::string& bad : {std::string("h,port"), std::string("h,"), std::string("h"), std::string("a,1||b,2"),
                                 std::string("h,99999999999"), tooMany}) {
    EXPECT_THROW(Load(bad), RuntimeError) << bad.substr(0, 20);
    EXPECT_EQ(servers.Count(), 0) << bad.substr(0, 20);
  }
  Load("");
  EXPECT_EQ(servers.Count(), 0);
  EXPECT_EQ(servers.GetFreeServer(false, "S"), 0);
  Load("h,1");  // the empty list counted as set
  EXPECT_EQ(servers.Count(), 0);
}

TEST_F(ServerTableTest, ClaimsTheFirstFreeServerThatMayTakeTheRequest) {
  Load("a,1,0|b,2,1");
  EXPECT_EQ(servers.GetFreeServer(true, "S"), 2);
  EXPECT_EQ(servers.GetFreeServer(true, "S"), 0);
  apartment.clock.SetWall(kTenOClock);
  EXPECT_EQ(servers.GetFreeServer(false, "S7"), 1);
  std::string report;
  EXPECT_EQ(servers.GetFreeServer(false, "S", &report), 0);
  EXPECT_EQ(report.rfind("\r\nServer #1 (a:1): in use by session S7 since 15.11.2026 10:00:0", 0), 0U) << report;
  EXPECT_NE(report.find("\r\nServer #2 (b:2): in use by session S since "), std::string::npos) << report;
  servers.Release(1);
  apartment.clock.SetWall(kOneMinutePastTen);
  EXPECT_EQ(servers.GetFreeServer(false, "S8"), 1);
  apartment.loop.Post([&] { servers.Release(2); });  // in the yield after the first server is passed over
  EXPECT_EQ(servers.GetFreeServer(false, "S", &report), 2);
  EXPECT_EQ(report.rfind("\r\nServer #1 (a:1): in use by session S8 since 15.11.2026 10:01:0", 0), 0U) << report;
}

TEST_F(ServerTableTest, FreesAClaimAfterMoreThanFiveMinuteBoundaries) {
  struct Case {
    const char* name;
    CivilTime claimed;
    CivilTime checked;
    std::int16_t freed;
  };
  for (const Case& each :
       {Case{"five boundaries", {2026, 11, 15, 10, 0, 0}, {2026, 11, 15, 10, 5, 58}, 0},
        Case{"six boundaries in five minutes", {2026, 11, 15, 10, 0, 58}, {2026, 11, 15, 10, 6, 0}, 1},
        Case{"over midnight", {2026, 11, 15, 23, 58, 0}, {2026, 11, 16, 0, 4, 0}, 1}}) {
    Apartment fresh;
    fresh.servers.Load("a,1", log);
    fresh.clock.SetWall(DateTime::FromCivil(each.claimed));
    ASSERT_EQ(fresh.servers.GetFreeServer(false, "S"), 1);
    fresh.clock.SetWall(DateTime::FromCivil(each.checked));
    EXPECT_EQ(fresh.servers.CheckReleaseBusyServer(), each.freed) << each.name;
    EXPECT_EQ(fresh.servers.At(1).busy, each.freed == 0) << each.name;
  }
}

TEST_F(ServerTableTest, TheFormsTimerFreesOneStaleServerATick) {
  Load("a,1|b,2");
  servers.GetFreeServer(false, "S");
  servers.GetFreeServer(false, "S");
  apartment.clock.Advance(7min);
  apartment.loop.RunReady();
  EXPECT_FALSE(servers.At(1).busy);
  EXPECT_TRUE(servers.At(2).busy);
  apartment.loop.RunReady();
  EXPECT_TRUE(servers.At(2).busy);
  apartment.clock.Advance(10s);
  apartment.loop.RunReady();
  EXPECT_FALSE(servers.At(2).busy);
}

TEST_F(ServerTableTest, KeepsAServerSickForTwiceAsLongAfterEachFailureInARow) {
  Load("a,1");
  for (int round = 1; round <= 2; ++round) {
    for (const auto& expected : {30s, 60s, 120s, 240s, 300s, 300s}) EXPECT_EQ(servers.RecordFailure(1), expected);
    servers.RecordSuccess(1);
  }
}

TEST_F(ServerTableTest, ClaimsHealthyServersThenDueOnesInOrderThenTheSickOneThatIsDueSoonest) {
  Load("a,1,0|b,2|c,3|d,4");
  const std::array<std::int16_t, 1> tried{4};
  servers.RecordFailure(3);
  apartment.clock.Advance(10s);
  servers.RecordFailure(2);
  EXPECT_EQ(servers.FreeCount(true, tried), 2);
  const auto claim = [&](bool printOnly) { return servers.GetHealthyServer(printOnly, "S", tried); };
  EXPECT_EQ(claim(false), 1);
  EXPECT_EQ(claim(true), 3);
  EXPECT_EQ(claim(true), 2);
  EXPECT_EQ(claim(true), 0);
  EXPECT_EQ(servers.FreeCount(true, {}), 1);
  servers.Release(2);
  servers.Release(3);
  apartment.clock.Advance(30s);  // both are due: each takes one probe at once
  EXPECT_EQ(claim(true), 2);
  EXPECT_EQ(claim(true), 3);
  EXPECT_EQ(claim(true), 0);
}

}  // namespace
}  // namespace oxaqrycln::testing
