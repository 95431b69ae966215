#include "platform/threads/thread_exit.h"

namespace oxaqrycln {
namespace {

struct Release {
  ~Release() {
    if (release != nullptr) release(what);
  }
  void (*release)(void*) noexcept = nullptr;
  void* what = nullptr;
};

}  // namespace

void AtThreadExit(void (*release)(void*) noexcept, void* what) {
  thread_local Release atExit;
  atExit.release = release;
  atExit.what = what;
}

}  // namespace oxaqrycln
