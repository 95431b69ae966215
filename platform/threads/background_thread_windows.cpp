#include <system_error>
#include <utility>

#include "platform/threads/background_thread.h"
#include "values/errors.h"

namespace oxaqrycln {

// The system has no signals that a thread could block.
std::thread StartBackgroundThread(std::function<void()> body) {
  try {
    return std::thread(std::move(body));
  } catch (const std::system_error&) {
    throw RuntimeError(error::kOutOfMemory);
  }
}

}  // namespace oxaqrycln
