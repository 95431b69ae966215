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
#include "transport/slot_accessors.h"

namespace oxaqrycln {

class frmControls final : public SlotAccessors<frmControls> {
 public:
  frmControls(EventLoop& loop, const Resolver& resolver, ServerTable& servers);

  // Claims a free slot, making one when none is free: its number from 1, or -1 with the last error set.
  std::int32_t GetFreeControl();
  // Marks the slot free; its controls stay for reuse. Always true.
  bool ReleaseControl(std::int32_t slot);
  // Why GetFreeControl last gave -1.
  const RuntimeError& LastError() const noexcept { return lastError_; }
  std::int32_t SlotCount() const noexcept { return static_cast<std::int32_t>(slots_.size()) - 1; }

  // A slot with its record, its socket and its sorted list. Raises Subscript out of range for a number without a slot.
  ConnectionSlot& Slot(std::int32_t slot);
  Timer& ReleaseTimer() noexcept { return timer_; }
  OpenFiles& Files() noexcept { return files_; }

  // A line in the log of the instance that owns the slot; lost for a number without a slot.
  void WriteLog(std::int32_t slot, std::string_view line, int level = bytInfo) noexcept;

 private:
  void AddSlot();

  ConnectionSlot::Form form_;
  OpenFiles files_;
  ByteBlock scratch_;
  // Slot 0 belongs to the form and is never handed out. Sockets are referred to by address, so slots do not move.
  std::vector<std::unique_ptr<ConnectionSlot>> slots_;
  std::int32_t firstFree_ = 1;  // no slot below it is free
  RuntimeError lastError_{0, ""};
  Timer timer_;
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_TRANSPORT_FORM_CONTROLS_H_
