#include "transport/request.h"

#include <chrono>
#include <utility>

#include "support/trap.h"
#include "transport/status_line.h"
#include "values/code_page.h"
#include "values/errors.h"

namespace oxaqrycln {
namespace {

constexpr std::string_view kSeparator =
    "--------------------------------------------------------------------------------";  // 80 dashes
constexpr std::string_view kAllBusy = "All query servers are currently busy";

// The steady time at which more second boundaries of the wall clock than allowed will have passed since now. Carried
// by the steady clock, so that a jump of the wall clock neither ends nor prolongs a request.
Clock::SteadyPoint Deadline(const Clock& clock, std::int32_t timeout) {
  return clock.SteadyNow() + std::chrono::seconds(std::int64_t{timeout} + 1) - clock.PassedOfSecond();
}

}  // namespace

// One request under way: gives back the flag, the socket and the claimed server however it ends.
class RequestExecution::Attempts {
 public:
  Attempts(RequestExecution& owner, const Message& message, std::string* errorText)
      : owner_(owner),
        message_(message),
        errorText_(errorText),
        servers_(owner.apartment_->servers),
        controls_(owner.apartment_->controls),
        socket_(controls_.Winsock(owner.slot_)),
        log_(owner.log_),
        sessionId_(owner.account_.sessionId),
        deadline_(Deadline(owner.apartment_->clock, owner.timeout_)) {
    owner_.running_ = true;
  }
  ~Attempts() {
    socket_.Close();
    if (server_ != 0) servers_.Release(server_);
    owner_.running_ = false;
  }
  Attempts(const Attempts&) = delete;
  Attempts& operator=(const Attempts&) = delete;

  bool Run() {
    controls_.StartReceiving(slot(), message_.receipt);
    const bool printOnly =
        message_.request && UpperCase(GetRequestField(*message_.request, 1)) == "GETSEGMENTPRINTFILE2";
    owner_.apartment_->loop.RunDueTimers();  // one frees a stale server, before the first claim
    RequireOwner();
    while (TryOneServer(printOnly)) {
    }
    socket_.Close();
    if (server_ != 0) {
      servers_.Release(server_);
      log_.Write(bytInfo, "Releasing server #", std::exchange(server_, std::int16_t{0}));
    }
    return controls_.BlnRequestReady(slot());
  }

 private:
  std::int32_t slot() const noexcept { return owner_.slot_; }
  // To be called after every yield, in which the host may have ended the instance.
  void RequireOwner() const {
    if (owner_.isAbandoned_) {
      throw RuntimeError(error::kObjectNotSet, "The instance has ended while its request was running");
    }
  }
  bool ExpiredNow() { return expired_ = expired_ || owner_.apartment_->clock.SteadyNow() >= deadline_; }
  void SetError(std::string text) {
    if (errorText_ != nullptr) *errorText_ = std::move(text);
  }

  // One attempt on one server; true when another one is to be made.
  bool TryOneServer(bool printOnly) {
    server_ = servers_.GetFreeServer(printOnly, sessionId_);
    RequireOwner();
    if (server_ == 0) {
      log_.Write(bytInfo, kAllBusy);
      SetError(std::string(kAllBusy));
      return false;
    }
    Connect();
    if (controls_.BlnWinsockError(slot())) {
      PassOver();
    } else if (expired_) {
      ReportTimeout();
    } else {
      Exchange();
    }
    ExpiredNow();
    owner_.apartment_->loop.RunReady();
    RequireOwner();
    return !controls_.BlnRequestReady(slot()) && !expired_ && !controls_.BlnWinsockError(slot());
  }

  void Connect() {
    const ServerEntry& server = servers_.At(server_);
    log_.Write(bytInfo, "Found free server #", server_, ": ", server.host, ":", server.port);
    if (socket_.State() != SocketState::Closed) {
      log_.Write(bytWarning,
                 "Closing still opened Winsock connection (current state: ", static_cast<int>(socket_.State()), ")");
      socket_.Close();
    }
    socket_.SetRemote(server.host, server.port, server.address);
    controls_.BlnWinsockError(slot(), false);
    socket_.Connect();
    while (socket_.State() != SocketState::Connected && !controls_.BlnWinsockError(slot()) && !ExpiredNow()) {
      owner_.apartment_->loop.RunUntil(deadline_);
      RequireOwner();
    }
  }

