#include "transport/form_controls.h"

#include <algorithm>
#include <chrono>
#include <cstddef>

#include "support/trap.h"
#include "values/errors.h"

namespace oxaqrycln {
namespace {

constexpr std::chrono::milliseconds kFirstInterval(10000);
// Instances keep their slot number in 16 bits.
constexpr std::int32_t kMostSlots = 32767;

}  // namespace

frmControls::frmControls(EventLoop& loop, const Resolver& resolver, ServerTable& servers)
    : form_{loop, resolver, files_, scratch_},
      timer_(loop, kFirstInterval, [&servers] { servers.CheckReleaseBusyServer(); }) {
  AddSlot();
  timer_.Enable(true);
}

void frmControls::AddSlot() {
  slots_.push_back(std::make_unique<ConnectionSlot>(static_cast<std::int32_t>(slots_.size()), form_));
}

std::int32_t frmControls::GetFreeControl() {
  const std::string noLog;
  const SessionLog log(noLog, noLog, form_.loop.clock());
  return Trap(
      log, "GetFreeControl", std::int32_t{-1},
      [&](std::int32_t& result) {
        std::int32_t slot = firstFree_;
        while (slot <= SlotCount() && Slot(slot).inUse) ++slot;
        if (slot > kMostSlots) throw RuntimeError(error::kOutOfMemory, "No free connection slot");
        if (slot > SlotCount()) AddSlot();
        Slot(slot).inUse = true;
        firstFree_ = slot + 1;
        result = slot;
      },
      [&](const RuntimeError& why) { lastError_ = why; });
}

bool frmControls::ReleaseControl(std::int32_t slot) {
  ConnectionSlot& released = Slot(slot);
  released.socket.Close();
  released.inUse = false;
  if (slot > 0) firstFree_ = std::min(firstFree_, slot);
  return true;
}

void frmControls::WriteLog(std::int32_t slot, std::string_view line, int level) noexcept {
  if (slot < 0 || slot > SlotCount()) return;
  slots_[static_cast<std::size_t>(slot)]->Log().Write(level, line);
}

ConnectionSlot& frmControls::Slot(std::int32_t slot) {
  if (slot < 0 || slot > SlotCount()) throw RuntimeError(error::kSubscriptOutOfRange);
  return *slots_[static_cast<std::size_t>(slot)];
}

}  // namespace oxaqrycln
