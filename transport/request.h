// request.h - one request of an instance to a query server: claim, connect with fail-over, send, wait, release.
// Does not interpret the data lines of an answer. One per clsQuery.
#ifndef OXAQRYCLN_TRANSPORT_REQUEST_H_
#define OXAQRYCLN_TRANSPORT_REQUEST_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/byte_block.h"
#include "platform/net/send_source.h"
#include "support/response_buffer.h"
#include "transport/apartment.h"
#include "transport/request_monitor.h"
#include "transport/request_text.h"

namespace oxaqrycln {

class RequestExecution {
 public:
  // What is sent, and what comes back. A command part gets the request prefix of the server that was claimed; data
  // follows it unchanged, after a line end when both are given. With a receipt the answer is the bytes of a file, else
  // a text.
  struct Message {
    std::optional<std::string_view> request = {};
    SendSource* data = nullptr;
    std::optional<FileReceipt> receipt = {};
  };

  // timeout is the instance's lngRequestTimeout in seconds; it and the account refer to the instance's variables. The
  // log must live as long as this object.
  RequestExecution(std::shared_ptr<Apartment> apartment, const std::int32_t& timeout, const Account& account,
                   const SessionLog& log);

  Apartment& apartment() const noexcept { return *apartment_; }
  // The connection slot claimed for the instance; 0 before Init.
  std::int16_t slot() const noexcept { return slot_; }
  void UseSlot(std::int16_t slot) noexcept { slot_ = slot; }

  // True exactly when the whole answer has arrived; TakeResponse then gives it. errorText, when given, receives what
  // went wrong otherwise. Returns at the latest when the time-out has passed, all servers tried included.
  bool Request(const Message& message, std::string* errorText);
  // The position of the first data line in a text answer, after its status line. Nothing when the server reports an
  // error, which errorText then receives.
  std::optional<std::size_t> DataStart(std::string_view answer, std::string& errorText);
  ByteBlock TakeResponse() noexcept { return std::exchange(response_, ByteBlock()); }
  // The instance has ended. A request that is running ends with an error as soon as its yield returns, and reads none
  // of the instance's variables any more.
  void Abandon() noexcept { isAbandoned_ = true; }

  const std::shared_ptr<RequestMonitor>& monitor() const noexcept { return monitor_; }

 private:
  class Attempts;

  std::shared_ptr<Apartment> apartment_;
  const std::int32_t& timeout_;
  const Account account_;
  const SessionLog& log_;
  const std::shared_ptr<RequestMonitor> monitor_ = std::make_shared<RequestMonitor>();
  std::int16_t slot_ = 0;
  bool isRunning_ = false;
  bool isAbandoned_ = false;
  ByteBlock response_;
};

// Sends a command part and fills the buffer from a successful answer; the read position is then 0. On failure the
// buffer is empty, errorText says why, and the result is false.
bool InitBuffer(std::string_view request, RequestExecution& execution, const SessionLog& log, ResponseBuffer& buffer,
                std::string& errorText);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_TRANSPORT_REQUEST_H_
