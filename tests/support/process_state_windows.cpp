#include <winsock2.h>
// The other headers of the system follow winsock2.h.
#include <windows.h>

#include <psapi.h>
#include <tlhelp32.h>

#include <string>

#include "tests/support/process_state.h"

namespace oxaqrycln::testing {
namespace {

std::chrono::nanoseconds Duration(const FILETIME& time) {
  constexpr std::int64_t kNanosecondsPerTick = 100;
  const std::int64_t ticks = static_cast<std::int64_t>(time.dwHighDateTime) << 32U | time.dwLowDateTime;
  return std::chrono::nanoseconds(ticks * kNanosecondsPerTick);
}

}  // namespace

std::filesystem::path ProgramPath() {
  constexpr DWORD kLongestPath = 32768;
  std::wstring path(kLongestPath, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), kLongestPath));
  return path;
}

// The system counts handles of all kinds together, and every thread has some; so this asks each one.
std::size_t OpenDescriptors() {
  constexpr SOCKET kHandles = 4096;
  constexpr SOCKET kBetweenHandles = 4;
  std::size_t count = 0;
  for (SOCKET each = kBetweenHandles; each < kHandles * kBetweenHandles; each += kBetweenHandles) {
    int type = 0;
    int size = sizeof type;
    if (getsockopt(each, SOL_SOCKET, SO_TYPE, reinterpret_cast<char*>(&type), &size) == 0) ++count;
  }
  return count;
}

std::size_t ThreadCount() {
  std::size_t count = 0;
  const HANDLE all = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
  THREADENTRY32 entry{};
  entry.dwSize = sizeof entry;
  for (BOOL found = Thread32First(all, &entry); found != 0; found = Thread32Next(all, &entry)) {
    if (entry.th32OwnerProcessID == GetCurrentProcessId()) ++count;
  }
  CloseHandle(all);
  return count;
}

std::size_t ResidentBytes() {
  PROCESS_MEMORY_COUNTERS counters{};
  GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
  return counters.WorkingSetSize;
}

std::chrono::nanoseconds ThreadTime() {
  FILETIME begin;
  FILETIME end;
  FILETIME kernel;
  FILETIME user;
  GetThreadTimes(GetCurrentThread(), &begin, &end, &kernel, &user);
  return Duration(kernel) + Duration(user);
}

}  // namespace oxaqrycln::testing
