#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <vector>

#include "bench/plain_client.h"

namespace oxaqrycln::bench {
namespace {

constexpr std::size_t kBufferSize = 1U << 20U;

// A connected socket that has sent the request; -1 when that failed.
int Ask(std::uint16_t port, std::string_view request) {
  const int connection = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
      send(connection, request.data(), request.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(request.size())) {
    return connection;
  }
  close(connection);
  return -1;
}

}  // namespace

std::size_t PlainRequest(std::uint16_t port, std::string_view request, std::span<char> buffer, std::size_t byteCount) {
  const int connection = Ask(port, request);
  std::size_t received = 0;
  while (received < byteCount) {
    const ssize_t count = recv(connection, buffer.data() + received, buffer.size() - received, 0);
    if (count <= 0) break;
    received += static_cast<std::size_t>(count);
  }
  close(connection);
  return received;
}

bool PlainReceiveFile(std::uint16_t port, std::string_view request, const std::string& path, std::size_t byteCount) {
  static std::vector<char> buffer(kBufferSize);
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0640);
  const int connection = Ask(port, request);
  std::size_t received = 0;
  while (received < byteCount) {
    const ssize_t count = recv(connection, buffer.data(), buffer.size(), 0);
    if (count <= 0 || write(file, buffer.data(), static_cast<std::size_t>(count)) != count) break;
    received += static_cast<std::size_t>(count);
  }
  close(connection);
  return close(file) == 0 && received == byteCount;
}

bool PlainSendFile(std::uint16_t port, std::string_view request, const std::string& path) {
  static std::vector<char> buffer(kBufferSize);
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  const int connection = Ask(port, request);
  ssize_t count = 0;
  while ((count = read(file, buffer.data(), buffer.size())) > 0) {
    if (send(connection, buffer.data(), static_cast<std::size_t>(count), MSG_NOSIGNAL) != count) break;
  }
  const bool answered = count == 0 && recv(connection, buffer.data(), buffer.size(), 0) > 0;
  close(connection);
  close(file);
  return answered;
}

}  // namespace oxaqrycln::bench
