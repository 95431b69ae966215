#include <signal.h>

#include <system_error>
#include <utility>

#include "platform/threads/background_thread.h"
#include "values/errors.h"

namespace oxaqrycln {

namespace {

// Blocks all signals of the calling thread while it lives. A new thread starts with the mask of the thread that makes
// it.
class AllSignalsBlocked {
 public:
  AllSignalsBlocked() noexcept {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &former_);
  }
  ~AllSignalsBlocked() { pthread_sigmask(SIG_SETMASK, &former_, nullptr); }
  AllSignalsBlocked(const AllSignalsBlocked&) = delete;
  AllSignalsBlocked& operator=(const AllSignalsBlocked&) = delete;

 private:
  sigset_t former_;
};

}  // namespace

std::thread StartBackgroundThread(std::function<void()> body) {
  const AllSignalsBlocked blocked;
  try {
    return std::thread(std::move(body));
  } catch (const std::system_error&) {
    throw RuntimeError(error::kOutOfMemory);
  }
}

}  // namespace oxaqrycln
