#include "platform/net/name_lookup.h"

#include <atomic>
#include <cstdint>
#include <exception>
#include <mutex>
#include <string>
#include <utility>

#include "platform/net/native_socket.h"
#include "platform/net/socket_errors.h"
#include "platform/threads/background_thread.h"
#include "values/errors.h"

namespace oxaqrycln {
namespace {

[[noreturn]] void RaiseSocketError(std::int32_t number) {
  throw RuntimeError(number, std::string(SocketErrorDescription(number)));
}

// The permission to run one of the look-ups that the process may run at once; owned by the thread while it runs.
class LookupPermit {
 public:
  LookupPermit() {
    if (running_.fetch_add(1) < NameLookup::kMostAtOnce) return;
    --running_;
    RaiseSocketError(socket_error::kTryAgain);
  }
  ~LookupPermit() { --running_; }
  LookupPermit(const LookupPermit&) = delete;
  LookupPermit& operator=(const LookupPermit&) = delete;

 private:
  static inline std::atomic<int> running_{0};
};

}  // namespace

struct NameLookup::Shared {
  std::mutex mutex;
  NativeSocket wakes = kNoSocket;  // kNoSocket once the result has been announced or is not wanted any more
  LookupResult result;

  void Announce(LookupResult found) {
    const std::lock_guard lock(mutex);
    if (wakes == kNoSocket) return;
    result = std::move(found);
    CloseSocket(std::exchange(wakes, kNoSocket));  // which makes the waiting end ready
  }
  void Abandon() {
    const std::lock_guard lock(mutex);
    if (wakes != kNoSocket) CloseSocket(std::exchange(wakes, kNoSocket));
  }
};

NameLookup::NameLookup(EventLoop& loop, std::string host, Resolver resolver, std::function<void(LookupResult)> done)
    : loop_(loop), done_(std::move(done)), shared_(std::make_shared<Shared>()) {
  auto permit = std::make_shared<LookupPermit>();
  const WakeUp ends = MakeWakeUp();
  if (ends.waits == kNoSocket) RaiseSocketError(socket_error::kNoBufferSpace);
  waits_ = ends.waits;
  shared_->wakes = ends.wakes;
  try {
    watch_ = loop_.Watch(waits_, Ready::Read, *this);
    StartBackgroundThread([shared = shared_, permit = std::move(permit), name = std::move(host),
                           resolve = std::move(resolver)]() mutable {
      LookupResult found;
      try {
        found = resolve(name);
      } catch (...) {
        found.error = socket_error::kHostNotFound;
      }
      permit.reset();
      shared->Announce(std::move(found));
    }).detach();
  } catch (const std::exception&) {  // no memory or no thread
    Stop();
    RaiseSocketError(socket_error::kNoBufferSpace);
  }
}

NameLookup::~NameLookup() { Stop(); }

void NameLookup::Stop() noexcept {
  if (watch_ != 0) loop_.Unwatch(std::exchange(watch_, 0));
  shared_->Abandon();
  if (waits_ != kNoSocket) CloseSocket(std::exchange(waits_, kNoSocket));
}

void NameLookup::OnReady(Ready /*found*/) {
  LookupResult result;
  {
    const std::lock_guard lock(shared_->mutex);
    result = std::move(shared_->result);
  }
  Stop();
  const auto done = std::move(done_);
  done(std::move(result));  // may end this object
}

}  // namespace oxaqrycln
