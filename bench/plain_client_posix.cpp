#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "bench/plain_client.h"

namespace oxaqrycln::bench {

std::size_t PlainRequest(std::uint16_t port, std::string_view request, std::span<char> buffer, std::size_t byteCount) {
  const int connection = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  std::size_t received = 0;
  if (connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
      send(connection, request.data(), request.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(request.size())) {
    while (received < byteCount) {
      const ssize_t count = recv(connection, buffer.data() + received, buffer.size() - received, 0);
      if (count <= 0) break;
      received += static_cast<std::size_t>(count);
    }
  }
  close(connection);
  return received;
}

}  // namespace oxaqrycln::bench
