// site.h - the folder that is served and what its pages share: settings, sessions, application values.
// One for the host, used by all page threads.
#ifndef OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_SITE_H_
#define OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_SITE_H_

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "tools/asphost/script/script_values.h"
#include "tools/asphost/script/value_store.h"
#include "tools/asphost/sessions/session_table.h"

namespace oxaqrycln::asphost {

struct SiteOptions {
  std::wstring folder;  // absolute, without "\" at its end
  std::chrono::seconds scriptTimeOut{90};
  std::chrono::seconds sessionTimeOut{20 * 60};
  std::size_t mostSessions = 1000;
};

// The values of one visitor. Who holds `inUse` may use `values`: a session runs one page at a time.
struct SessionState {
  std::wstring publicId = ToWide(NewSessionId(), CP_UTF8);  // Session.SessionID; does not open the session
  std::chrono::minutes timeOut{0};
  std::timed_mutex inUse;
  ValueStore values;
};

// The values of Application. A page that locked them keeps others from writing until it unlocks them or ends.
class ApplicationState {
 public:
  using Owner = const void*;
  using TimePoint = std::chrono::steady_clock::time_point;

  OwnedVariant Get(const std::wstring& name) const;
  std::vector<std::wstring> Names() const;
  // These wait for another page's lock, until the deadline; then they throw ScriptError.
  void Change(Owner owner, TimePoint deadline, const std::function<void(ValueStore& values)>& change);
  void Lock(Owner owner, TimePoint deadline);
  // Does nothing for a page that has not locked it.
  void Unlock(Owner owner);

 private:
  void AwaitTurn(std::unique_lock<std::mutex>& lock, Owner owner, TimePoint deadline);

  mutable std::mutex mutex_;
  std::condition_variable unlocked_;
  Owner owner_ = nullptr;
  ValueStore values_;
};

struct Site {
  explicit Site(SiteOptions given)
      : options(std::move(given)), sessions(options.mostSessions, options.sessionTimeOut) {}

  // Where a site path is on the disk.
  std::wstring DiskPath(const std::string& sitePath) const;
  // The content of a file; nothing if it cannot be read or has more than 64 MB.
  std::optional<std::string> Read(const std::string& sitePath) const;
  // The same for the source of a page, which is kept until the file changes.
  std::optional<std::string> ReadSource(const std::string& sitePath);

  const SiteOptions options;
  SessionTable<SessionState> sessions;
  ApplicationState application;

 private:
  struct Source {
    ULONGLONG changed;
    std::string content;
  };
  std::mutex sourcesMutex_;
  std::map<std::string, Source> sources_;
};

}  // namespace oxaqrycln::asphost

#endif  // OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_SITE_H_
