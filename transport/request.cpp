#include "transport/request.h"

#include <algorithm>
#include <chrono>
#include <utility>
#include <vector>

#include "platform/net/socket_errors.h"
#include "support/trap.h"
#include "transport/connection_slot.h"
#include "values/code_page.h"
#include "values/errors.h"
#include "values/text_parts.h"

namespace oxaqrycln {
namespace {

constexpr std::string_view kSeparator =
    "--------------------------------------------------------------------------------";  // 80 dashes
constexpr std::string_view kSuccess = "Status: OK";
constexpr std::size_t kStatusWord = 7;  // characters of "Status:"
constexpr std::string_view kAllBusy = "All query servers are currently busy";
constexpr std::string_view kCancelled = "Request cancelled";
// How often a waiting request reports to its watches.
constexpr std::chrono::milliseconds kWatchInterval(100);
// What a connect gets at least while another server could be tried.
constexpr std::chrono::seconds kShortestConnect(1);

// The steady time at which more second boundaries of the wall clock than allowed will have passed since now. Carried
// by the steady clock, so that a jump of the wall clock neither ends nor prolongs a request.
Clock::SteadyPoint Deadline(const Clock& clock, std::int32_t timeout) {
  return clock.SteadyNow() + std::chrono::seconds(std::int64_t{timeout} + 1) - clock.PassedOfSecond();
}

std::chrono::milliseconds Milliseconds(Clock::Duration duration) {
  return std::chrono::duration_cast<std::chrono::milliseconds>(duration);
}

std::string ProcessingError(const RuntimeError& why) {
  return "General processing error: " + std::to_string(why.number()) + " - " + why.description();
}

}  // namespace

// One request under way: gives back the flag, the socket and the claimed server however it ends.
class RequestExecution::Attempts {
 public:
  Attempts(RequestExecution& owner, const Message& message, std::string* errorText)
      : owner_(owner),
        message_(message),
        errorText_(errorText),
        loop_(owner.apartment_->loop),
        clock_(owner.apartment_->clock),
        servers_(owner.apartment_->servers),
        slot_(owner.apartment_->controls.Slot(owner.slot_)),
        log_(owner.log_),
        monitor_(*owner.monitor_),
        sessionId_(owner.account_.sessionId),
        triesSickLast_(monitor_.sickServers == SickServers::TriedLast),
        start_(clock_.SteadyNow()),
        deadline_(Deadline(clock_, owner.timeout_)) {
    owner_.isRunning_ = true;
  }
  ~Attempts() {
    CountBytes();
    slot_.socket.Close();
    if (server_ != 0) servers_.Release(server_);
    owner_.isRunning_ = false;
    monitor_.outcome.duration = Milliseconds(clock_.SteadyNow() - start_);
  }
  Attempts(const Attempts&) = delete;
  Attempts& operator=(const Attempts&) = delete;

  bool Run() {
    slot_.StartReceiving(message_.receipt);
    printOnly_ = message_.request && UpperCase(GetRequestField(*message_.request, 1)) == "GETSEGMENTPRINTFILE2";
    loop_.RunDueTimers();  // one frees a stale server, before the first claim
    RequireOwner();
    Attempt attempt = Attempt::NextServer;
    while (attempt == Attempt::NextServer) attempt = TryOneServer();
    slot_.socket.Close();
    if (server_ != 0) {
      servers_.Release(server_);
      log_.Write(bytInfo, "Releasing server #", std::exchange(server_, std::int16_t{0}));
    }
    return attempt == Attempt::Answered;
  }

 private:
  enum class Attempt { NextServer, Answered, Failed };

  // To be called after every yield, since the host may have ended the instance inside it.
  void RequireOwner() const {
    if (owner_.isAbandoned_) {
      throw RuntimeError(error::kObjectNotSet, "The instance has ended while its request was running");
    }
  }
  bool IsExpired() const { return clock_.SteadyNow() >= deadline_; }
  Attempt Fail(RequestResult result, std::string text) {
    monitor_.outcome.result = result;
    monitor_.outcome.text = text;
    if (errorText_ != nullptr) *errorText_ = std::move(text);
    return Attempt::Failed;
  }

