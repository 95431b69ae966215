// loopback_peer.h - the far end of a connection on this machine, in the thread of the near end.
// One connection at a time, closed in a way that leaves no port occupied after thousands of connections a second.
#ifndef OXAQRYCLN_FUZZ_LOOPBACK_PEER_H_
#define OXAQRYCLN_FUZZ_LOOPBACK_PEER_H_

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <utility>

#include "fuzz/input.h"

namespace oxaqrycln::fuzz {

class LoopbackPeer {
 public:
  LoopbackPeer() : listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    Require(listener_ >= 0 && bind(listener_, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
                listen(listener_, 4) == 0 && getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size) == 0,
            "this machine lets a program listen on 127.0.0.1");
    port_ = ntohs(address.sin_port);
  }
  ~LoopbackPeer() {
    Drop();
    close(listener_);
  }
  LoopbackPeer(const LoopbackPeer&) = delete;
  LoopbackPeer& operator=(const LoopbackPeer&) = delete;

  std::uint16_t port() const noexcept { return port_; }
  // Whether the near end has started a connection that is not accepted yet; waits so many milliseconds for one.
  bool IsWanted(int longestWait = 0) const {
    pollfd waiting{listener_, POLLIN, 0};
    return poll(&waiting, 1, longestWait) == 1;
  }
  // Accepts the connection that the near end has started.
  void Accept() {
    Require(IsWanted(10000), "the near end has connected");
    socket_ = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    const int yes = 1;
    const linger reset{1, 0};
    Require(socket_ >= 0 && setsockopt(socket_, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes) == 0 &&
                setsockopt(socket_, SOL_SOCKET, SO_LINGER, &reset, sizeof reset) == 0,
            "a connection can be taken");
  }
  // Bytes that fit into one packet are sent as one packet.
  void Send(std::string_view bytes) const {
    const ssize_t sent = send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    Require(sent == static_cast<ssize_t>(bytes.size()), "the near end takes what is sent");
  }
  void EndSending() const { shutdown(socket_, SHUT_WR); }
  // Ends the connection by a reset, so that no port stays occupied.
  void Drop() {
    if (socket_ >= 0) close(std::exchange(socket_, -1));
  }

 private:
  std::uint16_t port_ = 0;
  int listener_ = -1;
  int socket_ = -1;
};

}  // namespace oxaqrycln::fuzz

#endif  // OXAQRYCLN_FUZZ_LOOPBACK_PEER_H_
