#include "platform/poller.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <vector>

#include "values/errors.h"

namespace oxaqrycln {
namespace {

int Milliseconds(std::chrono::nanoseconds timeout) {
  if (timeout <= std::chrono::nanoseconds::zero()) return 0;
  const auto rounded = std::chrono::ceil<std::chrono::milliseconds>(timeout).count();
  return static_cast<int>(std::min<std::int64_t>(rounded, INT_MAX));
}

int PollNative(std::span<PollEntry> entries, std::span<pollfd> native, int milliseconds) {
  for (std::size_t i = 0; i < entries.size(); ++i) {
    native[i].fd = static_cast<int>(entries[i].socket);
    native[i].events = static_cast<short>((Includes(entries[i].wanted, Ready::Read) ? POLLIN : 0) |
                                          (Includes(entries[i].wanted, Ready::Write) ? POLLOUT : 0));
    native[i].revents = 0;
  }
  const int count = poll(native.data(), static_cast<nfds_t>(native.size()), milliseconds);
  if (count < 0 && errno != EINTR) throw RuntimeError(error::kInternalError, "The poller failed");
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const int found = count > 0 ? native[i].revents : 0;
    if ((found & (POLLERR | POLLHUP | POLLNVAL)) != 0) {
      entries[i].found = Ready::All;
    } else {
      entries[i].found = static_cast<Ready>(((found & POLLIN) != 0 ? 1 : 0) | ((found & POLLOUT) != 0 ? 2 : 0));
    }
  }
  return std::max(count, 0);
}

}  // namespace

int Poll(std::span<PollEntry> entries, std::chrono::nanoseconds timeout) {
  const int milliseconds = Milliseconds(timeout);
  std::array<pollfd, 8> few{};
  if (entries.size() <= few.size()) return PollNative(entries, std::span(few).first(entries.size()), milliseconds);
  std::vector<pollfd> many(entries.size());
  return PollNative(entries, many, milliseconds);
}

}  // namespace oxaqrycln
