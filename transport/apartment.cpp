#include "transport/apartment.h"

#include <utility>

#include "platform/threads/thread_exit.h"

namespace oxaqrycln {
namespace {

using Share = std::shared_ptr<Apartment>;

// A plain pointer, so that nothing has to be destroyed where no code may run at the end of a thread.
thread_local Share* current = nullptr;

void ReleaseShare(void* share) noexcept {
  if (share != current) return;  // abandoned
  current = nullptr;
  const std::unique_ptr<Share> owner(static_cast<Share*>(share));
}

}  // namespace

Apartment::Apartment() : resolver(&ResolveHost), loop(clock), servers(loop), controls(loop, resolver, servers) {}

std::shared_ptr<Apartment> Apartment::Current() {
  if (current == nullptr) {
    auto made = std::make_unique<Share>(std::make_shared<Apartment>());
    AtThreadExit(&ReleaseShare, made.get());
    current = made.release();
  }
  return *current;
}

void Apartment::Abandon() noexcept { current = nullptr; }

}  // namespace oxaqrycln
