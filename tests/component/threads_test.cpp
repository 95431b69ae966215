// Many threads, each with its own instances.
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "component/clsQuery.h"
#include "tests/support/scripted_server.h"
#include "tests/support/temporary_directory.h"

namespace oxaqrycln::testing {
namespace {

TEST(Threads, EachHasItsOwnServersSlotsAndAnswers) {
  constexpr int kThreads = 8;
  const TemporaryDirectory logs;
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([t, &logs] {
      const std::string mine = "answer " + std::to_string(t);
      ScriptedServer server(ScriptedServer::Replies(Answer({mine})));
      clsQuery first;
      clsQuery second;
      for (clsQuery* query : {&first, &second}) {
        query->strSessionID = "shared";
        query->strDebugLogPath = logs.path();
        query->lngRequestTimeout = 30;
        query->RemoteHosts("localhost," + std::to_string(server.port()));
        EXPECT_TRUE(query->Init(false));
      }
      for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(first.LiveCheck(), mine);
        EXPECT_EQ(second.LiveCheck(), mine);
      }
    });
  }
  for (auto& thread : threads) thread.join();
}

}  // namespace
}  // namespace oxaqrycln::testing
