#include <winsock2.h>
// windows.h follows winsock2.h.
#include <windows.h>

#include <algorithm>
#include <array>
#include <vector>

#include "platform/poller.h"
#include "values/errors.h"

namespace oxaqrycln {
namespace {

using Milliseconds = std::chrono::milliseconds;
using SteadyClock = std::chrono::steady_clock;

// The longest wait in the poller, which does not end for a message.
constexpr Milliseconds kBetweenLooks{10};

bool DispatchMessages() {
  // Bounded, because a handler may post a message every time.
  constexpr int kMostMessages = 1000;
  MSG message;
  int count = 0;
  for (; count < kMostMessages && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0; ++count) {
    if (message.message == WM_QUIT) {  // for the loop of the host, outside of the wait
      PostQuitMessage(static_cast<int>(message.wParam));
      break;
    }
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return count > 0;
}

// Before version 2004 of Windows 10 the poller does not report a connect that has failed.
bool HasFailedToConnect(SOCKET socket) noexcept {
  fd_set failed{.fd_count = 1, .fd_array = {socket}};
  timeval none{};
  return select(0, nullptr, nullptr, &failed, &none) == 1;
}

int PollSockets(std::span<PollEntry> entries, std::span<WSAPOLLFD> native, Milliseconds wait) {
  for (std::size_t i = 0; i < entries.size(); ++i) {
    native[i].fd = static_cast<SOCKET>(entries[i].socket);
    native[i].events = static_cast<SHORT>((Includes(entries[i].wanted, Ready::Read) ? POLLRDNORM : 0) |
                                          (Includes(entries[i].wanted, Ready::Write) ? POLLWRNORM : 0));
    native[i].revents = 0;
  }
  int count = WSAPoll(native.data(), static_cast<ULONG>(native.size()), static_cast<int>(wait.count()));
  if (count < 0) throw RuntimeError(error::kInternalError, "The poller failed");
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const int found = native[i].revents;
    if ((found & (POLLERR | POLLHUP | POLLNVAL)) != 0) {
      entries[i].found = Ready::All;
    } else {
      entries[i].found = static_cast<Ready>(((found & POLLRDNORM) != 0 ? 1 : 0) | ((found & POLLWRNORM) != 0 ? 2 : 0));
    }
    const bool mayConnect = found == 0 && Includes(entries[i].wanted, Ready::Write);
    if (mayConnect && HasFailedToConnect(native[i].fd)) {
      entries[i].found = Ready::All;
      ++count;
    }
  }
  return count;
}

// Without sockets, which the system's poller does not accept, the wait also ends for a message.
int WaitOnce(std::span<PollEntry> entries, std::span<WSAPOLLFD> native, Milliseconds wait) {
  if (!entries.empty()) return PollSockets(entries, native, std::min(wait, kBetweenLooks));
  MsgWaitForMultipleObjectsEx(0, nullptr, static_cast<DWORD>(wait.count()), QS_ALLINPUT, MWMO_INPUTAVAILABLE);
  return 0;
}

}  // namespace

int Poll(std::span<PollEntry> entries, std::chrono::nanoseconds timeout) {
  constexpr Milliseconds kLongest = std::chrono::hours(24);
  const auto wanted = std::clamp(std::chrono::ceil<Milliseconds>(timeout), Milliseconds::zero(), kLongest);
  const SteadyClock::time_point end = SteadyClock::now() + wanted;
  std::array<WSAPOLLFD, 8> few{};
  std::vector<WSAPOLLFD> many(entries.size() > few.size() ? entries.size() : 0);
  const std::span<WSAPOLLFD> native = many.empty() ? std::span(few).first(entries.size()) : std::span(many);
  for (;;) {
    const auto left = std::max(std::chrono::ceil<Milliseconds>(end - SteadyClock::now()), Milliseconds::zero());
    const int count = WaitOnce(entries, native, left);
    if (count > 0 || DispatchMessages() || SteadyClock::now() >= end) return count;
  }
}

}  // namespace oxaqrycln
