#include "platform/event_loop.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <iterator>
#include <thread>
#include <utility>

#include "platform/timer.h"

namespace oxaqrycln {
namespace {

// Enough for most short answers of a server on this machine, and less than it costs to park and to be woken.
constexpr Clock::Duration kSpin = std::chrono::microseconds(5);

// With a single processor a server on this machine could not answer while this thread spins.
bool HasSeveralProcessors() noexcept {
  static const bool several = std::thread::hardware_concurrency() > 1;
  return several;
}

}  // namespace

EventLoop::WatchId EventLoop::Watch(NativeSocket socket, Ready wanted, ReadySink& sink) {
  watched_.reserve(watched_.size() + 1);
  entries_.push_back({socket, wanted, Ready::None});
  watched_.push_back({++lastId_, &sink});
  return lastId_;
}

void EventLoop::Change(WatchId watch, Ready wanted) noexcept {
  for (std::size_t i = 0; i < watched_.size(); ++i) {
    if (watched_[i].id == watch) entries_[i].wanted = wanted;
  }
}

void EventLoop::Unwatch(WatchId watch) noexcept {
  for (std::size_t i = 0; i < watched_.size(); ++i) {
    if (watched_[i].id != watch) continue;
    watched_.erase(watched_.begin() + static_cast<std::ptrdiff_t>(i));
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(i));
    return;
  }
}

bool EventLoop::RunPosted() {
  if (posted_.empty()) return false;
  // Only the calls that are here now: one that posts again waits for the next yield.
  auto calls = std::exchange(posted_, {});
  for (auto next = calls.begin(); next != calls.end();) {
    try {
      (*next++)();
    } catch (...) {
      // The calls after it run in the next yield, ahead of those posted meanwhile.
      posted_.insert(posted_.begin(), std::move_iterator(next), std::move_iterator(calls.end()));
      throw;
    }
  }
  return true;
}

bool EventLoop::RunDueTimers(SteadyPoint now) {
  bool any = false;
  // By index: a tick may make or end timers.
  for (std::size_t i = 0; i < timers_.size(); ++i) any |= timers_[i]->FireIfDue(now);  // NOLINT(modernize-loop-convert)
  return any;
}

EventLoop::SteadyPoint EventLoop::NextTimer(SteadyPoint latest) const noexcept {
  for (const Timer* timer : timers_) latest = std::min(latest, timer->NextDue());
  return latest;
}

void EventLoop::Dispatch() {
  if (watched_.size() == 1) {
    watched_.front().sink->OnReady(entries_.front().found);
    return;
  }
  // A sink may end any watch, including its own, so each ready one is found again by its id before its call.
  std::vector<std::pair<WatchId, Ready>> ready;
  for (std::size_t i = 0; i < watched_.size(); ++i) {
    if (entries_[i].found != Ready::None) ready.emplace_back(watched_[i].id, entries_[i].found);
  }
  for (const auto& [id, found] : ready) {
    const auto watched = std::ranges::find(watched_, id, &Watched::id);
    if (watched != watched_.end()) watched->sink->OnReady(found);
  }
}

void EventLoop::RunReady() {
  RunPosted();
  RunDueTimers();
  if (!watched_.empty() && Poll(entries_, Clock::Duration::zero()) > 0) Dispatch();
}

// Spins on the clock only; the following poll picks up any events.
void EventLoop::SpinUntil(SteadyPoint until) const noexcept {
  constexpr int kMostLooks = 1000;
  for (int looks = 0; looks < kMostLooks && clock_.SteadyNow() < until; ++looks) {
  }
}

void EventLoop::RunUntil(SteadyPoint latest) {
  const bool posted = RunPosted();
  const SteadyPoint now = clock_.SteadyNow();
  Clock::Duration wait = Clock::Duration::zero();
  if (!RunDueTimers(now) && !posted) wait = NextTimer(latest) - now;
  if (std::exchange(expectsSoon_, false) && HasSeveralProcessors()) SpinUntil(now + std::min(wait, kSpin));
  if (Poll(entries_, wait) > 0) {
    Dispatch();
  } else {
    RunDueTimers();
  }
}

}  // namespace oxaqrycln
