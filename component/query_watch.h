// query_watch.h - an instance as its host (command line, language binding, portal) sees and controls it beyond the
// class: progress, cancelling, outcomes, the server table, the database connection. Not for page authors. A watch
// belongs to the thread of its instance; only Cancel and Progress may be called from others.
#ifndef OXAQRYCLN_COMPONENT_QUERY_WATCH_H_
#define OXAQRYCLN_COMPONENT_QUERY_WATCH_H_

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "component/clsQuery.h"
#include "platform/database/database.h"
#include "support/log_writer.h"
#include "transport/request_monitor.h"
#include "values/date_time.h"

namespace oxaqrycln {

struct ServerState {
  std::string host;
  std::int32_t port = 0;
  bool takesPrintRequests = true;
  bool isBusy = false;
  DateTime since;             // when it was claimed; valid while it is busy
  std::string session;        // who claimed it
  std::int32_t failures = 0;  // its last connects and requests that failed, in a row; 0 when it is healthy
};

class QueryWatch {
 public:
  // The instance must outlive its watch. While a watch exists, a waiting request looks for Cancel and calls OnWait
  // about ten times a second.
  explicit QueryWatch(clsQuery& query);
  ~QueryWatch();
  QueryWatch(const QueryWatch&) = delete;
  QueryWatch& operator=(const QueryWatch&) = delete;

  // Called on the thread of the instance while a request of it waits; may call Cancel. It must not raise.
  void OnWait(std::function<void(const RequestProgress&)> call);
  // From any thread and from a signal handler.
  RequestProgress Progress() const noexcept { return monitor_->Progress(); }
  // Ends the running request within a tenth of a second, or the next one at once where none runs: its method returns
  // its failure value. Holds until Resume. From any thread and from a signal handler.
  void Cancel() noexcept { monitor_->isCancelled = true; }
  void Resume() noexcept { monitor_->isCancelled = false; }
  bool IsCancelled() const noexcept { return monitor_->isCancelled; }

  // The outcome of the last request.
  const RequestOutcome& LastRequest() const noexcept { return monitor_->outcome; }
  // The first error that the last public method of the instance handled; number 0 without one. A result that cannot
  // tell success from failure, or a list that ended for want of memory, is judged by it: its number is 7 then.
  const HandledError& LastError() const noexcept;

  // The server table of the thread. Empty before RemoteHosts was assigned.
  std::vector<ServerState> Servers() const;
  // How this instance chooses among the servers, from its next request on and until it is set again, also without the
  // watch. ClaimedInOrder, which every instance starts with: a request claims the first free server. A connect may take
  // all the time of the request, and a server that refuses it stays busy for five minutes or more.
  // TriedLast: a connect gets an equal share of the remaining time for each server that could still be tried (at least
  // one second), after which the next server is tried. A server whose last connect or request failed (refused, timed
  // out, reset, closed early) is sick, which all instances of the thread know: for 30 seconds, doubled by each further
  // failure up to five minutes, it is claimed only when no healthy one is free, the one whose time ends first before
  // the others. After its time one request at once may claim it in its turn; an answer makes it healthy. A request that
  // was sent is never sent again: when it fails, it is the next one that goes to another server.
  void SetSickServers(SickServers policy) noexcept { monitor_->sickServers = policy; }

  // The instance uses this connection from now on, and closes it at its end; Init(False) leaves it alone. Null takes
  // the connection away without closing it.
  void UseDatabase(std::shared_ptr<Connection> connection);

  // For a child process after fork(): the calling thread starts anew, without query servers and connection slots. Its
  // instances are the parent's, whose connections they share: they must neither be used nor destroyed any more.
  static void ForgetParentProcess() noexcept;

  // Keeps the memory of a text that a method of the instance returned for the next such text; the content of text is
  // lost. Saves a host that reads long lists an allocation a row.
  static void ReuseText(clsQuery& query, Variant& text) noexcept;

 private:
  clsQuery& query_;
  const std::shared_ptr<RequestMonitor> monitor_;
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_COMPONENT_QUERY_WATCH_H_
