#include <netinet/in.h>
#include <sys/socket.h>

#include <stdexcept>

#include "tests/support/server_socket.h"

namespace oxaqrycln::testing {

NativeSocket Listen(std::uint16_t& port, int backlog) {
  const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  if (listener < 0 || bind(listener, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
      listen(listener, backlog) != 0 || getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
    throw std::runtime_error("no socket can listen");
  }
  port = ntohs(address.sin_port);
  return listener;
}

NativeSocket Accept(NativeSocket listener) noexcept {
  return accept4(static_cast<int>(listener), nullptr, nullptr, SOCK_CLOEXEC);
}

void ResetOnClose(NativeSocket socket) noexcept {
  const linger hard{1, 0};
  setsockopt(static_cast<int>(socket), SOL_SOCKET, SO_LINGER, &hard, sizeof hard);
}

}  // namespace oxaqrycln::testing
