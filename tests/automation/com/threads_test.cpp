// Instances on several threads, and calls that come while a request waits.
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "tests/automation/com/automation_object.h"

namespace oxaqrycln::testing {
namespace {

// Runs a call from the message queue of this thread, while something serves it.
class QueuedCall {
 public:
  explicit QueuedCall(std::function<void()> call) {
    current = std::move(call);
    timer_ = SetTimer(nullptr, 0, 50, &OnTimer);
  }
  ~QueuedCall() {
    KillTimer(nullptr, timer_);
    current = nullptr;
  }
  QueuedCall(const QueuedCall&) = delete;
  QueuedCall& operator=(const QueuedCall&) = delete;

 private:
  static void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD) {
    if (auto call = std::exchange(current, nullptr)) call();
  }
  static inline std::function<void()> current;
  UINT_PTR timer_ = 0;
};

Outcome AskSlowly(const AutomationObject& page) { return page.Call(L"DirectQuery", {Text(L"^Slow^")}); }

TEST(Threads, AnotherThreadIsRefused) {
  const ComApartment apartment;
  const AutomationObject page;
  HRESULT called = S_OK;
  HRESULT assigned = S_OK;
  std::thread([&] {
    const ComApartment other;
    called = page.Call(L"HelloWorld").status;
    assigned = page.Set(L"strUserName", Text(L"x"));
  }).join();
  EXPECT_EQ(called, RPC_E_WRONG_THREAD);
  EXPECT_EQ(assigned, RPC_E_WRONG_THREAD);
  EXPECT_EQ(page.Call(L"HelloWorld").status, S_OK);
}

TEST(Threads, EachHasItsOwnInstances) {
  constexpr int kThreads = 8;
  constexpr int kRows = 200;
  std::vector<int> rows(kThreads, -1);
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&rows, i] {
      const ComApartment apartment;
      const AutomationObject page;
      if (!page.Start()) return;
      const std::wstring query = L"rows:" + std::to_wstring(kRows + i);
      page.Call(L"TELOQueryArchiveInit", {Text(query), Number(1000), Number(1000), Text(L""), Text(L"")});
      int count = 0;
      while (count < 10000 && !TextOf(page.Call(L"TELOQueryArchiveNext").result.get()).empty()) ++count;
      rows[static_cast<std::size_t>(i)] = count;
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (int i = 0; i < kThreads; ++i) EXPECT_EQ(rows[static_cast<std::size_t>(i)], kRows + i + 1) << "titles included";
}

TEST(Threads, AWaitServesTheMessageQueueAndRefusesTheInstance) {
  const ComApartment apartment;
  const AutomationObject page;
  const AutomationObject other;
  ASSERT_TRUE(page.Start());
  HRESULT again = S_FALSE;
  HRESULT elsewhere = S_FALSE;
  const QueuedCall queued([&] {
    again = page.Call(L"HelloWorld").status;
    elsewhere = other.Call(L"HelloWorld").status;
  });
  const Outcome asked = AskSlowly(page);
  EXPECT_EQ(TextOf(asked.result.get()), L"slow");
  EXPECT_EQ(again, RPC_E_CALL_REJECTED);
  EXPECT_EQ(elsewhere, S_OK);
  EXPECT_EQ(page.Call(L"HelloWorld").status, S_OK);
}

TEST(Threads, AnInstanceWhoseLastReferenceGoesDuringACallEndsAfterIt) {
  const ComApartment apartment;
  AutomationObject page;
  ASSERT_TRUE(page.Start());
  const DISPID number = page.NumberOf(L"DirectQuery");
  IDispatch* const object = page.get();
  const QueuedCall queued([&] { page.Release(); });
  VARIANT argument = Text(L"^Slow^");
  DISPPARAMS parameters{&argument, nullptr, 1, 0};
  com::OwnedVariant result;
  EXPECT_EQ(object->Invoke(number, IID_NULL, 0, DISPATCH_METHOD, &parameters, result.Receive(), nullptr, nullptr),
            S_OK);
  EXPECT_EQ(TextOf(result.get()), L"slow");
  EXPECT_EQ(page.get(), nullptr);
  VariantClear(&argument);
}

TEST(Threads, AnotherApartmentReachesAnInstanceThroughItsProxy) {
  const ComApartment apartment;
  const AutomationObject page;
  com::ComReference<IStream> stream;
  ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(IID_IDispatch, page.get(), stream.Receive()), S_OK);
  std::wstring answer;
  HANDLE answered = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  std::thread caller([&] {
    const ComApartment other;
    com::ComReference<IDispatch> proxy;
    IStream* const taken = std::exchange(*stream.Receive(), nullptr);
    if (CoGetInterfaceAndReleaseStream(taken, IID_IDispatch, proxy.ReceiveVoid()) == S_OK) {
      answer = TextOf(AutomationObject(std::move(proxy)).Call(L"HelloWorld").result.get());
    }
    SetEvent(answered);
  });
  DWORD which = 0;
  CoWaitForMultipleHandles(0, 20000, 1, &answered, &which);
  caller.join();
  CloseHandle(answered);
  EXPECT_EQ(answer, L"Hello World!");
}

}  // namespace
}  // namespace oxaqrycln::testing
