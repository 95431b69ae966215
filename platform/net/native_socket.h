// native_socket.h - the bare calls of a TCP client socket, never blocking; errors are Winsock numbers on every
// platform.
#ifndef OXAQRYCLN_PLATFORM_NET_NATIVE_SOCKET_H_
#define OXAQRYCLN_PLATFORM_NET_NATIVE_SOCKET_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/net/socket_address.h"
#include "platform/poller.h"

namespace oxaqrycln {

// The outcome of a call: how many bytes, or an error number other than 0.
struct Transferred {
  std::size_t byteCount = 0;
  std::int32_t error = 0;
};

// A new non-blocking socket that starts to connect. error is 0 when it is connected, kWouldBlock while it connects.
struct Connecting {
  NativeSocket socket = kNoSocket;
  std::int32_t error = 0;
};
Connecting StartConnect(const SocketAddress& address, std::uint16_t port) noexcept;
// The error with which a pending connect ended, 0 for none.
std::int32_t PendingError(NativeSocket socket) noexcept;
Transferred Send(NativeSocket socket, std::string_view bytes) noexcept;
// 0 bytes without an error: the peer has closed.
Transferred Receive(NativeSocket socket, char* to, std::size_t room) noexcept;
void SetReceiveWindow(NativeSocket socket, std::int32_t byteCount) noexcept;
void CloseSocket(NativeSocket socket) noexcept;

// Two ends of a connection inside the process: closing wakes, from any thread, makes waits ready to be read. Both are
// kNoSocket when the system has none left.
struct WakeUp {
  NativeSocket waits = kNoSocket;
  NativeSocket wakes = kNoSocket;
};
WakeUp MakeWakeUp() noexcept;

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_NET_NATIVE_SOCKET_H_
