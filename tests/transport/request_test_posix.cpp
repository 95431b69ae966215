// Requests in a process with many descriptors.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

#include "tests/support/requester.h"
#include "tests/support/scripted_server.h"

namespace oxaqrycln::testing {
namespace {

TEST(Request, WorksWithMoreThanAThousandDescriptorsOpen) {
  rlimit limit{};
  getrlimit(RLIMIT_NOFILE, &limit);
  rlimit raised = limit;
  raised.rlim_cur = std::min<rlim_t>(limit.rlim_max, 4096);
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &raised), 0);
  std::vector<int> taken;
  while (taken.size() < 1090) taken.push_back(dup(0));
  ScriptedServer server(ScriptedServer::Replies(Framed("pong")));
  Requester page(server.Host());
  EXPECT_TRUE(page.Request("^Ping^")) << page.error;
  for (const int each : taken) close(each);
}

}  // namespace
}  // namespace oxaqrycln::testing
