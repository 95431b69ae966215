// form_controls.h - the hidden form of an apartment: connection slots with their sockets and sorted lists, and the
// timer that frees stale query servers. Shared by all instances of the apartment.
#ifndef OXAQRYCLN_TRANSPORT_FORM_CONTROLS_H_
#define OXAQRYCLN_TRANSPORT_FORM_CONTROLS_H_

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/timer.h"
#include "transport/connection_slot.h"
#include "transport/server_table.h"

namespace oxaqrycln {

class frmControls {
 public:
  frmControls(EventLoop& loop, const Resolver& resolver, ServerTable& servers);

  // Claims a free slot, making one when none is free: its number from 1, or -1 with the last error set.
  std::int32_t GetFreeControl();
  // Marks the slot free; its controls stay for reuse. Always true.
  bool ReleaseControl(std::int32_t slot);
  // Why GetFreeControl last gave -1.
  const RuntimeError& LastError() const noexcept { return lastError_; }
  std::int32_t SlotCount() const noexcept { return static_cast<std::int32_t>(slots_.size()) - 1; }

  // The controls of a slot. These and the accessors below raise Subscript out of range for a number without a slot.
  SocketControl& Winsock(std::int32_t slot) { return At(slot).socket; }
  SortedList& lstSort(std::int32_t slot) { return At(slot).sortedList; }
  Timer& ReleaseTimer() noexcept { return timer_; }
  OpenFiles& Files() noexcept { return files_; }

  // The slot's receive state made ready for the answer to a request, which is a text unless a file is to be received.
  void StartReceiving(std::int32_t slot, const std::optional<FileReceipt>& receipt) {
    At(slot).StartReceiving(receipt);
  }
  // Hands the text received so far over without copying; the slot's own becomes empty.
  ByteBlock TakeResponse(std::int32_t slot) { return std::exchange(At(slot).response, ByteBlock()); }

  const std::string& StrDebugLogPath(std::int32_t slot) { return At(slot).debugLogPath; }
  void StrDebugLogPath(std::int32_t slot, std::string_view value) { At(slot).debugLogPath = value; }
  const std::string& StrSessionID(std::int32_t slot) { return At(slot).sessionId; }
  void StrSessionID(std::int32_t slot, std::string_view value) { At(slot).sessionId = value; }
  std::int32_t UdtWinsockMode(std::int32_t slot) { return At(slot).receiveMode; }
  void UdtWinsockMode(std::int32_t slot, std::int32_t value) { At(slot).receiveMode = value; }
  bool BlnRequestReady(std::int32_t slot) { return At(slot).requestReady; }
  void BlnRequestReady(std::int32_t slot, bool value) { At(slot).requestReady = value; }
  bool BlnWinsockError(std::int32_t slot) { return At(slot).socketError; }
  void BlnWinsockError(std::int32_t slot, bool value) { At(slot).socketError = value; }
  const std::string& StrWinsockError(std::int32_t slot) { return At(slot).socketErrorText; }
  void StrWinsockError(std::int32_t slot, std::string_view value) { At(slot).socketErrorText = value; }
  std::int32_t LngBytesToReceive(std::int32_t slot) { return At(slot).bytesToReceive; }
  void LngBytesToReceive(std::int32_t slot, std::int32_t value) { At(slot).bytesToReceive = value; }
  std::int32_t LngBytesReceived(std::int32_t slot) { return At(slot).bytesReceived; }
  void LngBytesReceived(std::int32_t slot, std::int32_t value) { At(slot).bytesReceived = value; }
  std::uint8_t BytTransferFile(std::int32_t slot) { return At(slot).transferFile; }
  void BytTransferFile(std::int32_t slot, std::uint8_t value) { At(slot).transferFile = value; }
  std::string_view StrResponse(std::int32_t slot) { return At(slot).response.View(); }
  void StrResponse(std::int32_t slot, std::string_view value);

  // A line in the log of the instance that owns the slot; lost for a number without a slot.
  void WriteLog(std::int32_t slot, std::string_view line, int level = bytInfo) noexcept;

 private:
  ConnectionSlot& At(std::int32_t slot);
  void AddSlot();

  ConnectionSlot::Form form_;
  OpenFiles files_;
  ByteBlock scratch_;
  // Slot 0 is the form's own and never handed out. A socket is known by its address, so slots do not move.
  std::vector<std::unique_ptr<ConnectionSlot>> slots_;
  std::int32_t firstFree_ = 1;  // no slot below it is free
  RuntimeError lastError_{0, ""};
  Timer timer_;
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_TRANSPORT_FORM_CONTROLS_H_
