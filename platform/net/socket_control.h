// socket_control.h - a TCP client socket that works through events: connect, send, receive, close, never blocking.
// Errors carry the Winsock numbers. Its events occur inside the yields of its loop, or inside Connect and SendData.
#ifndef OXAQRYCLN_PLATFORM_NET_SOCKET_CONTROL_H_
#define OXAQRYCLN_PLATFORM_NET_SOCKET_CONTROL_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/byte_block.h"
#include "platform/event_loop.h"
#include "platform/net/send_source.h"
#include "platform/net/socket_address.h"

namespace oxaqrycln {

class NameLookup;

enum class SocketState : std::int16_t {
  Closed = 0,
  ResolvingHost = 4,
  Connecting = 6,
  Connected = 7,
  PeerClosing = 8,
  Error = 9
};

class SocketEvents {
 public:
  // Bytes can be taken with GetData.
  virtual void DataArrival() = 0;
  // The peer has closed; nothing more will arrive.
  virtual void PeerClosed() = 0;
  // The socket can only be closed now.
  virtual void Error(std::int32_t number, std::string_view description) = 0;

 protected:
  ~SocketEvents() = default;
};

class SocketControl final : private ReadySink {
 public:
  SocketControl(EventLoop& loop, const Resolver& resolver, SocketEvents& events) noexcept;
  ~SocketControl();
  SocketControl(const SocketControl&) = delete;
  SocketControl& operator=(const SocketControl&) = delete;

  SocketState State() const noexcept { return state_; }
  // The target of Connect; known is the host's address when it has been found before.
  void SetRemote(std::string_view host, std::int32_t port, const std::optional<SocketAddress>& known);
  // The address that Connect reached.
  const std::optional<SocketAddress>& ConnectedAddress() const noexcept { return connectedAddress_; }

  // Starts to connect a closed socket; every address of the host is tried. State shows the progress.
  void Connect();
  // Sends all the bytes: as many as the system accepts at once, the rest later from a copy. The bytes of more follow;
  // it must live until the socket is closed. Nothing else may be sent before everything is sent.
  void SendData(std::string_view bytes, SendSource* more = nullptr);
  // How many bytes of the last SendData the system has accepted so far.
  std::int64_t SentByteCount() const noexcept { return sentByteCount_; }
  // Takes up to room bytes; 0 when there are none now, and at the end of the stream.
  std::size_t GetData(char* to, std::size_t room);
  // Lets the system buffer more received bytes, for a large answer.
  void WidenReceiveWindow(std::int32_t byteCount) noexcept;
  // Gives up what is under way; the error occurs as if the system had reported it.
  void Fail(std::int32_t number);
  // Ends the events of arriving bytes.
  void StopReading() noexcept;
  void Close() noexcept;

 private:
  void OnReady(Ready found) override;
  void TryNextAddress(std::int32_t lastError);
  void FinishConnect(Ready found);
  bool IsSending() const noexcept { return !sending_.empty() || source_ != nullptr; }
  void SendMore();
  bool FetchPiece();
  void FailToSend(std::int32_t number);
  void WatchFor(Ready wanted);
  void DropSocket() noexcept;

  EventLoop& loop_;
  const Resolver& resolver_;
  SocketEvents& events_;
  std::string remoteHost_;
  std::int32_t remotePort_ = 0;
  std::optional<SocketAddress> knownAddress_;
  std::optional<SocketAddress> connectedAddress_;
  std::vector<SocketAddress> candidates_;  // addresses still to be tried, the next one last
  SocketAddress trying_;
  bool peerIsNear_ = false;  // the connect did not have to wait: the peer is on this machine
  std::unique_ptr<NameLookup> lookup_;
  NativeSocket socket_ = kNoSocket;
  EventLoop::WatchId watch_ = 0;
  SocketState state_ = SocketState::Closed;
  bool reading_ = false;
  std::string_view sending_;  // what is to be sent next: of kept_, or the source's piece
  ByteBlock kept_;
  SendSource* source_ = nullptr;
  std::int64_t sentByteCount_ = 0;
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_NET_SOCKET_CONTROL_H_
