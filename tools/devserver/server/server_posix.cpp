#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <system_error>
#include <utility>
#include <vector>

#include "tools/devserver/protocol/errors.h"
#include "tools/devserver/server/server.h"

namespace oxaqrycln::devserver {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// The pause in accepting when the process has run out of descriptors.
constexpr milliseconds kAcceptPause{100};
// At most that many in one turn, so that many new connections do not delay the existing ones.
constexpr int kAcceptsPerTurn = 32;

[[noreturn]] void FailWithErrno(const std::string& what) {
  throw ServerError(what + ": " + std::generic_category().message(errno));
}

Socket Listen(const std::string& address, std::uint16_t port) {
  addrinfo hints{};
  hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV | AI_PASSIVE;
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  if (getaddrinfo(address.c_str(), std::to_string(port).c_str(), &hints, &found) != 0) {
    throw ServerError("'" + address + "' is not an address to listen on");
  }
  const std::unique_ptr<addrinfo, void (*)(addrinfo*)> owner(found, freeaddrinfo);
  const std::string place = address + ":" + std::to_string(port);
  Socket listener(socket(found->ai_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  if (listener.get() < 0) FailWithErrno("Listening on " + place);
  const int on = 1;
  setsockopt(listener.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  if (bind(listener.get(), found->ai_addr, found->ai_addrlen) != 0 || listen(listener.get(), SOMAXCONN) != 0) {
    FailWithErrno("Listening on " + place);
  }
  return listener;
}

}  // namespace

Server::Server(ServerOptions options, Answerer answerer)
    : options_(std::move(options)), answerer_(std::move(answerer)), listener_(Listen(options_.address, options_.port)) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_NONBLOCK | O_CLOEXEC) != 0) FailWithErrno("Opening a pipe");
  wakeReader_ = Socket(ends[0]);
  wakeWriter_ = Socket(ends[1]);
}

std::uint16_t Server::port() const noexcept {
  sockaddr_in6 address{};
  socklen_t size = sizeof address;
  getsockname(listener_.get(), reinterpret_cast<sockaddr*>(&address), &size);
  return ntohs(address.sin6_port);  // at the same offset as in sockaddr_in
}

void Server::Stop() noexcept {
  const int before = errno;
  // A full pipe wakes the server as well.
  [[maybe_unused]] const ssize_t count = write(wakeWriter_.get(), "x", 1);
  errno = before;
}

void Server::Run() {
  while (Turn()) {
  }
  connections_.clear();
}

// Handles the next events or deadline; false once Stop has been called.
bool Server::Turn() {
  std::vector<pollfd> polled = {{wakeReader_.get(), POLLIN, 0}, {listener_.get(), 0, 0}};
  TimePoint next = Clock::now() + std::chrono::hours(1);
  const TimePoint acceptTime = AcceptTime();
  if (acceptTime <= Clock::now()) {
    polled[1].events = POLLIN;
  } else {
    next = acceptTime;
  }
  for (const Connection& connection : connections_) {
    polled.push_back({connection.descriptor(), connection.Events(), 0});
    next = std::min(next, connection.deadline());
  }
  const auto wait = std::chrono::ceil<milliseconds>(next - Clock::now()).count();
  if (poll(polled.data(), polled.size(), static_cast<int>(std::max<decltype(wait)>(wait, 0))) < 0) {
    return errno == EINTR;
  }
  if (polled[0].revents != 0) return false;
  const TimePoint now = Clock::now();
  auto ready = polled.begin() + 2;
  for (Connection& connection : connections_) {
    if (ready->revents != 0) connection.OnReady(ready->revents, now);
    if (!connection.closed() && connection.deadline() <= now) connection.OnDeadline(now);
    ++ready;
  }
  std::erase_if(connections_, [](const Connection& connection) { return connection.closed(); });
  if (polled[1].revents != 0) Accept(now);
  return true;
}

std::list<Connection>::iterator Server::Quietest() {
  return std::ranges::min_element(connections_, {}, &Connection::lastProgress);
}

// The earliest time to accept another client.
TimePoint Server::AcceptTime() {
  if (connections_.size() < options_.maxConnections) return acceptPausedUntil_;
  return std::max(acceptPausedUntil_, Quietest()->lastProgress() + options_.limits.evictable);
}

void Server::Accept(TimePoint now) {
  for (int count = 0; count < kAcceptsPerTurn && AcceptTime() <= now; ++count) {
    Socket socket(accept4(listener_.get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
    if (socket.get() < 0) {
      const bool exhausted = errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM;
      if (exhausted) acceptPausedUntil_ = now + kAcceptPause;
      return;
    }
    Add(std::move(socket), now);
  }
}

void Server::Add(Socket socket, TimePoint now) {
  if (options_.misbehaviour.mode == Misbehaviour::Mode::kRefuse) {
    socket.ResetOnClose();
    return;
  }
  const int on = 1;
  setsockopt(socket.get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  if (connections_.size() >= options_.maxConnections) connections_.erase(Quietest());
  connections_.emplace_back(std::move(socket), options_.limits, answerer_, options_.misbehaviour, now);
}

}  // namespace oxaqrycln::devserver
