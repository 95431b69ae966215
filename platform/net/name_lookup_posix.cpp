#include "platform/net/name_lookup.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <mutex>
#include <utility>

#include "platform/net/native_socket.h"
#include "platform/threads/background_thread.h"
#include "values/errors.h"

namespace oxaqrycln {
namespace {

[[noreturn]] void RaiseSocketError(std::int32_t number) {
  throw RuntimeError(number, std::string(SocketErrorDescription(number)));
}

// One of the look-ups that may run at once in the process; held by the thread as long as it runs.
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
  int wakeWrite = -1;  // -1 once the result is not wanted any more, or has been announced
  LookupResult result;

  void Announce(LookupResult found) {
    const std::lock_guard lock(mutex);
    if (wakeWrite < 0) return;
    result = std::move(found);
    close(wakeWrite);  // the reading end becomes ready with the end of the pipe
    wakeWrite = -1;
  }
  void Abandon() {
    const std::lock_guard lock(mutex);
    if (wakeWrite >= 0) close(wakeWrite);
    wakeWrite = -1;
  }
};

NameLookup::NameLookup(EventLoop& loop, std::string host, Resolver resolver, std::function<void(LookupResult)> done)
    : loop_(loop), done_(std::move(done)), shared_(std::make_shared<Shared>()) {
  auto permit = std::make_shared<LookupPermit>();
  int ends[2];
  if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) RaiseSocketError(socket_error::kNoBufferSpace);
  wakeRead_ = ends[0];
  shared_->wakeWrite = ends[1];
  try {
    watch_ = loop_.Watch(wakeRead_, Ready::Read, *this);
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
  if (wakeRead_ != kNoSocket) close(static_cast<int>(std::exchange(wakeRead_, kNoSocket)));
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
