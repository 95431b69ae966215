// errors.h - what the client layer raises: one exception type for each kind of failure, so that a page decides by the
// type and never by a text.
#ifndef OXAQRYCLN_CLIENT_ERRORS_H_
#define OXAQRYCLN_CLIENT_ERRORS_H_

#include <chrono>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace oxaqrycln::client {

// One attempt to carry a request out.
struct Attempt {
  std::string host;
  std::int32_t port = 0;
  std::string error;  // "10061 - ...", "no answer", "cancelled", ..., UTF-8; "" when the server answered
  std::chrono::milliseconds duration{0};
};

// What became of a request. Empty for an error that came before any request.
struct RequestReport {
  std::vector<Attempt> attempts;  // in the order in which the servers were tried
  std::chrono::milliseconds duration{0};
  bool wasSent = false;  // a server may have carried the request out
};

// The base of all of them, and itself an error of the component: an answer that cannot be read, a file that cannot be
// written, no memory. what() is UTF-8; for Refused it is the server's own text.
class Error : public std::runtime_error {
 public:
  explicit Error(const std::string& text, RequestReport request = {})
      : std::runtime_error(text), request_(std::move(request)) {}
  const RequestReport& request() const noexcept { return request_; }

 private:
  RequestReport request_;
};

// The server reports that it does not carry the request out.
class Refused : public Error {
  using Error::Error;
};
// Settings::timeout has passed.
class TimedOut : public Error {
  using Error::Error;
};
// No server could be reached, or the connection broke.
class ConnectionFailed : public Error {
  using Error::Error;
};
// All servers are in use by other requests of this thread, and none was tried.
class AllServersBusy : public Error {
  using Error::Error;
};
// Archive::Cancel was called.
class Cancelled : public Error {
  using Error::Error;
};
// A value that cannot be sent, or settings that do not fit. Raised before any request.
class BadArgument : public Error {
  using Error::Error;
};
// The web user database cannot be opened, or refused a statement.
class DatabaseFailed : public Error {
  using Error::Error;
};

}  // namespace oxaqrycln::client

#endif  // OXAQRYCLN_CLIENT_ERRORS_H_
