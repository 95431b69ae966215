// wire_client.h - a client that sends and receives raw bytes, and a development archive server on its own thread.
#ifndef OXAQRYCLN_TESTS_TOOLS_DEVSERVER_WIRE_CLIENT_H_
#define OXAQRYCLN_TESTS_TOOLS_DEVSERVER_WIRE_CLIENT_H_

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <string>
#include <string_view>
#include <thread>

#include "support/text_helpers.h"
#include "tools/devserver/archive/sample_archive.h"
#include "tools/devserver/server/server.h"
#include "tools/devserver/server/service.h"

namespace oxaqrycln::devserver {

// The longest wait for anything; reached only when a test fails.
inline constexpr int kPatienceMilliseconds = 10000;

// More than fits into the buffers of a loopback connection.
inline constexpr std::size_t kFillByteCount = 64U << 20U;

class Client {
 public:
  explicit Client(std::uint16_t port) : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (connect(socket_.get(), reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) error_ = errno;
  }
  void Send(std::string_view bytes) {
    while (!bytes.empty()) {
      const ssize_t count = send(socket_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
      if (count < 0) error_ = errno;
      if (count < 0) return;
      bytes.remove_prefix(static_cast<std::size_t>(count));
    }
  }
  // Sends until the connection accepts nothing for a while, at most kFillByteCount bytes.
  std::size_t Fill() const {
    const std::string bytes(65536, 'x');
    std::size_t byteCount = 0;
    pollfd polled{socket_.get(), POLLOUT, 0};
    while (byteCount < kFillByteCount && poll(&polled, 1, 100) > 0) {
      const ssize_t count = send(socket_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
      if (count > 0) byteCount += static_cast<std::size_t>(count);
    }
    return byteCount;
  }
  void EndSending() const { shutdown(socket_.get(), SHUT_WR); }
  void ResetOnClose() const { socket_.ResetOnClose(); }
  bool Readable(int milliseconds) const {
    pollfd polled{socket_.get(), POLLIN, 0};
    return poll(&polled, 1, milliseconds) > 0;
  }
  // Reads up to byteCount bytes, or to the end; error() is the error that ended it.
  std::string Receive(std::size_t byteCount = std::string::npos) {
    std::string bytes;
    while (bytes.size() < byteCount && Readable(kPatienceMilliseconds)) {
      char buffer[4096];
      const ssize_t count = recv(socket_.get(), buffer, std::min(sizeof buffer, byteCount - bytes.size()), 0);
      if (count < 0) error_ = errno;
      if (count <= 0) break;
      bytes.append(buffer, static_cast<std::size_t>(count));
    }
    return bytes;
  }
  // Reads as many bytes as the header announces, and returns the answer without the header.
  std::string Answer() {
    std::string header;
    while (!header.ends_with("\r\n")) {
      const std::string byte = Receive(1);
      if (byte.empty()) return "no answer: " + header;
      header += byte;
    }
    return Receive(std::stoul(header.substr(11)));
  }
  int error() const { return error_; }

 private:
  Socket socket_;
  int error_ = 0;
};

inline std::string Repeat(std::string_view text, int count) {
  std::string repeated;
  for (int time = 0; time < count; ++time) repeated += text;
  return repeated;
}

inline std::string Request(const std::string& command) {
  return "^S1^,^webuser^,^" + Encode("secret") + "^,^" + command + "^";
}

inline ServerOptions WithLimits(const Limits& limits) {
  ServerOptions options;
  options.limits = limits;
  return options;
}

class RunningServer {
 public:
  explicit RunningServer(ServerOptions options = {}, const std::string& misbehaviour = "none", int documentCount = 90)
      : service_(OpenArchive("", documentCount), {{"webuser", "secret"}}),
        server_(
            [&] {
              options.misbehaviour = ParseMisbehaviour(misbehaviour);
              return options;
            }(),
            [this](std::string_view request) { return service_.Answer(request); }),
        thread_([this] { server_.Run(); }) {}
  ~RunningServer() {
    server_.Stop();
    thread_.join();
  }
  Client Connect() const { return Client(server_.port()); }
  // A client that has sent the bytes.
  Client Send(std::string_view bytes) const {
    Client client = Connect();
    client.Send(bytes);
    return client;
  }
  // The answer to a request and the body that follows it.
  std::string Ask(const std::string& command, const std::string& body = "") const {
    return Send(Request(command) + body).Answer();
  }
  std::uint16_t port() const { return server_.port(); }
  std::filesystem::path BlobPath(const std::string& name) const { return service_.blobs().path() + "/" + name; }

 private:
  Service service_;
  Server server_;
  std::thread thread_;
};

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TESTS_TOOLS_DEVSERVER_WIRE_CLIENT_H_
