#include <cstddef>
#include <memory>
#include <vector>

#include "platform/threads/thread_exit.h"

namespace oxaqrycln {
namespace {

struct ExitCall {
  void (*release)(void*) noexcept;
  void* what;
};
using Calls = std::vector<ExitCall>;

// A plain pointer: destructors of the host may come here after the calls have been made.
thread_local Calls* calls = nullptr;

struct AtExit {
  ~AtExit() {
    for (std::size_t i = 0; i < calls->size(); ++i) calls->at(i).release(calls->at(i).what);
    const std::unique_ptr<Calls> owner(calls);
    calls = nullptr;
  }
};

}  // namespace

void AtThreadExit(void (*release)(void*) noexcept, void* what) {
  if (calls == nullptr) calls = new Calls;  // NOLINT
  thread_local AtExit atExit;
  calls->push_back({release, what});
}

}  // namespace oxaqrycln
