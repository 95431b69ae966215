#include <winsock2.h>

#include <stdexcept>

#include "tests/support/server_socket.h"

namespace oxaqrycln::testing {

NativeSocket Listen(std::uint16_t& port, int backlog) {
  WSADATA data;
  WSAStartup(MAKEWORD(2, 2), &data);
  const SOCKET listener = WSASocketW(AF_INET, SOCK_STREAM, IPPROTO_TCP, nullptr, 0, WSA_FLAG_NO_HANDLE_INHERIT);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  int size = sizeof address;
  if (listener == INVALID_SOCKET || bind(listener, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
      listen(listener, backlog) != 0 || getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
    throw std::runtime_error("no socket can listen");
  }
  port = ntohs(address.sin_port);
  return static_cast<NativeSocket>(listener);
}

NativeSocket Accept(NativeSocket listener) noexcept {
  return static_cast<NativeSocket>(accept(static_cast<SOCKET>(listener), nullptr, nullptr));
}

void ResetOnClose(NativeSocket socket) noexcept {
  const linger hard{1, 0};
  setsockopt(static_cast<SOCKET>(socket), SOL_SOCKET, SO_LINGER, reinterpret_cast<const char*>(&hard), sizeof hard);
}

}  // namespace oxaqrycln::testing
