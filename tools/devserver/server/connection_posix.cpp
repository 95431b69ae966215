#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "tools/devserver/commands/commands.h"
#include "tools/devserver/protocol/request.h"
#include "tools/devserver/server/connection.h"
#include "tools/devserver/server/service.h"

namespace oxaqrycln::devserver {
namespace {

using Mode = Misbehaviour::Mode;

// The size of one read from the socket or from a file.
constexpr std::size_t kPieceByteCount = 65536;

std::optional<CommandShape> ShapeOfCommand(std::string_view name) {
  const Command* command = FindCommand(name);
  return command == nullptr ? std::nullopt : std::optional(command->shape);
}

bool WouldBlock(int number) { return number == EAGAIN || number == EWOULDBLOCK || number == EINTR; }

}  // namespace

void Socket::ResetOnClose() const noexcept {
  const linger option{1, 0};
  setsockopt(get(), SOL_SOCKET, SO_LINGER, &option, sizeof option);
}

Connection::Connection(Socket socket, const Limits& limits, const Answerer& answerer, const Misbehaviour& misbehaviour,
                       TimePoint now)
    : socket_(std::move(socket)),
      limits_(limits),
      answerer_(answerer),
      misbehaviour_(misbehaviour),
      started_(now),
      lastProgress_(now),
      deadline_(now + limits.idle) {
  if (misbehaviour_.mode == Mode::kNeverRead) {
    state_ = State::kHolding;
    deadline_ = now + limits_.misbehave;
  }
}

short Connection::Events() const noexcept {
  switch (state_) {
    case State::kReading:
    case State::kUploading:
    case State::kLingering:
      return POLLIN;
    case State::kHolding:
      // The only event that reports the client's end while its bytes stay unread.
      return misbehaviour_.mode == Mode::kNeverRead ? POLLRDHUP : POLLIN;
    case State::kWriting:
      return POLLOUT;
    case State::kDelayed:
    case State::kClosed:
      break;
  }
  return 0;
}

void Connection::OnReady(short events, TimePoint now) {
  if ((events & POLLIN) != 0) {
    Read(now);
  } else if ((events & POLLOUT) != 0) {
    Write(now);
  } else if (events != 0) {
    state_ = State::kClosed;
  }
}

void Connection::OnDeadline(TimePoint now) {
  switch (state_) {
    case State::kReading:
      Judge(true, now);
      break;
    case State::kUploading:
      Finish(ErrorAnswer(std::to_string(upload_->missing()) + " bytes of the file are missing"), now);
      break;
    case State::kDelayed:
      state_ = State::kWriting;
      Write(now);
      break;
    default:
      state_ = State::kClosed;
  }
}

void Connection::Read(TimePoint now) {
  std::array<char, kPieceByteCount> bytes;
  const ssize_t count = recv(socket_.get(), bytes.data(), bytes.size(), 0);
  if (count > 0) {
    // Bytes after the request are read and dropped: closing with unread bytes would reset the connection, and the
    // client could lose the answer.
    if (state_ == State::kReading) {
      OnBytes({bytes.data(), static_cast<std::size_t>(count)}, now);
    } else if (state_ == State::kUploading) {
      TakeUpload({bytes.data(), static_cast<std::size_t>(count)}, now);
    }
  } else if (count < 0 && WouldBlock(errno)) {
    return;
  } else if (count == 0 && state_ == State::kUploading) {
    peerEnded_ = true;
    OnDeadline(now);
  } else if (count < 0 || state_ != State::kReading || request_.empty()) {
    state_ = State::kClosed;
  } else {
    peerEnded_ = true;
    Judge(true, now);
  }
}

void Connection::OnBytes(std::string_view bytes, TimePoint now) {
  lastProgress_ = now;
  request_ += bytes;
  const std::string_view begin = std::string_view(request_).substr(0, limits_.requestByteCount);
  const RequestJudgement judged = JudgeRequest(begin, ShapeOfCommand);
  if (judged.state == RequestState::kBody) {
    BeginUpload(judged.textByteCount, now);
    return;
  }
  const std::size_t most = HoldsRows(begin, ShapeOfCommand) ? limits_.rowsByteCount : limits_.requestByteCount;
  if (request_.size() > most) {
    Finish(ErrorAnswer("The request is longer than " + std::to_string(most) + " bytes"), now);
    return;
  }
  deadline_ = std::min(now + limits_.quiet, started_ + limits_.request);
  // Only a caret can complete a request; anything else is judged when the client pauses.
  if (request_.back() == '^') Judge(false, now);
}

void Connection::BeginUpload(std::size_t textByteCount, TimePoint now) {
  Reply reply = answerer_(std::string_view(request_).substr(0, textByteCount));
  if (reply.upload == nullptr) {
    Finish(std::move(reply), now);
    return;
  }
  upload_ = std::move(reply.upload);
  state_ = State::kUploading;
  started_ = now;
  const std::string first = request_.substr(textByteCount + 2);
  TakeUpload(first, now);
}

void Connection::TakeUpload(std::string_view bytes, TimePoint now) {
  lastProgress_ = now;
  deadline_ = std::min(now + limits_.idle, started_ + limits_.upload);
  try {
    upload_->Take(bytes);
    if (upload_->missing() == 0) Finish(upload_->Finish(), now);
  } catch (const std::exception& error) {
    Finish(ErrorAnswer(error.what()), now);
  }
}

void Connection::Judge(bool quiet, TimePoint now) {
  const RequestState request = JudgeRequest(request_, ShapeOfCommand).state;
  if (request == RequestState::kComplete) {
    Finish(answerer_(request_), now);
    return;
  }
  if (!quiet) return;
  TimePoint patience = lastProgress_ + limits_.quiet;
  if (request == RequestState::kShort) patience = lastProgress_ + limits_.shortQuiet;
  if (request == RequestState::kPartial) patience = lastProgress_ + limits_.idle;
  deadline_ = std::min(patience, started_ + limits_.request);
  if (now < deadline_ && !peerEnded_) return;
  if (request_.empty()) {
    state_ = State::kClosed;
  } else {
    Finish(answerer_(request_), now);
  }
}

void Connection::Finish(Reply reply, TimePoint now) {
  upload_.reset();
  if (misbehaviour_.mode == Mode::kSilent) {
    state_ = State::kHolding;
    deadline_ = now + limits_.misbehave;
    return;
  }
  isRaw_ = reply.isRaw;
  file_ = std::move(reply.file);
  if (reply.upload != nullptr) reply.text = ErrorAnswer("CR LF and the file's bytes are missing");
  if (!isRaw_) piece_ = WireBytes(reply.text, misbehaviour_);
  totalByteCount_ = file_ == nullptr ? piece_.size() : static_cast<std::size_t>(file_->Size());
  if (misbehaviour_.mode == Mode::kDelay) {
    state_ = State::kDelayed;
    deadline_ = now + std::chrono::milliseconds(misbehaviour_.number);
    return;
  }
  state_ = State::kWriting;
  Write(now);
}

std::size_t Connection::SendLimit() const noexcept {
  const bool cuts = misbehaviour_.mode == Mode::kCut || misbehaviour_.mode == Mode::kReset;
  return cuts ? std::min<std::size_t>(totalByteCount_, misbehaviour_.number) : totalByteCount_;
}

// Reads the next piece of the file when the last one has been sent; false at the end of the file.
bool Connection::Refill() {
  if (pieceSent_ < piece_.size()) return true;
  if (file_ == nullptr) return false;
  try {
    piece_.resize(kPieceByteCount);
    piece_.resize(file_->Read(piece_.data(), piece_.size()));
    pieceSent_ = 0;
  } catch (const std::exception&) {
    return false;
  }
  return !piece_.empty();
}

void Connection::Write(TimePoint now) {
  const bool bytewise = misbehaviour_.mode == Mode::kBytewise;
  if (sentByteCount_ < SendLimit()) {
    if (!Refill()) {  // the file was truncated; the client must not take it for complete
      socket_.ResetOnClose();
      state_ = State::kClosed;
      return;
    }
    const std::size_t rest = std::min(SendLimit() - sentByteCount_, piece_.size() - pieceSent_);
    const ssize_t count =
        send(socket_.get(), piece_.data() + pieceSent_, bytewise ? 1 : rest, MSG_NOSIGNAL | MSG_DONTWAIT);
    if (count < 0 && !WouldBlock(errno)) {
      state_ = State::kClosed;
      return;
    }
    if (count > 0) {
      pieceSent_ += static_cast<std::size_t>(count);
      sentByteCount_ += static_cast<std::size_t>(count);
      lastProgress_ = now;
    }
  }
  if (sentByteCount_ == SendLimit()) {
    EndWriting(now);
  } else if (bytewise && misbehaviour_.number > 0) {
    state_ = State::kDelayed;
    deadline_ = now + std::chrono::milliseconds(misbehaviour_.number);
  } else {
    deadline_ = lastProgress_ + limits_.idle;
  }
}

void Connection::EndWriting(TimePoint now) {
  // An orderly end without a byte would look like an empty file.
  const bool resets = misbehaviour_.mode == Mode::kReset || (isRaw_ && file_ == nullptr);
  if (resets) socket_.ResetOnClose();
  if (resets || peerEnded_) {
    state_ = State::kClosed;
    return;
  }
  if (misbehaviour_.mode == Mode::kCut || isRaw_) shutdown(socket_.get(), SHUT_WR);
  state_ = State::kLingering;
  deadline_ = now + limits_.linger;
}

}  // namespace oxaqrycln::devserver
