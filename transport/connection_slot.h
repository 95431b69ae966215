// connection_slot.h - one connection of the hidden form: its socket, its record, and the receiver that fills the
// record. Owned by frmControls; claimed by one clsQuery at a time.
#ifndef OXAQRYCLN_TRANSPORT_CONNECTION_SLOT_H_
#define OXAQRYCLN_TRANSPORT_CONNECTION_SLOT_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/byte_block.h"
#include "platform/files/open_files.h"
#include "platform/net/socket_control.h"
#include "support/log_writer.h"
#include "values/sorted_list.h"

namespace oxaqrycln {

// The receive modes of a slot.
inline constexpr std::int32_t kReceiveText = 1;
inline constexpr std::int32_t kReceiveFile = 2;

// A file to be received: a number of OpenFiles, and how many bytes it has.
struct FileReceipt {
  std::uint8_t file = 0;
  std::int32_t byteCount = 0;
};

class ConnectionSlot final : public SocketEvents {
 public:
  // What the slots of one form share.
  struct Form {
    EventLoop& loop;
    const Resolver& resolver;
    OpenFiles& files;
    ByteBlock& scratch;  // where small packets and pieces of files are received
  };

  ConnectionSlot(std::int32_t index, Form form) noexcept
      : index_(index), form_(form), socket(form.loop, form.resolver, *this) {}

  // Resets the receive state for an answer: a text or the bytes of a file.
  void StartReceiving(const std::optional<FileReceipt>& receipt) noexcept;
  SessionLog Log() const noexcept { return {debugLogPath, sessionId, form_.loop.clock()}; }

 private:
  enum class Header { Awaited, Read, Absent, Failed };

  void DataArrival() override;
  void PeerClosed() override;
  void Error(std::int32_t number, std::string_view description) override;

  void ReceiveText();
  void ReceiveIntoPlace();
  void ReceiveFile();
  void TakePacket(std::string_view packet);
  void TakeFirstBytes(std::string_view packet);
  void TakeHeader(std::string_view head, std::size_t lineEnd);
  void CountBytes(std::size_t byteCount);

  const std::int32_t index_;
  const Form form_;
  Header header_ = Header::Awaited;
  std::string pendingHeader_;  // the start of a header whose end has not arrived yet
  std::size_t pagesUpTo_ = 0;  // the position in a large response up to which its pages are populated

 public:
  // The record.
  bool inUse = false;
  std::string debugLogPath;
  std::string sessionId;
  std::int32_t receiveMode = kReceiveText;
  bool requestReady = false;
  bool socketError = false;
  std::int32_t socketErrorNumber = 0;  // valid with socketError
  std::string socketErrorText;
  std::int32_t bytesToReceive = 0;
  std::int32_t bytesReceived = 0;
  std::uint8_t transferFile = 0;
  ByteBlock response;

  SocketControl socket;
  SortedList sortedList;
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_TRANSPORT_CONNECTION_SLOT_H_
