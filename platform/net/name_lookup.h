// name_lookup.h - the look-up of one host name on a thread of its own, so that the apartment does not block.
// Destroying it abandons the look-up: its result is discarded, its sockets are closed at once.
#ifndef OXAQRYCLN_PLATFORM_NET_NAME_LOOKUP_H_
#define OXAQRYCLN_PLATFORM_NET_NAME_LOOKUP_H_

#include <functional>
#include <memory>
#include <string>

#include "platform/event_loop.h"
#include "platform/net/socket_address.h"

namespace oxaqrycln {

class NameLookup final : private ReadySink {
 public:
  // The most look-ups that run at once in the process, including abandoned ones, so that a name server that does not
  // answer cannot fill the process with threads.
  static constexpr int kMostAtOnce = 16;

  // Starts at once; done is called once, inside a yield of the loop. Raises a socket error: kTryAgain when as many as
  // allowed are running, kNoBufferSpace when the system has no thread or descriptor left.
  NameLookup(EventLoop& loop, std::string host, Resolver resolver, std::function<void(LookupResult)> done);
  ~NameLookup();
  NameLookup(const NameLookup&) = delete;
  NameLookup& operator=(const NameLookup&) = delete;

 private:
  struct Shared;  // what the thread and this object both hold
  void OnReady(Ready found) override;
  void Stop() noexcept;

  EventLoop& loop_;
  std::function<void(LookupResult)> done_;
  std::shared_ptr<Shared> shared_;
  NativeSocket waits_ = kNoSocket;  // becomes ready when the look-up has ended
  EventLoop::WatchId watch_ = 0;
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_NET_NAME_LOOKUP_H_
