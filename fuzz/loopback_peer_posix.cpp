#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <utility>

#include "fuzz/input.h"
#include "fuzz/loopback_peer.h"

namespace oxaqrycln::fuzz {
namespace {

constexpr int kLongestWait = 10000;  // milliseconds

}  // namespace

LoopbackPeer::LoopbackPeer() : listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  Require(listener_ >= 0 && bind(listener_, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
              listen(listener_, 4) == 0 && getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size) == 0,
          "this machine lets a program listen on 127.0.0.1");
  port_ = ntohs(address.sin_port);
}

LoopbackPeer::~LoopbackPeer() {
  Drop();
  close(listener_);
}

bool LoopbackPeer::IsWanted(int longestWait) const {
  pollfd waiting{listener_, POLLIN, 0};
  return poll(&waiting, 1, longestWait) == 1;
}

void LoopbackPeer::Accept() {
  Require(IsWanted(kLongestWait), "the near end has connected");
  socket_ = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
  const int yes = 1;
  const linger reset{1, 0};
  Require(socket_ >= 0 && setsockopt(socket_, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes) == 0 &&
              setsockopt(socket_, SOL_SOCKET, SO_LINGER, &reset, sizeof reset) == 0,
          "a connection can be taken");
}

void LoopbackPeer::Send(std::string_view bytes) const {
  const ssize_t sent = send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
  Require(sent == static_cast<ssize_t>(bytes.size()), "the near end takes what is sent");
}

void LoopbackPeer::EndSending() const { shutdown(socket_, SHUT_WR); }

void LoopbackPeer::Drop() {
  if (socket_ >= 0) close(std::exchange(socket_, -1));
}

}  // namespace oxaqrycln::fuzz
