#include "platform/threads/background_thread.h"

#include <gtest/gtest.h>
#include <signal.h>

#include <new>

#include "tests/support/allocations.h"

namespace oxaqrycln::testing {
namespace {

bool Blocks(int signal) {
  sigset_t mask;
  pthread_sigmask(SIG_SETMASK, nullptr, &mask);
  return sigismember(&mask, signal) == 1;
}

TEST(QuietThread, RunsWithAllSignalsBlockedAndLeavesTheMaskOfItsMaker) {
  bool blocksInside = false;
  StartBackgroundThread([&] { blocksInside = Blocks(SIGINT) && Blocks(SIGTERM); }).join();
  EXPECT_TRUE(blocksInside);
  EXPECT_FALSE(Blocks(SIGINT));
}

TEST(QuietThread, ThatCannotBeMadeForWantOfMemoryLeavesTheMaskOfItsMaker) {
  const auto body = [] {};
  std::function<void()> made(body);
  const AllocationFailure failure(0);
  EXPECT_THROW(StartBackgroundThread(std::move(made)), std::bad_alloc);
  EXPECT_TRUE(failure.HasHappened());
  EXPECT_FALSE(Blocks(SIGINT));
}

}  // namespace
}  // namespace oxaqrycln::testing
