// A child process has none of the handles of its parent, and a thread that ended none of its own.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/automation/c/c_query.h"
#include "tests/support/in_own_thread.h"

namespace oxaqrycln::testing {
namespace {

// Runs body() in a child process; true when that returned true.
template <typename Body>
bool HoldsInChild(Body&& body) {
  const pid_t child = fork();
  if (child == 0) _exit(body() ? 0 : 1);
  int status = -1;
  waitpid(child, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST(CHandles, OfTheParentAreRefusedInAForkedChild) {
  InOwnThread([] {
    CQuery query("127.0.0.1,1");
    CValue value("x");
    EXPECT_TRUE(HoldsInChild([&] {
      return oxaqry_call(query, MemberOf("HelloWorld"), nullptr, 0, nullptr) == OXAQRY_E_FORKED &&
             oxaqry_value_free(value) == OXAQRY_E_FORKED && oxaqry_cancel(query) == OXAQRY_E_FORKED &&
             oxaqry_query_free(query) == OXAQRY_E_FORKED;
    }));
    EXPECT_EQ(query.Call("HelloWorld"), "Hello World!");
    EXPECT_EQ(value.Text(), "x");
  });
}

TEST(CHandles, EndWithTheirThread) {
  oxaqry_query* query = nullptr;
  InOwnThread([&] { Ok(oxaqry_query_new(&query)); });
  EXPECT_EQ(oxaqry_query_free(query), OXAQRY_E_HANDLE);
}

// The servers of a thread are those that its first instance named, but a child is a thread of its own.
TEST(CHandles, OfAForkedChildHaveServersOfTheirOwn) {
  InOwnThread([] {
    const CQuery query("127.0.0.1,1|127.0.0.1,2");
    EXPECT_TRUE(HoldsInChild([] {
      CQuery own("127.0.0.1,3,0");
      std::int32_t count = 0;
      std::int32_t port = 0;
      std::int32_t takesPrint = -1;
      Ok(oxaqry_server_count(own, &count));
      Ok(oxaqry_server(own, 0, nullptr, nullptr, &port, &takesPrint, nullptr, nullptr, nullptr, nullptr));
      return count == 1 && port == 3 && takesPrint == 0 && own.Init() == "True" &&
             oxaqry_server(own, 1, nullptr, nullptr, &port, nullptr, nullptr, nullptr, nullptr, nullptr) ==
                 OXAQRY_E_ARGUMENT;
    }));
  });
}

}  // namespace
}  // namespace oxaqrycln::testing
