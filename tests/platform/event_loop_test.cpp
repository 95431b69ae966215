#include "platform/event_loop.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "platform/net/native_socket.h"
#include "platform/timer.h"

namespace oxaqrycln {
namespace {

using namespace std::chrono_literals;

class Counter : public ReadySink {
 public:
  explicit Counter(std::function<void()> onReady) : onReady_(std::move(onReady)) {}
  void OnReady(Ready /*found*/) override {
    ++count;
    onReady_();
  }
  int count = 0;

 private:
  std::function<void()> onReady_;
};

class EventLoopTest : public ::testing::Test {
 protected:
  Clock clock;
  EventLoop loop{clock};
};

TEST_F(EventLoopTest, TellsEveryReadySinkUnlessAnotherOneEndsItsWatch) {
  const WakeUp first = MakeWakeUp();
  const WakeUp second = MakeWakeUp();
  EventLoop::WatchId firstWatch = 0;
  EventLoop::WatchId secondWatch = 0;
  bool ends = false;
  const auto mayEndBoth = [&] {
    if (!ends) return;
    loop.Unwatch(firstWatch);
    loop.Unwatch(secondWatch);
  };
  Counter one(mayEndBoth);
  Counter two(mayEndBoth);
  firstWatch = loop.Watch(first.waits, Ready::Read, one);
  secondWatch = loop.Watch(second.waits, Ready::Read, two);
  loop.RunReady();
  EXPECT_EQ(one.count + two.count, 0);
  CloseSocket(first.wakes);
  CloseSocket(second.wakes);
  loop.RunUntil(clock.SteadyNow() + 10s);
  EXPECT_EQ(one.count, 1);
  EXPECT_EQ(two.count, 1);
  ends = true;
  loop.RunReady();
  EXPECT_EQ(one.count + two.count, 3);
  loop.RunReady();
  EXPECT_EQ(one.count + two.count, 3);
  CloseSocket(first.waits);
  CloseSocket(second.waits);
}

TEST_F(EventLoopTest, RunsPostedCallsOnceAndThoseTheyPostInTheNextYield) {
  int calls = 0;
  loop.Post([&] {
    ++calls;
    loop.Post([&] { calls += 10; });
  });
  const auto start = clock.SteadyNow();
  loop.RunUntil(start + 20s);  // does not wait: it had something to run
  EXPECT_LT(clock.SteadyNow() - start, 10s);
  EXPECT_EQ(calls, 1);
  loop.RunReady();
  EXPECT_EQ(calls, 11);
  loop.RunReady();
  EXPECT_EQ(calls, 11);
}

TEST_F(EventLoopTest, WakesForATimerThatIsNeverTwiceAtOnceAndNotStarvedBySettingItAgain) {
  int ticks = 0;
  Timer timer(loop, 10s, [&] {
    ++ticks;
    loop.RunReady();  // a tick that yields does not tick again
  });
  timer.Enable(true);
  clock.Advance(9s);
  timer.SetInterval(10s);
  timer.Enable(true);
  loop.RunReady();
  EXPECT_EQ(ticks, 0);
  clock.Advance(1s);
  loop.RunReady();
  EXPECT_EQ(ticks, 1);
  clock.Advance(35s);
  loop.RunReady();
  EXPECT_EQ(ticks, 2);
  timer.SetInterval(20ms);
  const auto start = clock.SteadyNow();
  loop.RunUntil(start + 20s);
  EXPECT_LT(clock.SteadyNow() - start, 10s);
  EXPECT_EQ(ticks, 3);
  timer.Enable(false);
  clock.Advance(60s);
  loop.RunReady();
  EXPECT_EQ(ticks, 3);
}

TEST_F(EventLoopTest, APostedCallThatThrowsLosesNoOtherOne) {
  std::string order;
  loop.Post([&] { order += 'a'; });
  loop.Post([&] {
    loop.Post([&] { order += 'd'; });
    throw std::runtime_error("of the host");
  });
  loop.Post([&] { order += 'b'; });
  loop.Post([&] { order += 'c'; });
  EXPECT_THROW(loop.RunReady(), std::runtime_error);
  EXPECT_EQ(order, "a");
  loop.RunReady();
  EXPECT_EQ(order, "abcd");
}

}  // namespace
}  // namespace oxaqrycln
