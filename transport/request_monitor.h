// request_monitor.h - the progress and outcome of an instance's requests, for hosts, the flag that cancels them, and
// how they choose a server. One per clsQuery, shared with its watches.
#ifndef OXAQRYCLN_TRANSPORT_REQUEST_MONITOR_H_
#define OXAQRYCLN_TRANSPORT_REQUEST_MONITOR_H_

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace oxaqrycln {

enum class RequestResult : std::uint8_t {
  None,              // no request was made
  Succeeded,         // the whole answer arrived; the status line of a text answer reports success
  Refused,           // the server's status line reports an error, which is the text
  TimedOut,          // lngRequestTimeout passed
  ConnectionFailed,  // no server could be connected to, or the connection broke
  AllBusy,           // no server was free, and none was tried
  Cancelled,
  Failed  // an error of the component itself
};

// How the requests of an instance choose among its servers. ClaimedInOrder claims the first free one, whatever became
// of earlier requests to it. TriedLast limits each connect and passes over servers that failed; see QueryWatch.
enum class SickServers : std::uint8_t { ClaimedInOrder, TriedLast };

// One attempt to carry a request out.
struct ServerAttempt {
  std::string host;
  std::int32_t port = 0;
  std::string error;                      // "10061 - ...", as in the log; "" without one
  std::chrono::milliseconds duration{0};  // from the claim of the server to the end of the attempt
};

struct RequestOutcome {
  std::int64_t number = 0;  // of the request, counted from 1; 0 before the first one
  RequestResult result = RequestResult::None;
  std::string text;                    // what went wrong, Windows-1252; "" on success
  std::vector<ServerAttempt> servers;  // in the order in which they were tried
  std::chrono::milliseconds duration{0};
  bool wasSent = false;  // the request was handed to a server's connection, and may have been carried out
};

// Bytes of the running request, or of the last one.
struct RequestProgress {
  std::int64_t sent = 0;
  std::int64_t received = 0;
  std::int64_t announced = 0;  // of the answer; 0 while that is unknown
};

struct RequestMonitor {
  RequestOutcome outcome;
  std::function<void(const RequestProgress&)> onWait;
  int watchCount = 0;  // without a watch a request waits in one piece
  SickServers sickServers = SickServers::ClaimedInOrder;
  std::atomic<bool> isCancelled = false;
  std::atomic<std::int64_t> sent = 0;
  std::atomic<std::int64_t> received = 0;
  std::atomic<std::int64_t> announced = 0;

  RequestProgress Progress() const noexcept { return {sent, received, announced}; }
  // Forgets the last request. A request has failed until it says otherwise.
  void Begin() noexcept {
    ++outcome.number;
    outcome.result = RequestResult::Failed;
    outcome.text.clear();
    outcome.servers.clear();
    outcome.duration = std::chrono::milliseconds(0);
    outcome.wasSent = false;
    sent = received = announced = 0;
  }
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_TRANSPORT_REQUEST_MONITOR_H_