  // One attempt on one server.
  Attempt TryOneServer() {
    if (monitor_.isCancelled) return Cancel();
    server_ = triesSickLast_ ? servers_.GetHealthyServer(printOnly_, sessionId_, tried_)
                             : servers_.GetFreeServer(printOnly_, sessionId_);
    RequireOwner();
    if (server_ == 0 && !tried_.empty()) return Attempt::Failed;  // with the error of the last connect
    if (server_ == 0) {
      log_.Write(bytInfo, kAllBusy);
      const bool anyTried = !monitor_.outcome.servers.empty();
      return Fail(anyTried ? RequestResult::ConnectionFailed : RequestResult::AllBusy, std::string(kAllBusy));
    }
    const Clock::SteadyPoint start = clock_.SteadyNow();
    const ServerEntry& server = servers_.At(server_);
    monitor_.outcome.servers.push_back({server.host, server.port, {}, {}});
    Attempt attempt = Connect();
    if (attempt == Attempt::Answered) attempt = Exchange();
    ServerAttempt& tried = monitor_.outcome.servers.back();
    if (slot_.socketError) tried.error = slot_.socketErrorText;
    tried.duration = Milliseconds(clock_.SteadyNow() - start);
    slot_.socketError = false;
    const bool goesOn = attempt == Attempt::NextServer && !IsExpired();
    loop_.RunReady();
    RequireOwner();
    return goesOn || attempt != Attempt::NextServer ? attempt : Attempt::Failed;
  }

  // Answered once the connection is established.
  Attempt Connect() {
    const ServerEntry& server = servers_.At(server_);
    log_.Write(bytInfo, "Found free server #", server_, ": ", server.host, ":", server.port);
    SocketControl& socket = slot_.socket;
    if (socket.State() != SocketState::Closed) {
      log_.Write(bytWarning,
                 "Closing still opened Winsock connection (current state: ", static_cast<int>(socket.State()), ")");
      socket.Close();
    }
    socket.SetRemote(server.host, server.port, server.address);
    slot_.socketError = false;
    const Clock::SteadyPoint latest = ConnectDeadline();
    socket.Connect();
    const bool inTime = WaitFor([&] { return socket.State() == SocketState::Connected; }, latest);
    if (!inTime && !monitor_.isCancelled && !IsExpired()) socket.Fail(socket_error::kConnectTimedOut);
    if (slot_.socketError) return PassOver();
    if (monitor_.isCancelled) return Cancel();
    return inTime ? Attempt::Answered : TimeOut();
  }

  // Where sick servers are tried last, a connect gets an equal share of the time that remains for it and the servers
  // that could be tried after it; else the whole time.
  Clock::SteadyPoint ConnectDeadline() const {
    if (!triesSickLast_) return deadline_;
    const Clock::SteadyPoint now = clock_.SteadyNow();
    const Clock::Duration share = (deadline_ - now) / (1 + servers_.FreeCount(printOnly_, tried_));
    return std::min(deadline_, now + std::max<Clock::Duration>(share, kShortestConnect));
  }

  // Runs events until done() or an error of the socket. False when the latest time has passed or the host cancelled
  // first.
  template <typename Done>
  bool WaitFor(Done&& done, Clock::SteadyPoint latest) {
    while (!done() && !slot_.socketError) {
      const Clock::SteadyPoint now = clock_.SteadyNow();
      if (now >= latest || monitor_.isCancelled) return false;
      if (monitor_.watchCount == 0) {
        loop_.RunUntil(latest);
      } else {
        if (now >= nextReport_) Report(now);
        loop_.RunUntil(std::min(latest, nextReport_));
      }
      RequireOwner();
    }
    return true;
  }

  void CountBytes() noexcept {
    monitor_.sent = slot_.socket.SentByteCount();
    monitor_.received = slot_.bytesReceived;
    monitor_.announced = slot_.bytesToReceive;
  }

  void Report(Clock::SteadyPoint now) {
    nextReport_ = now + kWatchInterval;
    CountBytes();
    if (monitor_.onWait) monitor_.onWait(monitor_.Progress());
  }

  // The server is at fault that the attempt failed.
  void RecordFailure() {
    const Clock::Duration time = servers_.RecordFailure(server_);
    if (!triesSickLast_) return;
    servers_.At(server_).address.reset();  // it may have moved
    log_.Write(bytInfo, "Server #", server_, " is tried last for ",
               std::chrono::duration_cast<std::chrono::seconds>(time).count(), " seconds");
  }

  // The connect failed. The server stays busy until the timer frees it, so that the next attempt takes another one.
  // Where sick servers are tried last, it is free at once, but not for this request.
  Attempt PassOver() {
    const std::string& error = slot_.socketErrorText;
    log_.Write(bytWarning, "Winsock error occured: ", error, " - trying to contact another server instance");
    Fail(RequestResult::ConnectionFailed, "Winsock Error (" + error + ")");
    servers_.At(server_).address.reset();
    RecordFailure();
    if (triesSickLast_) {
      tried_.push_back(server_);
      servers_.Release(server_);
    }
    server_ = 0;
    return Attempt::NextServer;
  }

