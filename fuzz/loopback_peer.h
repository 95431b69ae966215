// loopback_peer.h - the far end of a connection on this machine, in the thread of the near end.
// One connection at a time, closed in a way that leaves no port occupied after thousands of connections a second.
#ifndef OXAQRYCLN_FUZZ_LOOPBACK_PEER_H_
#define OXAQRYCLN_FUZZ_LOOPBACK_PEER_H_

#include <cstdint>
#include <string_view>

namespace oxaqrycln::fuzz {

class LoopbackPeer {
 public:
  LoopbackPeer();
  ~LoopbackPeer();
  LoopbackPeer(const LoopbackPeer&) = delete;
  LoopbackPeer& operator=(const LoopbackPeer&) = delete;

  std::uint16_t port() const noexcept { return port_; }
  // Whether the near end has started a connection that is not accepted yet; waits so many milliseconds for one.
  bool IsWanted(int longestWait = 0) const;
  // Accepts the connection that the near end has started.
  void Accept();
  // Bytes that fit into one packet are sent as one packet.
  void Send(std::string_view bytes) const;
  void EndSending() const;
  // Ends the connection by a reset, so that no port stays occupied.
  void Drop();

 private:
  std::uint16_t port_ = 0;
  int listener_ = -1;
  int socket_ = -1;
};

}  // namespace oxaqrycln::fuzz

#endif  // OXAQRYCLN_FUZZ_LOOPBACK_PEER_H_