  // The connect failed: the server stays busy until the timer frees it, so that the next attempt takes another one.
  void PassOver() {
    const std::string error = controls_.StrWinsockError(slot());
    log_.Write(bytWarning, "Winsock error occured: ", error, " - trying to contact another server instance");
    SetError("Winsock Error (" + error + ")");
    servers_.At(server_).address.reset();
    server_ = 0;
    controls_.BlnWinsockError(slot(), false);
  }

  // Connected: sends the request, never a second time, and waits for the whole answer.
  void Exchange() {
    log_.Write(bytInfo, "Winsock connection established");
    servers_.At(server_).address = socket_.ConnectedAddress();
    Send();
    while (!controls_.BlnRequestReady(slot()) && !controls_.BlnWinsockError(slot()) && !ExpiredNow()) {
      owner_.apartment_->loop.RunUntil(deadline_);
      RequireOwner();
    }
    if (controls_.BlnWinsockError(slot())) {
      const std::string& error = controls_.StrWinsockError(slot());
      log_.Write(bytError, "Winsock error occured: ", error);
      SetError("Winsock Error (" + error + ")");
    } else if (!controls_.BlnRequestReady(slot())) {
      ReportTimeout();
    } else {
      owner_.response_ = controls_.TakeResponse(slot());
      log_.Write(bytInfo, "\r\nResponse received: \r\n", owner_.response_.View(), "\r\n");
    }
  }

  void Send() {
    if (!message_.request) return socket_.SendData({}, message_.data);
    std::string text = BuildRequestPre(server_, servers_, owner_.account_, log_);
    text.append(",").append(*message_.request);
    if (message_.data != nullptr) text.append("\r\n");
    socket_.SendData(text, message_.data);
  }

  void ReportTimeout() {
    socket_.StopReading();  // what comes now comes too late
    log_.Write(bytWarning, "Timeout occured - last Winsock state: ", static_cast<int>(socket_.State()));
    SetError("Timeout of " + std::to_string(owner_.timeout_) + " seconds occured while waiting for server response");
  }

  RequestExecution& owner_;
  const Message& message_;
  std::string* errorText_;
  ServerTable& servers_;
  frmControls& controls_;
  SocketControl& socket_;
  const SessionLog& log_;
  const std::string sessionId_;
  const Clock::SteadyPoint deadline_;
  std::int16_t server_ = 0;  // the server claimed for the attempt, 0 for none
  bool expired_ = false;
};

RequestExecution::RequestExecution(std::shared_ptr<Apartment> apartment, const std::int32_t& timeout,
                                   const Account& account, const SessionLog& log) noexcept
    : apartment_(std::move(apartment)), timeout_(timeout), account_(account), log_(log) {}

bool RequestExecution::Request(const Message& message, std::string* errorText) {
  return Trap(
      log_, "Request", false,
      [&](bool& result) {
        if (running_) {
          if (errorText != nullptr) *errorText = "Winsock Error (previous request not finished properly)";
          log_.Write(bytWarning, "Server request cancelled due to previous one still running");
          return;
        }
        if (slot_ == 0)
          throw RuntimeError(error::kObjectNotSet, "The instance has no connection slot; call Init first");
        result = Attempts(*this, message, errorText).Run();
      },
      [&](const RuntimeError& why) {
        if (errorText == nullptr) return;
        *errorText = "General processing error: " + std::to_string(why.number()) + " - " + why.description();
      });
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
        const auto start = DataStart(response.View(), errorText);
        if (!start) return;
        buffer.Assign(std::move(response), *start);
        result = true;
      },
      [&](const RuntimeError& why) {
        errorText = "General processing error: " + std::to_string(why.number()) + " - " + why.description();
      });
}

}  // namespace oxaqrycln
