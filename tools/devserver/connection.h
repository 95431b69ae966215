// connection.h - one client's connection: collects the request, sends the answer, waits for the client to close.
// Never blocks; the server tells it when its socket is ready and when its deadline has passed.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_CONNECTION_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_CONNECTION_H_

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "tools/devserver/misbehaviour.h"

namespace oxaqrycln::devserver {

using TimePoint = std::chrono::steady_clock::time_point;

// What a client may take. Every span ends a wait of one connection and of no other.
struct Limits {
  std::size_t requestByteCount = 65536;
  std::chrono::milliseconds quiet{200};         // no bytes behind what can be no request: answer with an error
  std::chrono::milliseconds shortQuiet{1000};   // no bytes behind a request with too few fields: likewise
  std::chrono::milliseconds idle{10000};        // no bytes inside a field, or no room for the answer
  std::chrono::milliseconds request{60000};     // from the connection to the end of its request
  std::chrono::milliseconds linger{5000};       // for the client to close after the answer
  std::chrono::milliseconds misbehave{600000};  // for the client to leave a server that will never answer
};

// Answers a request text (see Service::Answer).
using Answerer = std::function<std::string(std::string_view request)>;

// An open socket, closed with its owner.
class Socket {
 public:
  explicit Socket(int descriptor = -1) noexcept : descriptor_(descriptor) {}
  Socket(Socket&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  Socket& operator=(Socket&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  ~Socket();

  int get() const noexcept { return descriptor_; }
  // Makes the closing of the socket a reset.
  void ResetOnClose() const noexcept;

 private:
  int descriptor_;
};

class Connection {
 public:
  // The limits and the answerer must outlive the connection.
  Connection(Socket socket, const Limits& limits, const Answerer& answerer, Misbehaviour misbehaviour, TimePoint now);

  int descriptor() const noexcept { return socket_.get(); }
  bool closed() const noexcept { return state_ == State::kClosed; }
  TimePoint deadline() const noexcept { return deadline_; }
  TimePoint lastProgress() const noexcept { return lastProgress_; }
  // The poll events that the connection waits for.
  short Events() const noexcept;

  void OnReady(short events, TimePoint now);
  void OnDeadline(TimePoint now);

 private:
  enum class State { kReading, kDelayed, kWriting, kLingering, kHolding, kClosed };

  void Read(TimePoint now);
  void OnBytes(std::string_view bytes, TimePoint now);
  void Judge(bool quiet, TimePoint now);
  void Finish(const std::string& answer, TimePoint now);
  void Write(TimePoint now);
  void EndWriting(TimePoint now);
  std::size_t SendLimit() const noexcept;

  Socket socket_;
  const Limits& limits_;
  const Answerer& answerer_;
  Misbehaviour misbehaviour_;
  State state_ = State::kReading;
  TimePoint started_;
  TimePoint lastProgress_;
  TimePoint deadline_;
  bool peerEnded_ = false;
  std::string request_;
  std::string answer_;
  std::size_t sentByteCount_ = 0;
};

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_CONNECTION_H_
