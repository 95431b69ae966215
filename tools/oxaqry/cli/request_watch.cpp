#include "tools/oxaqry/cli/request_watch.h"

namespace oxaqrycln::oxaqry {

RequestWatch::RequestWatch(const Interruption& interruption, OnTick onTick)
    : interruption_(interruption),
      onTick_(std::move(onTick)),
      apartment_(Apartment::Current()),
      timer_(apartment_->loop, std::chrono::milliseconds(100), [this] { Tick(); }) {
  timer_.Enable(true);
}

// What a tick raises leaves through the yield of the request, which gives back its socket, its server and its file.
void RequestWatch::Tick() const {
  interruption_.Check();
  if (!onTick_) return;
  const std::int32_t newest = apartment_->controls.SlotCount();
  if (newest == 0) return onTick_({});
  onTick_({apartment_->controls.Winsock(newest).SentByteCount(), apartment_->controls.LngBytesReceived(newest)});
}

}  // namespace oxaqrycln::oxaqry
