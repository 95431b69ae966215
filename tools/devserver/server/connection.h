// connection.h - one client's connection: collects the request or file, sends the answer, waits for the client to
// close. Never blocks; the server calls it when its socket is ready and when its deadline has passed.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_SERVER_CONNECTION_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_SERVER_CONNECTION_H_

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "tools/devserver/commands/reply.h"
#include "tools/devserver/content/descriptor.h"
#include "tools/devserver/protocol/misbehaviour.h"

namespace oxaqrycln::devserver {

using TimePoint = std::chrono::steady_clock::time_point;

// The limits of one connection.
struct Limits {
  std::size_t requestByteCount = 65536;
  std::size_t rowsByteCount = 2097152;          // of a request that holds rows
  std::chrono::milliseconds quiet{200};         // without bytes after an invalid request, until the error answer
  std::chrono::milliseconds shortQuiet{1000};   // likewise after a request with too few fields
  std::chrono::milliseconds idle{10000};        // without bytes inside a field, or without room to send
  std::chrono::milliseconds request{60000};     // from the connection to the end of the request text
  std::chrono::milliseconds upload{3600000};    // from there to the last byte of an uploaded file
  std::chrono::milliseconds linger{5000};       // for the client to close the connection after the answer
  std::chrono::milliseconds evictable{1000};    // without bytes, before a client may be dropped for a new one
  std::chrono::milliseconds misbehave{600000};  // for the client to give up on a server that never answers
};

// Answers a request text (see Service::Answer).
using Answerer = std::function<Reply(std::string_view request)>;

// An open socket that is closed when its owner ends.
class Socket : public Descriptor {
 public:
  using Descriptor::Descriptor;
  // Makes closing the socket reset the connection.
  void ResetOnClose() const noexcept;
};

class Connection {
 public:
  // Limits, answerer and misbehaviour must outlive the connection.
  Connection(Socket socket, const Limits& limits, const Answerer& answerer, const Misbehaviour& misbehaviour,
             TimePoint now);

  int descriptor() const noexcept { return socket_.get(); }
  bool closed() const noexcept { return state_ == State::kClosed; }
  TimePoint deadline() const noexcept { return deadline_; }
  TimePoint lastProgress() const noexcept { return lastProgress_; }
  // The poll events that the connection waits for, besides errors.
  short Events() const noexcept;

  void OnReady(short events, TimePoint now);
  void OnDeadline(TimePoint now);

 private:
  enum class State { kReading, kUploading, kDelayed, kWriting, kLingering, kHolding, kClosed };

  void Read(TimePoint now);
  void OnBytes(std::string_view bytes, TimePoint now);
  void Judge(bool quiet, TimePoint now);
  void BeginUpload(std::size_t textByteCount, TimePoint now);
  void TakeUpload(std::string_view bytes, TimePoint now);
  void Finish(Reply reply, TimePoint now);
  void Write(TimePoint now);
  bool Refill();
  void EndWriting(TimePoint now);
  std::size_t SendLimit() const noexcept;

  Socket socket_;
  const Limits& limits_;
  const Answerer& answerer_;
  const Misbehaviour& misbehaviour_;
  State state_ = State::kReading;
  TimePoint started_;
  TimePoint lastProgress_;
  TimePoint deadline_;
  bool peerEnded_ = false;
  std::string request_;
  std::unique_ptr<Upload> upload_;
  bool isRaw_ = false;
  std::unique_ptr<InputFile> file_;  // sent after the piece; included in totalByteCount_
  std::string piece_;                // the bytes being sent
  std::size_t pieceSent_ = 0;        // and how many have been sent
  std::size_t totalByteCount_ = 0;
  std::size_t sentByteCount_ = 0;
};

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_SERVER_CONNECTION_H_
