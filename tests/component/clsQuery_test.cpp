// The life of an instance: settings, Init, page events, end.
#include "component/clsQuery.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <future>
#include <memory>
#include <string>

#include "component/text_helpers.h"
#include "platform/database.h"
#include "platform/errors.h"
#include "platform/objects.h"
#include "platform/odbc_connection.h"
#include "platform/scripting_context.h"
#include "platform/timer.h"
#include "tests/support/page.h"
#include "transport/apartment.h"

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

std::string ProgramDirectory() { return std::filesystem::read_symlink("/proc/self/exe").parent_path().string(); }

TEST(Instance, LogsItsLifeFromInitToItsEnd) {
  InOwnThread([] {
    const TemporaryDirectory logs;
    {
      clsQuery query;
      const Settings settings(query, logs);
      EXPECT_TRUE(query.Init(false));
    }
    const std::string log = logs.Read("S1.log");
    const std::string start =
        "     Initializing new " + ProgramDirectory() + "\\component_test v0.1.0 instance with handle id ";
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

TEST(Instance, GivesItsSlotBackAndWorksWithoutALog) {
  InOwnThread([] {
    for (int i = 0; i < 3; ++i) {
      clsQuery first;
      clsQuery second;
      EXPECT_TRUE(first.Init(false));
      EXPECT_TRUE(second.Init(false));
      EXPECT_TRUE(second.Init(false));  // once more: goes on with its slot
      const clsQuery without;           // ends without Init
      EXPECT_EQ(Apartment::Current()->controls.SlotCount(), 2);
    }
  });
}

TEST(Instance, GivesItsSlotBackWhenItsDatabaseDoesNotClose) {
  InOwnThread([] {
    const TemporaryDirectory logs;
    std::string trace;
    RegisterObject("ADODB.Connection", [&trace] { return std::make_shared<HostDatabase>(trace); });
    {
      clsQuery query;
      const Settings settings(query, logs);
      query.strDBConnect = "stuck";
      EXPECT_TRUE(query.Init());
    }
    RegisterObject("ADODB.Connection", MakeOdbcConnection);
    EXPECT_NE(logs.Read("S1.log").find("'Class_Terminate()': 70 - Permission denied"), std::string::npos);
    EXPECT_EQ(Apartment::Current()->controls.GetFreeControl(), 1);
  });
}

TEST(Init, OpensTheDatabaseUnlessToldNotTo) {
  InOwnThread([] {
    const TemporaryDirectory logs;
    std::string trace;
    {
      clsQuery query;
      const Settings settings(query, logs);
      UnregisterObject("adodb.connection");
      EXPECT_FALSE(query.Init());
      EXPECT_NE(logs.Read("S1.log").find("'Init()': 429 - "), std::string::npos);
    }
    RegisterObject("ADODB.Connection", [&trace] { return std::make_shared<HostDatabase>(trace); });
    {
      clsQuery query;
      const Settings settings(query, logs);
      query.strDBConnect = "DSN=web";
      EXPECT_TRUE(query.Init());
      EXPECT_NE(logs.Read("S1.log").find("     Opening database connection: DSN=web\r\n"), std::string::npos);
    }
    EXPECT_EQ(trace, "open(DSN=web) close ");
    {
      clsQuery query;
      const Settings settings(query, logs);
      query.strDBConnect = "broken";
      EXPECT_FALSE(query.Init(true));
      const std::string log = logs.Read("S1.log");
      const std::size_t failure = log.find("'Init()': 70 - Permission denied");
      EXPECT_NE(failure, std::string::npos) << log;
      EXPECT_LT(log.find("     Opening database connection: broken\r\n"), failure) << log;
    }
    EXPECT_EQ(trace, "open(DSN=web) close ");  // what never opened is not closed
    RegisterObject("ADODB.Connection", MakeOdbcConnection);
  });
}

TEST(Init, StartsTheTimerThatFreesAServerWhichIsBusyForTooLong) {
  WithAnswer({"back"}, [](Page& page) {
    const auto apartment = Apartment::Current();
    Timer& timer = apartment->controls.ReleaseTimer();
    timer.SetInterval(std::chrono::hours(1));
    timer.Enable(false);
    EXPECT_TRUE(page.query.Init(false));
    EXPECT_EQ(timer.Interval(), std::chrono::seconds(30));
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

TEST(RemoteHosts, ReportsABadListUnderItsOwnNameAndTakesALaterOne) {
  InOwnThread([] {
    const TemporaryDirectory logs;
    clsQuery query;
    const Settings settings(query, logs);
    query.RemoteHosts("host,port");
    EXPECT_NE(logs.Read("S1.log").find("'Let RemoteHosts()': 13 - Type mismatch"), std::string::npos);
    query.RemoteHosts("a,1,0");
    query.RemoteHosts("b,2");
    const std::string log = logs.Read("S1.log");
    EXPECT_NE(log.find("     Setting query server #1: a - 1 - 0\r\n"), std::string::npos);
    EXPECT_EQ(log.find("Setting query server #1: b"), std::string::npos);
  });
}

class HostPage : public ScriptingContext {
 public:
  std::shared_ptr<PageRequest> Request() override { return nullptr; }
};

TEST(PageEvents, KeepTheContextFromStartToEndAndRefuseOtherValues) {
  InOwnThread([] {
    const TemporaryDirectory logs;
    clsQuery query;
    const Settings settings(query, logs);
    auto context = std::make_shared<HostPage>();
    query.OnStartPage(Variant(Variant::ObjectRef(context)));
    EXPECT_EQ(context.use_count(), 2);
    query.OnEndPage();
    EXPECT_EQ(context.use_count(), 1);
    query.OnStartPage("no object");
    EXPECT_NE(logs.Read("S1.log").find("'OnStartPage()': 13 - "), std::string::npos);
  });
}

TEST(HelperMethods, FailThroughTheirHandlers) {
  InOwnThread([] {
    const TemporaryDirectory logs;
    clsQuery query;
    const Settings settings(query, logs);
    EXPECT_EQ(query.Decode(query.Encode("Text")), "Text");
    EXPECT_EQ(query.Encode(Missing), "");
    EXPECT_EQ(query.Decode("08"), "");
    query.DeleteFTPObjects(logs.path() + "\\none\\*");
    const std::string log = logs.Read("S1.log");
    EXPECT_NE(log.find("'Encode()': 13 - "), std::string::npos);
    EXPECT_NE(log.find("'Decode()': 13 - "), std::string::npos);
    EXPECT_NE(log.find("     Deleting FTP objects '" + logs.path() + "\\none\\*'"), std::string::npos);
    EXPECT_NE(log.find("'DeleteFTPObjects()': 76 - "), std::string::npos);
    for (const int level : {bytWarning, bytError, bytExtended}) query.WriteLog("mine", level);
    query.WriteLog("plain");
    for (const Variant& odd : {Variant(999), Variant(-1), Variant("abc"), Variant(2.5)})
      query.WriteLog("odd level", odd);
    for (const char* line : {"!!! <WARNING> mine\r\n", "### <ERROR> mine\r\n", "+++ <DEBUG> mine\r\n"}) {
      EXPECT_NE(logs.Read("S1.log").find(line), std::string::npos) << line;
    }
    EXPECT_NE(logs.Read("S1.log").find("     plain\r\n"), std::string::npos);
    int odd = 0;
    const std::string lines = logs.Read("S1.log");
    for (const std::string_view line : Split(lines, '\n')) odd += line.ends_with("     odd level\r") ? 1 : 0;
    EXPECT_EQ(odd, 4);
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
      EXPECT_NE(rest.find("     Terminating OXAQryCln instance for session id S1\r\n"), std::string::npos) << each.name;
      int claims = 0;
      for (std::int16_t number = 1; number <= servers.Count(); ++number) {
        EXPECT_EQ(servers.At(number).busy, servers.At(number).session == "other") << each.name;
        claims += servers.At(number).session == "S1" ? 1 : 0;
      }
      EXPECT_EQ(claims, each.after == nullptr ? 0 : 1) << each.name;
      EXPECT_EQ(apartment->controls.GetFreeControl(), 1) << each.name;
    });
  }
}

TEST(Instance, LogsAnAbsolutePathAlsoInAProgramThatWasFoundThroughPath) {
  const std::string command =
      "PATH='" + ProgramDirectory() +
      "' component_test --gtest_color=no --gtest_filter=Instance.LogsItsLifeFromInitToItsEnd 2>&1";
  FILE* const program = popen(command.c_str(), "r");
  std::string output;
  for (int c = fgetc(program); c != EOF; c = fgetc(program)) output += static_cast<char>(c);
  EXPECT_EQ(pclose(program), 0) << output;
  EXPECT_NE(output.find("[  PASSED  ] 1 test."), std::string::npos) << output;
}

}  // namespace
}  // namespace oxaqrycln::testing
