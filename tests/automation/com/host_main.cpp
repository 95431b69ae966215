// com_host - a host of the automation server: runs the tests of this directory, or with "--exit HOW" makes an object,
// lets it send a request and ends the process: "released" before the end, "kept" until after it, or "thread" with the
// object of a thread that still runs.
#include <gtest/gtest.h>

#include <cstdio>
#include <string_view>

#include "tests/automation/com/automation_object.h"

namespace {

using oxaqrycln::testing::AutomationObject;
using oxaqrycln::testing::ComApartment;

bool AskForChannels(const AutomationObject& page) {
  return page.get() != nullptr && page.Start() && page.Call(L"TELOGetChannelsInit").result.get().lVal == 5;
}

DWORD WINAPI KeepAnObject(void* started) {
  CoInitialize(nullptr);
  auto* const page = new AutomationObject;
  if (!AskForChannels(*page)) return 1;
  SetEvent(started);
  WaitForSingleObject(GetCurrentThread(), INFINITE);  // until the process ends
  return 0;
}

int EndThe(std::string_view how) {
  bool isDone = false;
  if (how == "thread") {
    const HANDLE started = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    CreateThread(nullptr, 0, &KeepAnObject, started, 0, nullptr);
    isDone = WaitForSingleObject(started, 20000) == WAIT_OBJECT_0;
  } else if (how == "kept") {
    CoInitialize(nullptr);
    isDone = AskForChannels(*new AutomationObject);
  } else {
    const ComApartment apartment;
    isDone = AskForChannels(AutomationObject());
  }
  std::puts(isDone ? "END" : "the request failed");
  return isDone ? 0 : 1;
}

}  // namespace

int main(int count, char** arguments) {
  if (count == 3 && std::string_view(arguments[1]) == "--exit") return EndThe(arguments[2]);
  ::testing::InitGoogleTest(&count, arguments);
  return RUN_ALL_TESTS();
}
