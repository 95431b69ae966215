#include <signal.h>

#include <system_error>

#include "platform/errors.h"
#include "platform/quiet_thread.h"

namespace oxaqrycln {

std::thread StartQuietThread(std::function<void()> body) {
  sigset_t all;
  sigset_t former;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &former);  // a thread begins with the mask of its maker
  std::thread made;
  bool hasFailed = false;
  try {
    made = std::thread(std::move(body));
  } catch (const std::system_error&) {
    hasFailed = true;
  }
  pthread_sigmask(SIG_SETMASK, &former, nullptr);
  if (hasFailed) throw RuntimeError(error::kOutOfMemory);
  return made;
}

}  // namespace oxaqrycln
