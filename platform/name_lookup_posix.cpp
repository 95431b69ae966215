#include "platform/name_lookup.h"

#include <fcntl.h>
#include <unistd.h>

#include <mutex>
#include <utility>

#include "platform/errors.h"
#include "platform/native_socket.h"
#include "platform/quiet_thread.h"

namespace oxaqrycln {

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
  int ends[2];
  if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) throw RuntimeError(error::kOutOfMemory);
  wakeRead_ = ends[0];
  shared_->wakeWrite = ends[1];
  try {
    watch_ = loop_.Watch(wakeRead_, Ready::Read, *this);
    StartQuietThread([shared = shared_, name = std::move(host), resolve = std::move(resolver)] {
      LookupResult found;
      try {
        found = resolve(name);
      } catch (...) {
        found.error = socket_error::kHostNotFound;
      }
      shared->Announce(std::move(found));
    }).detach();
  } catch (...) {
    Stop();
    throw;
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
