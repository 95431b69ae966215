#include <algorithm>
#include <limits>
#include <utility>

#include "platform/net/socket_errors.h"
#include "support/trap.h"
#include "transport/connection_slot.h"
#include "values/errors.h"
#include "values/variant.h"

namespace oxaqrycln {
namespace {

constexpr std::string_view kHeaderStart = "TotalBytes:";
constexpr std::size_t kLongestHeader = 32;
constexpr std::size_t kScratchBytes = 64U << 10U;
constexpr std::size_t kFileScratchBytes = 1U << 20U;
// An answer from this size on is received straight into its final place, through a wider window.
constexpr std::int32_t kLargeAnswer = 64 << 10;
constexpr std::int32_t kWideWindow = 1 << 20;
// How many packets one event takes before the others get their turn.
constexpr int kMostPackets = 16;

}  // namespace

void ConnectionSlot::StartReceiving(const std::optional<FileReceipt>& receipt) noexcept {
  requestReady = false;
  receiveMode = receipt ? kReceiveFile : kReceiveText;
  transferFile = receipt ? receipt->file : std::uint8_t{0};
  bytesToReceive = receipt ? receipt->byteCount : 0;
  bytesReceived = 0;
  response.Release();
  header_ = Header::Awaited;
  pendingHeader_.clear();
  pagesUpTo_ = 0;
}

void ConnectionSlot::DataArrival() {
  Trap(
      Log(), "Winsock_DataArrival", false,
      [&](bool& /*unused*/) {
        form_.scratch.Reserve(receiveMode == kReceiveFile ? kFileScratchBytes : kScratchBytes);
        if (receiveMode == kReceiveFile) {
          ReceiveFile();
        } else {
          ReceiveText();
        }
      },
      [&](const RuntimeError& why) {
        // An answer whose header is invalid is lost, and its request ends by its time-out or by the peer's close. With
        // any other error (a file that cannot be written, no memory) it ends at once.
        if (header_ == Header::Failed && why.number() != error::kOutOfMemory) return;
        socket.StopReading();
        Error(why.number(), why.description());
      });
}

void ConnectionSlot::ReceiveText() {
  if (header_ == Header::Read && bytesToReceive >= kLargeAnswer) return ReceiveIntoPlace();
  const std::size_t byteCount = socket.GetData(form_.scratch.data(), kScratchBytes);
  if (byteCount > 0) TakePacket({form_.scratch.data(), byteCount});
}

void ConnectionSlot::ReceiveIntoPlace() {
  for (int packet = 0; packet < kMostPackets && !requestReady; ++packet) {
    const auto missing = static_cast<std::size_t>(bytesToReceive - bytesReceived);
    if (response.size() >= pagesUpTo_) pagesUpTo_ = response.MakePages(kWideWindow);
    const std::size_t room = std::min(missing, pagesUpTo_ - response.size());
    const std::size_t byteCount = socket.GetData(response.data() + response.size(), room);
    if (byteCount == 0) return;
    response.Extend(byteCount);
    Log().Write(bytInfo, "Winsock(", index_, "): Next string packet received: ", byteCount, " bytes");
    CountBytes(byteCount);
  }
}

void ConnectionSlot::TakePacket(std::string_view packet) {
  switch (header_) {
    case Header::Failed:
      return;  // the answer is lost; its request ends by its time-out or by the peer's close
    case Header::Awaited:
      return TakeFirstBytes(packet);
    case Header::Read:
    case Header::Absent:
      break;
  }
  response.Append(packet);
  Log().Write(bytInfo, "Winsock(", index_, "): Next string packet received: ", packet.size(), " bytes");
  CountBytes(packet.size());
}

// TCP keeps no packet boundaries, so the header may arrive in pieces: its possible start is kept.
void ConnectionSlot::TakeFirstBytes(std::string_view packet) {
  std::string joined;
  if (!pendingHeader_.empty()) {
    joined = std::exchange(pendingHeader_, {}).append(packet);
    packet = joined;
  }
  const std::size_t compared = std::min(packet.size(), kHeaderStart.size());
  if (packet.substr(0, compared) != kHeaderStart.substr(0, compared)) {
    header_ = Header::Absent;
    return TakePacket(packet);
  }
  const std::size_t lineEnd = packet.substr(0, kLongestHeader + 2).find("\r\n");
  if (lineEnd != std::string_view::npos && compared == kHeaderStart.size()) return TakeHeader(packet, lineEnd);
  if (packet.size() >= kLongestHeader + 2) {  // no room is left for the line end
    header_ = Header::Failed;
    throw RuntimeError(error::kInvalidProcedureCall);
  }
  pendingHeader_ = packet;
}

void ConnectionSlot::TakeHeader(std::string_view head, std::size_t lineEnd) {
  header_ = Header::Failed;  // until the count is known to be sound
  const std::int32_t count = TextToLong(head.substr(kHeaderStart.size(), lineEnd - kHeaderStart.size()));
  if (count < 0) throw RuntimeError(error::kOverflow);
  const std::string_view body = head.substr(lineEnd + 2);
  bytesToReceive = count;
  if (count >= kLargeAnswer) {
    response.Reserve(static_cast<std::size_t>(count));
    socket.WidenReceiveWindow(kWideWindow);
  } else {
    response.Reserve(body.size());
  }
  header_ = Header::Read;
  response.Append(body);
  Log().Write(bytInfo, "Winsock(", index_, "): First string packet received: ", body.size(), " bytes");
  CountBytes(body.size());
}

void ConnectionSlot::ReceiveFile() {
  if (bytesReceived == 0 && bytesToReceive >= kLargeAnswer) socket.WidenReceiveWindow(kWideWindow);
  for (int packet = 0; packet < kMostPackets && !requestReady; ++packet) {
    const std::size_t byteCount = socket.GetData(form_.scratch.data(), kFileScratchBytes);
    if (byteCount == 0) return;
    const std::string_view bytes(form_.scratch.data(), byteCount);
    Log().Write(bytInfo, "Winsock(", index_, "): Byte packet received: ", byteCount, " Bytes");
    Log().Write(bytInfo, "DEBUG: file handle: ", static_cast<int>(transferFile), " - data array size: ", byteCount - 1,
                " - data array content: ", bytes.substr(0, 1), "..", bytes.substr(byteCount - 1));
    form_.files.Write(transferFile, bytes);
    CountBytes(byteCount);
  }
}

void ConnectionSlot::CountBytes(std::size_t byteCount) {
  constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
  bytesReceived = static_cast<std::int32_t>(std::min(kMost, bytesReceived + static_cast<std::int64_t>(byteCount)));
  if (bytesReceived < bytesToReceive) return;
  Log().Write(bytInfo, "Winsock(", index_, "): All packets received: ", bytesReceived, " bytes in total");
  requestReady = true;
  socket.StopReading();  // later bytes are not part of the answer
}

void ConnectionSlot::PeerClosed() {
  if (requestReady) return;
  if (receiveMode == kReceiveFile && bytesToReceive == 0) {
    requestReady = true;
    return;
  }
  Error(socket_error::kConnectionReset, SocketErrorDescription(socket_error::kConnectionReset));
}

void ConnectionSlot::Error(std::int32_t number, std::string_view description) {
  socketError = true;
  socketErrorNumber = number;
  socketErrorText = std::to_string(number) + " - " + std::string(description);
}

}  // namespace oxaqrycln
