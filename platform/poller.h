// poller.h - the poller of the system: waits until a socket is ready. On a system whose threads have a message queue
// the wait also dispatches the thread's messages.
#ifndef OXAQRYCLN_PLATFORM_POLLER_H_
#define OXAQRYCLN_PLATFORM_POLLER_H_

#include <chrono>
#include <cstdint>
#include <span>

namespace oxaqrycln {

using NativeSocket = std::intptr_t;
inline constexpr NativeSocket kNoSocket = -1;

// What a watch waits for, and what was found. Broken is only ever found: an error or a hang-up, with Read and Write.
enum class Ready : std::uint8_t { None = 0, Read = 1, Write = 2, ReadOrWrite = 3, Broken = 4, All = 7 };
constexpr bool Includes(Ready set, Ready part) noexcept {
  return (static_cast<unsigned>(set) & static_cast<unsigned>(part)) != 0;
}

struct PollEntry {
  NativeSocket socket = kNoSocket;
  Ready wanted = Ready::None;
  Ready found = Ready::None;
};

// Waits until an entry is ready or the time has passed; 0 does not wait. Returns the number of ready entries, which is
// 0 also after a signal and after messages were dispatched.
int Poll(std::span<PollEntry> entries, std::chrono::nanoseconds timeout);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_POLLER_H_
