// slot_accessors.h - the accessors by slot number that are laid down for the hidden form. The component itself works on
// the ConnectionSlot; they exist for hosts and older code that know a slot by its number.
#ifndef OXAQRYCLN_TRANSPORT_SLOT_ACCESSORS_H_
#define OXAQRYCLN_TRANSPORT_SLOT_ACCESSORS_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "transport/connection_slot.h"

namespace oxaqrycln {

// Form has ConnectionSlot& Slot(std::int32_t), whose error for a number without a slot every accessor raises.
template <typename Form>
class SlotAccessors {
 public:
  SocketControl& Winsock(std::int32_t slot) { return Record(slot).socket; }
  SortedList& lstSort(std::int32_t slot) { return Record(slot).sortedList; }

  const std::string& StrDebugLogPath(std::int32_t slot) { return Record(slot).debugLogPath; }
  void StrDebugLogPath(std::int32_t slot, std::string_view value) { Record(slot).debugLogPath = value; }
  const std::string& StrSessionID(std::int32_t slot) { return Record(slot).sessionId; }
  void StrSessionID(std::int32_t slot, std::string_view value) { Record(slot).sessionId = value; }
  std::int32_t UdtWinsockMode(std::int32_t slot) { return Record(slot).receiveMode; }
  void UdtWinsockMode(std::int32_t slot, std::int32_t value) { Record(slot).receiveMode = value; }
  bool BlnRequestReady(std::int32_t slot) { return Record(slot).requestReady; }
  void BlnRequestReady(std::int32_t slot, bool value) { Record(slot).requestReady = value; }
  bool BlnWinsockError(std::int32_t slot) { return Record(slot).socketError; }
  void BlnWinsockError(std::int32_t slot, bool value) { Record(slot).socketError = value; }
  const std::string& StrWinsockError(std::int32_t slot) { return Record(slot).socketErrorText; }
  void StrWinsockError(std::int32_t slot, std::string_view value) { Record(slot).socketErrorText = value; }
  std::int32_t LngBytesToReceive(std::int32_t slot) { return Record(slot).bytesToReceive; }
  void LngBytesToReceive(std::int32_t slot, std::int32_t value) { Record(slot).bytesToReceive = value; }
  std::int32_t LngBytesReceived(std::int32_t slot) { return Record(slot).bytesReceived; }
  void LngBytesReceived(std::int32_t slot, std::int32_t value) { Record(slot).bytesReceived = value; }
  std::uint8_t BytTransferFile(std::int32_t slot) { return Record(slot).transferFile; }
  void BytTransferFile(std::int32_t slot, std::uint8_t value) { Record(slot).transferFile = value; }
  std::string_view StrResponse(std::int32_t slot) { return Record(slot).response.View(); }
  void StrResponse(std::int32_t slot, std::string_view value) {
    Record(slot).response.Clear();
    Record(slot).response.Append(value);
  }

 private:
  ConnectionSlot& Record(std::int32_t slot) { return static_cast<Form&>(*this).Slot(slot); }
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_TRANSPORT_SLOT_ACCESSORS_H_
