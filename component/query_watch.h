// query_watch.h - what a host (command line, language binding, portal) sees and controls of an instance beyond the
// class: progress, cancelling, outcomes, the server table, the database connection. Not for page authors.
// A watch belongs to the thread of its instance; only Cancel and Progress may be called from others.
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

namespace oxaqrycln {

struct WatchState;

enum class RequestResult : std::uint8_t {
  None,              // no request was made
  Succeeded,         // the whole answer arrived; for a text answer its status line reports success
  Refused,           // the server's status line reports an error, which is the text
  TimedOut,          // lngRequestTimeout passed
  ConnectionFailed,  // no server could be connected to, or the connection broke
  AllBusy,           // no server was free and none was tried
  Cancelled,
  Failed  // an error of the component itself
};

// One attempt to carry a request out.
struct ServerAttempt {
  std::string host;
  std::int32_t port = 0;
  std::string error;                      // "10061 - Connection is forcefully rejected"; "" without one
  std::chrono::milliseconds duration{0};  // from the claim of the server to the end of the attempt
};

struct RequestOutcome {
  RequestResult result = RequestResult::None;
  std::string text;                    // what went wrong, Windows-1252; "" on success
  std::vector<ServerAttempt> servers;  // in the order in which they were tried
  std::chrono::milliseconds duration{0};
  bool wasSent = false;  // some bytes of the request have reached a server's connection
};

// The first error that the last public method of the instance handled; number 0 without one. A result that cannot tell
// success from failure, or a list that ended for want of memory, is judged by it: number 7 then says "Out of memory".
struct MethodError {
  std::int32_t number = 0;
  std::string description;
};

// Bytes of the running request, or of the last one.
struct RequestProgress {
  std::int64_t sent = 0;
  std::int64_t received = 0;
  std::int64_t announced = 0;  // of the answer; 0 while that is unknown
};

struct ServerState {
  std::string host;
  std::int32_t port = 0;
  bool takesPrintRequests = true;
  bool isBusy = false;
  DateTime since;       // when it was claimed; valid while it is busy
  std::string session;  // who claimed it
};

// How a server is chosen whose last connect failed. The bare class claims the first free server of the list.
enum class SickServers : std::uint8_t { ClaimedInOrder, TriedLast };

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
  RequestProgress Progress() const noexcept;
  // Ends the running request within a tenth of a second, or the next one at once where none runs: its method returns
  // its failure value. Holds until Resume. From any thread and from a signal handler.
  void Cancel() noexcept;
  void Resume() noexcept;

  const RequestOutcome& LastRequest() const noexcept;
  const MethodError& LastError() const noexcept;

  // The server table of the thread. Empty before RemoteHosts was assigned.
  std::vector<ServerState> Servers() const;
  // For all instances of the thread, until it is set again.
  void SetSickServers(SickServers policy);

  // The instance uses this connection from now on, and closes it at its end; Init(False) leaves it alone. Null takes
  // the connection away without closing it.
  void UseDatabase(std::shared_ptr<Connection> connection);

 private:
  clsQuery& query_;
  const std::shared_ptr<WatchState> state_;
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_COMPONENT_QUERY_WATCH_H_
