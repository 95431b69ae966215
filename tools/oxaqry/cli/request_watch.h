// request_watch.h - looks after the requests of this thread while they run: ends them when a signal came, and tells
// ten times a second how far they are.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_REQUEST_WATCH_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_REQUEST_WATCH_H_

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/timer.h"
#include "tools/oxaqry/cli/interruption.h"
#include "transport/apartment.h"

namespace oxaqrycln::oxaqry {

class RequestWatch {
 public:
  // How far the request on the thread's newest connection is, in bytes.
  struct Amounts {
    std::int64_t sent = 0;      // of the request and the file behind it
    std::int64_t received = 0;  // of the answer
  };
  using OnTick = std::function<void(const Amounts& amounts)>;

  // A request that is ended returns its failure value; Interruption::Check then tells why.
  explicit RequestWatch(const Interruption& interruption, OnTick onTick = nullptr);

 private:
  void Tick() const;

  const Interruption& interruption_;
  const OnTick onTick_;
  const std::shared_ptr<Apartment> apartment_;
  Timer timer_;
};

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_REQUEST_WATCH_H_
