#include "platform/net/socket_control.h"

#include <algorithm>
#include <utility>

#include "platform/net/name_lookup.h"
#include "platform/net/native_socket.h"
#include "platform/net/socket_errors.h"
#include "values/errors.h"

namespace oxaqrycln {

SocketControl::SocketControl(EventLoop& loop, const Resolver& resolver, SocketEvents& events) noexcept
    : loop_(loop), resolver_(resolver), events_(events) {}

SocketControl::~SocketControl() { Close(); }

void SocketControl::SetRemote(std::string_view host, std::int32_t port, const std::optional<SocketAddress>& known) {
  remoteHost_ = host;
  remotePort_ = port;
  knownAddress_ = known;
}

void SocketControl::Connect() {
  if (state_ != SocketState::Closed) throw RuntimeError(40020, "Invalid operation at current state");
  connectedAddress_.reset();
  candidates_.clear();
  if (remotePort_ < 0 || remotePort_ > 65535) return Fail(socket_error::kAddressNotAvailable);
  if (const auto address = knownAddress_ ? knownAddress_ : NumericAddress(remoteHost_)) {
    candidates_.push_back(*address);
    return TryNextAddress(0);
  }
  if (remoteHost_.empty() || remoteHost_.find('\0') != std::string::npos) return Fail(socket_error::kHostNotFound);
  state_ = SocketState::ResolvingHost;
  try {
    lookup_ = std::make_unique<NameLookup>(loop_, remoteHost_, resolver_, [this](LookupResult found) {
      candidates_ = std::move(found.addresses);
      std::ranges::reverse(candidates_);
      TryNextAddress(found.error != 0 ? found.error : socket_error::kHostNotFound);
    });
  } catch (const RuntimeError& why) {
    Fail(why.number());
  }
}

void SocketControl::TryNextAddress(std::int32_t lastError) {
  while (!candidates_.empty()) {
    trying_ = candidates_.back();
    candidates_.pop_back();
    const Connecting started = StartConnect(trying_, static_cast<std::uint16_t>(remotePort_));
    if (started.socket == kNoSocket) {
      lastError = started.error;
      continue;
    }
    socket_ = started.socket;
    state_ = SocketState::Connecting;
    peerIsNear_ = started.error == 0;
    if (peerIsNear_) return FinishConnect(Ready::Write);
    return WatchFor(Ready::Write);
  }
  Fail(lastError);
}

void SocketControl::FinishConnect(Ready found) {
  if (Includes(found, Ready::Broken)) {
    const std::int32_t number = PendingError(socket_);
    if (number != 0) {
      DropSocket();
      return TryNextAddress(number);
    }
  }
  connectedAddress_ = trying_;
  state_ = SocketState::Connected;
  reading_ = true;
  WatchFor(Ready::Read);
}

void SocketControl::OnReady(Ready found) {
  if (state_ == SocketState::Connecting) return FinishConnect(found);
  if (Includes(found, Ready::Write) && IsSending()) SendMore();
  if (reading_ && Includes(found, Ready::Read)) events_.DataArrival();
}

void SocketControl::SendData(std::string_view bytes, SendSource* more) {
  if (state_ != SocketState::Connected) throw RuntimeError(40006, "Wrong protocol or connection state");
  const auto sent = Send(socket_, bytes);
  if (sent.error != 0 && sent.error != socket_error::kWouldBlock) return FailToSend(sent.error);
  bytes.remove_prefix(sent.byteCount);
  sentByteCount_ = static_cast<std::int64_t>(sent.byteCount);
  kept_.Clear();
  kept_.Append(bytes);
  sending_ = kept_.View();
  source_ = more;
  if (IsSending()) return SendMore();
  if (peerIsNear_) loop_.ExpectSoon();
}

// Sends as much as the system accepts, but not so much that the other sockets would have to wait long.
void SocketControl::SendMore() {
  constexpr int kMostPieces = 16;
  for (int pieces = 0; pieces < kMostPieces; ++pieces) {
    if (sending_.empty() && source_ != nullptr && !FetchPiece()) return;
    if (sending_.empty()) {
      source_ = nullptr;
      kept_.Release();
      return WatchFor(reading_ ? Ready::Read : Ready::None);
    }
    const auto sent = Send(socket_, sending_);
    if (sent.error == socket_error::kWouldBlock) break;
    if (sent.error != 0) return FailToSend(sent.error);
    sending_.remove_prefix(sent.byteCount);
    sentByteCount_ += static_cast<std::int64_t>(sent.byteCount);
  }
  WatchFor(reading_ ? Ready::ReadOrWrite : Ready::Write);
}

// An error of the source becomes one of the socket: the yield in which this runs may belong to another instance.
bool SocketControl::FetchPiece() {
  try {
    sending_ = source_->NextPiece();
    return true;
  } catch (const RuntimeError& why) {
    DropSocket();
    state_ = SocketState::Error;
    events_.Error(why.number(), why.description());
    return false;
  }
}

std::size_t SocketControl::GetData(char* to, std::size_t room) {
  if (socket_ == kNoSocket || room == 0) return 0;
  const auto received = Receive(socket_, to, room);
  if (received.error == socket_error::kWouldBlock) return 0;
  if (received.error != 0) {
    Fail(received.error);
  } else if (received.byteCount == 0) {
    StopReading();
    state_ = SocketState::PeerClosing;
    events_.PeerClosed();
  }
  return received.byteCount;
}

void SocketControl::WidenReceiveWindow(std::int32_t byteCount) noexcept {
  if (socket_ != kNoSocket) SetReceiveWindow(socket_, byteCount);
}

void SocketControl::StopReading() noexcept {
  reading_ = false;
  if (watch_ == 0) return;
  if (IsSending()) {
    loop_.Change(watch_, Ready::Write);
  } else {
    loop_.Unwatch(std::exchange(watch_, 0));
  }
}

void SocketControl::WatchFor(Ready wanted) {
  if (wanted == Ready::None) {
    if (watch_ != 0) loop_.Unwatch(std::exchange(watch_, 0));
  } else if (watch_ != 0) {
    loop_.Change(watch_, wanted);
  } else {
    watch_ = loop_.Watch(socket_, wanted, *this);
  }
}

void SocketControl::Fail(std::int32_t number) {
  DropSocket();
  lookup_.reset();
  state_ = SocketState::Error;
  events_.Error(number, SocketErrorDescription(number));
}

// A peer that closes before it has read everything may have sent the reason: its answer can still be read.
void SocketControl::FailToSend(std::int32_t number) {
  sending_ = {};
  source_ = nullptr;
  if (reading_) events_.DataArrival();
  const bool wantsMore = reading_ && state_ == SocketState::Connected;
  if (wantsMore) Fail(number);
}

void SocketControl::DropSocket() noexcept {
  if (watch_ != 0) loop_.Unwatch(std::exchange(watch_, 0));
  if (socket_ != kNoSocket) CloseSocket(std::exchange(socket_, kNoSocket));
  reading_ = false;
  sending_ = {};
  kept_.Release();
  source_ = nullptr;
}

void SocketControl::Close() noexcept {
  DropSocket();
  lookup_.reset();
  candidates_.clear();
  state_ = SocketState::Closed;
}

}  // namespace oxaqrycln
