#include "platform/threads/call_thread.h"

#include <condition_variable>
#include <exception>
#include <mutex>
#include <utility>

#include "platform/threads/background_thread.h"

namespace oxaqrycln {

// The call and its outcome, which the caller and the thread share.
struct CallThread::Shared {
  std::mutex mutex;
  std::condition_variable changed;
  std::function<void()> call;  // to be run, or running
  std::exception_ptr failure;
  bool isDone = false;
  bool isClosed = false;

  void Serve() {
    std::unique_lock lock(mutex);
    for (;;) {
      changed.wait(lock, [this] { return isClosed || (call && !isDone); });
      if (isClosed) return;
      lock.unlock();
      std::exception_ptr raised;
      try {
        call();
      } catch (...) {
        raised = std::current_exception();
      }
      call = nullptr;  // destroyed here, on the thread that used it
      lock.lock();
      failure = std::move(raised);
      isDone = true;
      changed.notify_all();
    }
  }
};

CallThread::CallThread() : shared_(std::make_shared<Shared>()) {}

CallThread::~CallThread() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(shared_->mutex);
    shared_->isClosed = true;
  }
  shared_->changed.notify_all();
  thread_.join();
}

bool CallThread::Run(std::function<void()> call, std::chrono::milliseconds limit) {
  if (isLost_) return false;
  std::unique_lock lock(shared_->mutex);
  shared_->call = std::move(call);
  shared_->failure = nullptr;
  shared_->isDone = false;
  if (!thread_.joinable()) thread_ = StartBackgroundThread([shared = shared_] { shared->Serve(); });
  shared_->changed.notify_all();
  if (!shared_->changed.wait_for(lock, limit, [this] { return shared_->isDone; })) {
    isLost_ = true;
    shared_->isClosed = true;
    thread_.detach();
    return false;
  }
  if (shared_->failure != nullptr) std::rethrow_exception(std::exchange(shared_->failure, nullptr));
  return true;
}

}  // namespace oxaqrycln
