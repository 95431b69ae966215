// apartment.h - all state that the instances of one thread share: clock, event loop, server table, hidden form.
// Made on first use; needs no lock, and has no system resource while no instance lives on the thread.
#ifndef OXAQRYCLN_TRANSPORT_APARTMENT_H_
#define OXAQRYCLN_TRANSPORT_APARTMENT_H_

#include <memory>

#include "platform/clock.h"
#include "platform/event_loop.h"
#include "platform/net/socket_address.h"
#include "transport/form_controls.h"
#include "transport/server_table.h"

namespace oxaqrycln {

class Apartment {
 public:
  // That of the calling thread. An instance owns a share, so that it may end after its thread.
  static std::shared_ptr<Apartment> Current();
  // Leaves that of the calling thread as it is, and never releases it; the next Current() makes another one.
  static void Abandon() noexcept;

  Apartment();
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;

  Clock clock;
  Resolver resolver;  // how host names are looked up
  EventLoop loop;
  ServerTable servers;
  frmControls controls;
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_TRANSPORT_APARTMENT_H_
