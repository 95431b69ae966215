// session_table.h - the live sessions, found by their secret identifiers.
// Knows nothing of what a session holds. One for the host, used by all threads; it never calls State while locked.
#ifndef OXAQRYCLN_TOOLS_ASPHOST_SESSIONS_SESSION_TABLE_H_
#define OXAQRYCLN_TOOLS_ASPHOST_SESSIONS_SESSION_TABLE_H_

#include <chrono>
#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

namespace oxaqrycln::asphost {

// 128 random bits in hexadecimal digits.
std::string NewSessionId();

template <typename State>
class SessionTable {
 public:
  using Clock = std::chrono::steady_clock;
  using Handle = std::shared_ptr<State>;

  // When there are more than mostSessions, the one that has not been used for the longest time ends.
  SessionTable(std::size_t mostSessions, std::chrono::seconds timeOut)
      : mostSessions_(mostSessions), timeOut_(timeOut) {}

  // The session of an identifier, whose time-out begins anew; null when there is none or it has ended.
  Handle Find(const std::string& id, Clock::time_point now) {
    const std::lock_guard lock(mutex_);
    const auto found = entries_.find(id);
    if (found == entries_.end()) return nullptr;
    if (now >= found->second.end) {
      entries_.erase(found);
      return nullptr;
    }
    found->second.end = now + found->second.timeOut;
    found->second.lastUse = now;
    return found->second.state;
  }

  // Begins a session and returns its identifier.
  std::string Add(Handle state, Clock::time_point now) {
    const std::string id = NewSessionId();
    const std::lock_guard lock(mutex_);
    std::erase_if(entries_, [&](const auto& entry) { return now >= entry.second.end; });
    if (entries_.size() >= mostSessions_) RemoveOldest();
    entries_[id] = {std::move(state), timeOut_, now + timeOut_, now};
    return id;
  }

  void SetTimeOut(const std::string& id, std::chrono::seconds timeOut, Clock::time_point now) {
    const std::lock_guard lock(mutex_);
    const auto found = entries_.find(id);
    if (found == entries_.end()) return;
    found->second.timeOut = timeOut;
    found->second.end = now + timeOut;
  }

  // The session ends when its last handle does.
  void Remove(const std::string& id) {
    const std::lock_guard lock(mutex_);
    entries_.erase(id);
  }

  std::size_t Count() const {
    const std::lock_guard lock(mutex_);
    return entries_.size();
  }

 private:
  struct Entry {
    Handle state;
    std::chrono::seconds timeOut;
    Clock::time_point end;
    Clock::time_point lastUse;
  };

  void RemoveOldest() {
    auto oldest = entries_.begin();
    for (auto entry = entries_.begin(); entry != entries_.end(); ++entry) {
      if (entry->second.lastUse < oldest->second.lastUse) oldest = entry;
    }
    if (oldest != entries_.end()) entries_.erase(oldest);
  }

  const std::size_t mostSessions_;
  const std::chrono::seconds timeOut_;
  mutable std::mutex mutex_;
  std::map<std::string, Entry> entries_;
};

}  // namespace oxaqrycln::asphost

#endif  // OXAQRYCLN_TOOLS_ASPHOST_SESSIONS_SESSION_TABLE_H_
