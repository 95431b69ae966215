// server_socket.h - the server's calls for TCP sockets on loopback, all of them blocking. The calls that a client needs
// as well are in platform/net/native_socket.h.
#ifndef OXAQRYCLN_TESTS_SUPPORT_SERVER_SOCKET_H_
#define OXAQRYCLN_TESTS_SUPPORT_SERVER_SOCKET_H_

#include <cstdint>

#include "platform/poller.h"

namespace oxaqrycln::testing {

// A listening socket on a free port, which is written to port; backlog is the length of its queue. Raises
// std::runtime_error.
NativeSocket Listen(std::uint16_t& port, int backlog = 64);
// The next connection; kNoSocket when it is gone already.
NativeSocket Accept(NativeSocket listener) noexcept;
// Closing ends the connection with a reset.
void ResetOnClose(NativeSocket socket) noexcept;

}  // namespace oxaqrycln::testing

#endif  // OXAQRYCLN_TESTS_SUPPORT_SERVER_SOCKET_H_
