#include "platform/threads/call_thread.h"

#include <condition_variable>
#include <exception>
#include <mutex>
#include <utility>

#include "platform/threads/background_thread.h"

namespace oxaqrycln {

// Where the caller lays a call down and the thread its outcome.
struct CallThread::Desk {
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
      call = nullptr;  // what it holds ends here, on the thread that used it
      lock.lock();
      failure = std::move(raised);
      isDone = true;
      changed.notify_all();
    }
  }
};

CallThread::CallThread() : desk_(std::make_shared<Desk>()) {}

CallThread::~CallThread() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(desk_->mutex);
    desk_->isClosed = true;
  }
  desk_->changed.notify_all();
  thread_.join();
}

bool CallThread::Run(std::function<void()> call, std::chrono::milliseconds limit) {
  if (isLost_) return false;
  std::unique_lock lock(desk_->mutex);
  desk_->call = std::move(call);
  desk_->failure = nullptr;
  desk_->isDone = false;
  if (!thread_.joinable()) thread_ = StartBackgroundThread([desk = desk_] { desk->Serve(); });
  desk_->changed.notify_all();
  if (!desk_->changed.wait_for(lock, limit, [this] { return desk_->isDone; })) {
    isLost_ = true;
    desk_->isClosed = true;
    thread_.detach();
    return false;
  }
  if (desk_->failure != nullptr) std::rethrow_exception(std::exchange(desk_->failure, nullptr));
  return true;
}

}  // namespace oxaqrycln
