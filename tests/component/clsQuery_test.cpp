// The life of an instance: settings, Init, page events, end.
#include "component/clsQuery.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <string>

#include "component/objects.h"
#include "platform/database/database.h"
#include "platform/database/odbc_connection.h"
#include "platform/timer.h"
#include "tests/support/page.h"
#include "tests/support/process_state.h"
#include "transport/apartment.h"
#include "values/errors.h"

namespace oxaqrycln::testing {
namespace {

using namespace std::chrono_literals;

// A database that a host registers; records what is asked of it. One opened as "stuck" fails to close.
class HostDatabase : public Connection {
 public:
  explicit HostDatabase(std::string& trace) : trace_(trace) {}
  void Open(std::string_view connectionString) override {
    if (connectionString == "broken") throw RuntimeError(error::kPermissionDenied);
    trace_ += "open(" + std::string(connectionString) + ") ";
    isStuck_ = connectionString == "stuck";
    state_ = 1;
  }
  std::shared_ptr<Recordset> Execute(std::string_view /*statement*/) override { return nullptr; }
  std::int32_t State() const override { return state_; }
  void Close() override {
    if (isStuck_) throw RuntimeError(error::kPermissionDenied);
    trace_ += "close ";
    state_ = 0;
  }

 private:
  std::string& trace_;
  std::int32_t state_ = 0;
  bool isStuck_ = false;
};

struct Settings {
  explicit Settings(clsQuery& query, const TemporaryDirectory& logs) {
    query.strSessionID = "S1";
    query.strDebugLogPath = logs.path();
  }
};

TEST(Instance, LogsItsLifeFromInitToItsEnd) {
  InOwnThread([] {
    const TemporaryDirectory logs;
    {
      clsQuery query;
      const Settings settings(query, logs);
      EXPECT_TRUE(query.Init(false));
    }
    const std::string log = logs.Read("S1.log");
    const std::string start = "     Initializing new " + ProgramPath().parent_path().string() + "\\" +
                              ProgramPath().filename().string() + " v0.1.0 instance with handle id ";
    std::size_t at = 0;
    for (const char* line :
         {start.c_str(), " and thread id ", " for session id S1\r\n", "     Assigning control instance #1\r\n",
          "     Terminating OXAQryCln instance for session id S1\r\n", "     Releasing control instance #1\r\n"}) {
      const std::size_t found = log.find(line, at);
      ASSERT_NE(found, std::string::npos) << line << " is not in order in\n" << log;
      at = found;
    }
    EXPECT_EQ(log.find("Processing error"), std::string::npos) << log;
  });
}

TEST(Instance, KeepsItsSlotWhenItIsInitialisedAgainAndWorksWithoutALog) {
  InOwnThread([] {
    clsQuery query;
    EXPECT_TRUE(query.Init(false));
    EXPECT_TRUE(query.Init(false));
    const clsQuery without;  // ends without Init
    EXPECT_EQ(Apartment::Current()->controls.SlotCount(), 1);
  });
}

TEST(Init, OpensTheDatabaseAndGivesItsSlotBackWhateverThatDoes) {
  struct Case {
    const char* connect;
    bool opens;
    const char* trace;
    const char* after;  // what the log holds, behind the line of the opening if there is one
  };
  for (const Case& each : {Case{"unregistered", false, "", "'Init()': 429 - "},
                           {"DSN=web", true, "open(DSN=web) close ", "Terminating"},
                           {"broken", false, "", "'Init()': 70 - Permission denied"},
                           {"stuck", true, "open(stuck) ", "'Class_Terminate()': 70 - Permission denied"}}) {
    InOwnThread([&] {
      const TemporaryDirectory logs;
      std::string trace;
      RegisterObject("ADODB.Connection", [&trace] { return std::make_shared<HostDatabase>(trace); });
      const bool isRegistered = each.connect != std::string_view("unregistered");
      if (!isRegistered) UnregisterObject("adodb.connection");
      {
        clsQuery query;
        const Settings settings(query, logs);
        query.strDBConnect = each.connect;
        EXPECT_EQ(query.Init(), each.opens) << each.connect;
      }
      RegisterObject("ADODB.Connection", MakeOdbcConnection);
      EXPECT_EQ(trace, each.trace);
      const std::string log = logs.Read("S1.log");
      const std::size_t opening = log.find("     Opening database connection: " + std::string(each.connect) + "\r\n");
      EXPECT_EQ(opening != std::string::npos, isRegistered) << log;
      EXPECT_NE(log.find(each.after, isRegistered ? opening : 0), std::string::npos) << log;
      EXPECT_EQ(Apartment::Current()->controls.GetFreeControl(), 1) << each.connect;
    });
  }
}

TEST(Init, StartsTheTimerThatFreesAServerWhichIsBusyForTooLong) {
  WithAnswer({"back"}, [](Page& page) {
    const auto apartment = Apartment::Current();
    Timer& timer = apartment->controls.ReleaseTimer();
    timer.SetInterval(std::chrono::hours(1));
    timer.Enable(false);
    EXPECT_TRUE(page.query.Init(false));
    apartment->servers.GetFreeServer(false, "gone");
    EXPECT_EQ(page.query.LiveCheck(), "All query servers are currently busy");
    apartment->clock.Advance(std::chrono::minutes(7));
    EXPECT_EQ(page.query.LiveCheck(), "back");
  });
}

TEST(Init, FailsThroughItsHandlerWhenEverySlotIsTaken) {
  InOwnThread([] {
    const TemporaryDirectory logs;
    frmControls& controls = Apartment::Current()->controls;
    while (controls.GetFreeControl() != -1) {
    }
    EXPECT_EQ(controls.SlotCount(), 32767);
    clsQuery query;
    const Settings settings(query, logs);
    EXPECT_FALSE(query.Init(false));
    EXPECT_NE(logs.Read("S1.log").find("'Init()': 7 - No free connection slot"), std::string::npos);
    controls.ReleaseControl(9);
    EXPECT_TRUE(query.Init(false));
  });
}

TEST(RemoteHosts, ReportsABadListUnderItsOwnName) {
  InOwnThread([] {
    const TemporaryDirectory logs;
    clsQuery query;
    const Settings settings(query, logs);
    query.RemoteHosts("host,port");
    EXPECT_NE(logs.Read("S1.log").find("'Let RemoteHosts()': 13 - Type mismatch"), std::string::npos);
  });
}

TEST(HelperMethods, LogTheirFailuresAndThePagesLines) {
  WithAnswer({}, [](Page& page) {
    clsQuery& query = page.query;
    EXPECT_EQ(query.Decode(query.Encode("Text")), "Text");
    EXPECT_EQ(query.Encode(Missing), "");
    EXPECT_EQ(query.Decode("08"), "");
    const std::string files = page.blobs.path() + "\\none\\*";
    query.DeleteFTPObjects(files);
    for (const std::string& line :
         {std::string("'Encode()': 13 - "), std::string("'Decode()': 13 - "),
          "     Deleting FTP objects '" + files + "'", std::string("'DeleteFTPObjects()': 76 - ")}) {
      EXPECT_NE(page.Log().find(line), std::string::npos) << line;
    }
    struct Case {
      Variant level;
      const char* start;
    };
    for (const Case& each : {Case{Missing, "     "}, Case{bytWarning, " !!! <WARNING> "},
                             Case{bytError, " ### <ERROR> "}, Case{bytExtended, " +++ <DEBUG> "}, Case{999, "     "},
                             Case{-1, "     "}, Case{"abc", "     "}, Case{2.5, "     "}}) {
      query.WriteLog("mine", each.level);
      EXPECT_TRUE(page.Log().ends_with(std::string(each.start) + "mine\r\n")) << page.Log();
    }
  });
}

TEST(Instance, MayEndInsideAnyYieldOfItsOwnRequestWhichThenDoesNothingMore) {
  struct Case {
    const char* name;
    const char* after;   // ends once the log holds this; nullptr: in a timer's tick
    const char* before;  // servers ahead of the scripted one
    bool isFirstBusy = false;
    bool answers = false;
  };
  for (const Case& each :
       {Case{"before the first claim", nullptr, ""}, Case{"while it scans busy servers", "", "127.0.0.1,1|", true},
        Case{"while it looks up a name", "Found free server #1: slow", "slow.example,1|"},
        Case{"while it waits for the answer", "Winsock connection established", ""},
        Case{"when it has the answer", "Response received", "", false, true}}) {
    InOwnThread([&] {
      const TemporaryDirectory logs;
      ScriptedServer server(each.answers ? ScriptedServer::Replies(Answer({"a,1"})) : ScriptedServer::Silent());
      auto query = std::make_unique<clsQuery>();
      const Settings settings(*query, logs);
      query->lngRequestTimeout = 10;
      query->RemoteHosts(each.before + server.Host());
      ASSERT_TRUE(query->Init(false));
      const auto apartment = Apartment::Current();
      std::promise<void> release;
      apartment->resolver = [released = release.get_future().share()](const std::string&) {
        released.wait_for(20s);
        return LookupResult{{}, 11001};
      };
      ServerTable& servers = apartment->servers;
      if (each.isFirstBusy) servers.GetFreeServer(false, "other");
      clsQuery* const running = query.get();
      std::string before;
      const auto end = [&] {
        query.reset();
        before = logs.Read("S1.log");
      };
      Timer tick(apartment->loop, 1s, end);
      tick.Enable(each.after == nullptr);
      apartment->clock.Advance(1s);
      const std::function<void()> endWhenLogged = [&] {
        if (logs.Read("S1.log").find(each.after) != std::string::npos) return end();
        apartment->loop.Post(endWhenLogged);
      };
      if (each.after != nullptr) apartment->loop.Post(endWhenLogged);
      Variant status;
      EXPECT_EQ(running->TELOGetChannelsInit(&status), Variant::Integer(-1)) << each.name;
      release.set_value();
      EXPECT_EQ(status, Variant("General processing error: 91 - The instance has ended while its request was running"))
          << each.name;
      const std::string rest = logs.Read("S1.log").substr(before.size());
      EXPECT_LT(rest.find("'Request()': 91 - "), rest.find('\n')) << each.name << ": more was done\n" << rest;
      int claims = 0;
      for (std::int32_t number = 1; number <= servers.Count(); ++number) {
        EXPECT_EQ(servers.At(number).busy, servers.At(number).session == "other") << each.name;
        claims += servers.At(number).session == "S1" ? 1 : 0;
      }
      EXPECT_EQ(claims, each.after == nullptr ? 0 : 1) << each.name;
      EXPECT_EQ(apartment->controls.GetFreeControl(), 1) << each.name;
    });
  }
}

}  // namespace
}  // namespace oxaqrycln::testing