  // Connected: sends the request, never a second time, and waits for the whole answer.
  Attempt Exchange() {
    log_.Write(bytInfo, "Winsock connection established");
    servers_.At(server_).address = slot_.socket.ConnectedAddress();
    monitor_.outcome.wasSent = true;
    Send();
    const bool inTime = WaitFor([&] { return slot_.requestReady; }, deadline_);
    if (slot_.socketError) {
      log_.Write(bytError, "Winsock error occured: ", slot_.socketErrorText);
      if (IsSocketError(slot_.socketErrorNumber)) RecordFailure();
      return Fail(RequestResult::ConnectionFailed, "Winsock Error (" + slot_.socketErrorText + ")");
    }
    if (!inTime) return monitor_.isCancelled ? Cancel() : TimeOut();
    servers_.RecordSuccess(server_);
    owner_.response_ = std::exchange(slot_.response, ByteBlock());
    log_.Write(bytInfo, "\r\nResponse received: \r\n", owner_.response_.View(), "\r\n");
    monitor_.outcome.result = RequestResult::Succeeded;
    monitor_.outcome.text.clear();
    return Attempt::Answered;
  }

  void Send() {
    if (!message_.request) return slot_.socket.SendData({}, message_.data);
    std::string text = BuildRequestPre(server_, servers_, owner_.account_, log_);
    text.append(",").append(*message_.request);
    if (message_.data != nullptr) text.append("\r\n");
    slot_.socket.SendData(text, message_.data);
  }

  Attempt TimeOut() {
    slot_.socket.StopReading();  // what arrives now is too late
    log_.Write(bytWarning, "Timeout occured - last Winsock state: ", static_cast<int>(slot_.socket.State()));
    RecordFailure();
    return Fail(RequestResult::TimedOut,
                "Timeout of " + std::to_string(owner_.timeout_) + " seconds occured while waiting for server response");
  }

  Attempt Cancel() {
    slot_.socket.StopReading();
    log_.Write(bytWarning, kCancelled);
    return Fail(RequestResult::Cancelled, std::string(kCancelled));
  }

  RequestExecution& owner_;
  const Message& message_;
  std::string* errorText_;
  EventLoop& loop_;
  const Clock& clock_;
  ServerTable& servers_;
  ConnectionSlot& slot_;
  const SessionLog& log_;
  RequestMonitor& monitor_;
  const std::string sessionId_;
  const bool triesSickLast_;
  const Clock::SteadyPoint start_;
  const Clock::SteadyPoint deadline_;
  Clock::SteadyPoint nextReport_{};
  bool printOnly_ = false;
  std::int16_t server_ = 0;          // the server claimed for the attempt, 0 for none
  std::vector<std::int16_t> tried_;  // with triesSickLast_: those that could not be connected to
};

RequestExecution::RequestExecution(std::shared_ptr<Apartment> apartment, const std::int32_t& timeout,
                                   const Account& account, const SessionLog& log)
    : apartment_(std::move(apartment)), timeout_(timeout), account_(account), log_(log) {}

bool RequestExecution::Request(const Message& message, std::string* errorText) {
  return Trap(
      log_, "Request", false,
      [&](bool& result) {
        if (isRunning_) {
          if (errorText != nullptr) *errorText = "Winsock Error (previous request not finished properly)";
          log_.Write(bytWarning, "Server request cancelled due to previous one still running");
          return;
        }
        monitor_->Begin();
        if (slot_ == 0) {
          throw RuntimeError(error::kObjectNotSet, "The instance has no connection slot; call Init first");
        }
        result = Attempts(*this, message, errorText).Run();
      },
      [&](const RuntimeError& why) {
        monitor_->outcome.result = RequestResult::Failed;
        monitor_->outcome.text = ProcessingError(why);
        if (errorText != nullptr) *errorText = ProcessingError(why);
      });
}

std::optional<std::size_t> RequestExecution::DataStart(std::string_view answer, std::string& errorText) {
  const std::size_t lineEnd = answer.find(kLineEnd);
  const std::string_view status = answer.substr(0, lineEnd);
  if (status == kSuccess)
    return std::min(answer.size(), lineEnd == std::string_view::npos ? lineEnd : lineEnd + kLineEnd.size());
  errorText = Trimmed(status.substr(std::min(kStatusWord, status.size())));
  monitor_->outcome.result = RequestResult::Refused;
  monitor_->outcome.text = errorText;
  return std::nullopt;
}

bool InitBuffer(std::string_view request, RequestExecution& execution, const SessionLog& log, ResponseBuffer& buffer,
                std::string& errorText) {
  return Trap(
      log, "InitBuffer", false,
      [&](bool& result) {
        buffer.Clear();
        log.Write(bytInfo, kSeparator);
        log.Write(bytInfo, "Processing request: ", request);
        if (!execution.Request({.request = request}, &errorText)) return;
        ByteBlock response = execution.TakeResponse();
        const auto start = execution.DataStart(response.View(), errorText);
        if (!start) return;
        buffer.Assign(std::move(response), *start);
        result = true;
      },
      [&](const RuntimeError& why) { errorText = ProcessingError(why); });
}

}  // namespace oxaqrycln
