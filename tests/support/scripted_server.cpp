#include "tests/support/scripted_server.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

#include "tests/support/server_socket.h"

namespace oxaqrycln::testing {
namespace {

constexpr std::chrono::seconds kLongestWait(10);
constexpr std::chrono::minutes kLongestServed(10);  // without a connection

bool WaitFor(NativeSocket socket, const WakeUp& stop, std::chrono::nanoseconds time) {
  std::array<PollEntry, 2> waits{
      {{.socket = socket, .wanted = Ready::Read}, {.socket = stop.waits, .wanted = Ready::Read}}};
  return Poll(waits, time) > 0 && waits[1].found == Ready::None && waits[0].found != Ready::None;
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

bool Peer::WaitReadable() const { return WaitFor(socket_, server_.stop_, kLongestWait); }

std::string Peer::ReadRequest() {
  std::string request;
  std::array<char, 65536> buffer{};
  while (request.empty() || request.back() != '^') {
    if (!WaitReadable()) return {};
    const std::size_t count = Receive(socket_, buffer.data(), buffer.size()).byteCount;
    if (count == 0) return {};
    request.append(buffer.data(), count);
  }
  const std::lock_guard lock(server_.mutex_);
  server_.requests_.push_back(request);
  return request;
}

std::string Peer::ReadBytes(std::size_t byteCount) {
  std::string bytes(byteCount, '\0');
  std::size_t have = 0;
  while (have < byteCount && WaitReadable()) {
    const std::size_t count = Receive(socket_, bytes.data() + have, byteCount - have).byteCount;
    if (count == 0) break;
    have += count;
  }
  bytes.resize(have);
  return bytes;
}

bool Peer::Send(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t count = oxaqrycln::Send(socket_, bytes).byteCount;
    if (count == 0) return false;
    bytes.remove_prefix(count);
  }
  return true;
}

void Peer::WaitForClose() {
  std::array<char, 4096> buffer{};
  while (WaitReadable() && Receive(socket_, buffer.data(), buffer.size()).byteCount > 0) {
  }
}

void Peer::Pause(int milliseconds) {
  std::array<PollEntry, 1> stop{{{.socket = server_.stop_.waits, .wanted = Ready::Read}}};
  Poll(stop, std::chrono::milliseconds(milliseconds));
}

void Peer::Reset() { ResetOnClose(socket_); }

ScriptedServer::ScriptedServer(Script script) : ScriptedServer(std::vector<Script>{std::move(script)}) {}

ScriptedServer::ScriptedServer(std::vector<Script> scripts)
    : scripts_(std::move(scripts)), listener_(Listen(port_)), stop_(MakeWakeUp()) {
  thread_ = std::thread([this] { Serve(); });
}

ScriptedServer::~ScriptedServer() {
  CloseSocket(stop_.wakes);
  thread_.join();
  CloseSocket(listener_);
  CloseSocket(stop_.waits);
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
  while (WaitFor(listener_, stop_, kLongestServed)) {
    const NativeSocket connection = Accept(listener_);
    if (connection == kNoSocket) continue;
    const auto index = std::min(static_cast<std::size_t>(connections_++), scripts_.size() - 1);
    Peer peer(connection, *this);
    scripts_[index](peer);
    CloseSocket(connection);
  }
}

std::uint16_t UnusedPort() {
  std::uint16_t port = 0;
  CloseSocket(Listen(port));
  return port;
}

}  // namespace oxaqrycln::testing
