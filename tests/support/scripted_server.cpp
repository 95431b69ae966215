#include "tests/support/scripted_server.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

namespace oxaqrycln::testing {
namespace {

constexpr int kLongestWait = 10000;  // milliseconds

int Listen(std::uint16_t& port) {
  const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  if (listener < 0 || bind(listener, reinterpret_cast<sockaddr*>(&address), size) != 0 || listen(listener, 64) != 0 ||
      getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
    throw std::runtime_error("the scripted server cannot listen");
  }
  port = ntohs(address.sin_port);
  return listener;
}

bool WaitFor(int socket, int stop, int milliseconds) {
  std::array<pollfd, 2> waits{{{socket, POLLIN, 0}, {stop, POLLIN, 0}}};
  return poll(waits.data(), waits.size(), milliseconds) > 0 && waits[1].revents == 0 && waits[0].revents != 0;
}

}  // namespace

std::string Framed(std::string_view text) {
  return "TotalBytes:" + std::to_string(text.size()) + "\r\n" + std::string(text);
}

std::string Answer(const std::vector<std::string>& lines) {
  std::string text = "Status: OK\r\n";
  for (const std::string& line : lines) text += line + "\r\n";
  return Framed(text);
}

bool Peer::WaitReadable(int milliseconds) const { return WaitFor(socket_, server_.stop_, milliseconds); }

std::string Peer::ReadRequest() {
  std::string request;
  std::array<char, 65536> buffer{};
  while (request.empty() || request.back() != '^') {
    if (!WaitReadable(kLongestWait)) return {};
    const ssize_t count = recv(socket_, buffer.data(), buffer.size(), 0);
    if (count <= 0) return {};
    request.append(buffer.data(), static_cast<std::size_t>(count));
  }
  const std::lock_guard lock(server_.mutex_);
  server_.requests_.push_back(request);
  return request;
}

std::string Peer::ReadBytes(std::size_t byteCount) {
  std::string bytes(byteCount, '\0');
  std::size_t have = 0;
  while (have < byteCount && WaitReadable(kLongestWait)) {
    const ssize_t count = recv(socket_, bytes.data() + have, byteCount - have, 0);
    if (count <= 0) break;
    have += static_cast<std::size_t>(count);
  }
  bytes.resize(have);
  return bytes;
}

bool Peer::Send(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (count <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

void Peer::WaitForClose() {
  std::array<char, 4096> buffer{};
  while (WaitReadable(kLongestWait) && recv(socket_, buffer.data(), buffer.size(), 0) > 0) {
  }
}

void Peer::Pause(int milliseconds) {
  pollfd stop{server_.stop_, POLLIN, 0};
  poll(&stop, 1, milliseconds);
}

void Peer::Reset() {
  const linger hard{1, 0};
  setsockopt(socket_, SOL_SOCKET, SO_LINGER, &hard, sizeof hard);
}

ScriptedServer::ScriptedServer(Script script) : ScriptedServer(std::vector<Script>{std::move(script)}) {}

ScriptedServer::ScriptedServer(std::vector<Script> scripts) : scripts_(std::move(scripts)) {
  listener_ = Listen(port_);
  stop_ = eventfd(0, EFD_CLOEXEC);
  thread_ = std::thread([this] { Serve(); });
}

ScriptedServer::~ScriptedServer() {
  eventfd_write(stop_, 1);
  thread_.join();
  close(listener_);
  close(stop_);
}

ScriptedServer::Script ScriptedServer::Replies(std::string bytes, int pauseMilliseconds) {
  return [bytes = std::move(bytes), pauseMilliseconds](Peer& peer) {
    if (peer.ReadRequest().empty()) return;
    peer.Pause(pauseMilliseconds);
    if (peer.Send(bytes)) peer.WaitForClose();
  };
}

ScriptedServer::Script ScriptedServer::Silent() {
  return [](Peer& peer) {
    peer.ReadRequest();
    peer.WaitForClose();
  };
}

std::vector<std::string> ScriptedServer::Requests() {
  const std::lock_guard lock(mutex_);
  return requests_;
}

void ScriptedServer::Serve() {
  while (WaitFor(listener_, stop_, -1)) {
    const int connection = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (connection < 0) continue;
    const auto index = std::min(static_cast<std::size_t>(connections_++), scripts_.size() - 1);
    Peer peer(connection, *this);
    scripts_[index](peer);
    close(connection);
  }
}

std::uint16_t UnusedPort() {
  std::uint16_t port = 0;
  close(Listen(port));
  return port;
}

}  // namespace oxaqrycln::testing
