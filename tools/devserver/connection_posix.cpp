#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "tools/devserver/commands.h"
#include "tools/devserver/connection.h"
#include "tools/devserver/request.h"
#include "tools/devserver/service.h"

namespace oxaqrycln::devserver {
namespace {

using Mode = Misbehaviour::Mode;

std::optional<std::size_t> CommandParameterCount(std::string_view name) {
  const Command* command = FindCommand(name);
  return command == nullptr ? std::nullopt : std::optional(command->parameterCount);
}

bool WouldBlock(int number) { return number == EAGAIN || number == EWOULDBLOCK || number == EINTR; }

}  // namespace

Socket::~Socket() {
  if (descriptor_ >= 0) close(descriptor_);
}

void Socket::ResetOnClose() const noexcept {
  const linger option{1, 0};
  setsockopt(descriptor_, SOL_SOCKET, SO_LINGER, &option, sizeof option);
}

Connection::Connection(Socket socket, const Limits& limits, const Answerer& answerer, Misbehaviour misbehaviour,
                       TimePoint now)
    : socket_(std::move(socket)),
      limits_(limits),
      answerer_(answerer),
      misbehaviour_(std::move(misbehaviour)),
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
    case State::kLingering:
      return POLLIN;
    case State::kHolding:
      // The end of a client whose bytes stay unread shows in no other event.
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
    case State::kDelayed:
      state_ = State::kWriting;
      Write(now);
      break;
    default:
      state_ = State::kClosed;
  }
}

void Connection::Read(TimePoint now) {
  std::array<char, 16384> bytes;
  const ssize_t count = recv(socket_.get(), bytes.data(), bytes.size(), 0);
  if (count > 0) {
    // What comes behind the request is read and dropped: closing on unread bytes would reset the answer away.
    if (state_ == State::kReading) OnBytes({bytes.data(), static_cast<std::size_t>(count)}, now);
  } else if (count < 0 && WouldBlock(errno)) {
    return;
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
  if (request_.size() > limits_.requestByteCount) {
    Finish(ErrorAnswer("The request is longer than " + std::to_string(limits_.requestByteCount) + " bytes"), now);
    return;
  }
  deadline_ = std::min(now + limits_.quiet, started_ + limits_.request);
  // Only a closing caret can end a request; the longer look waits for a pause.
  if (request_.back() == '^') Judge(false, now);
}

void Connection::Judge(bool quiet, TimePoint now) {
  const RequestState request = JudgeRequest(request_, CommandParameterCount);
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

void Connection::Finish(const std::string& answer, TimePoint now) {
  if (misbehaviour_.mode == Mode::kSilent) {
    state_ = State::kHolding;
    deadline_ = now + limits_.misbehave;
    return;
  }
  answer_ = WireBytes(answer, misbehaviour_);
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
  return cuts ? std::min<std::size_t>(answer_.size(), misbehaviour_.number) : answer_.size();
}

void Connection::Write(TimePoint now) {
  const bool bytewise = misbehaviour_.mode == Mode::kBytewise;
  const std::size_t rest = SendLimit() - sentByteCount_;
  if (rest > 0) {
    const ssize_t count =
        send(socket_.get(), answer_.data() + sentByteCount_, bytewise ? 1 : rest, MSG_NOSIGNAL | MSG_DONTWAIT);
    if (count < 0 && !WouldBlock(errno)) {
      state_ = State::kClosed;
      return;
    }
    if (count > 0) {
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
  if (misbehaviour_.mode == Mode::kReset) socket_.ResetOnClose();
  if (misbehaviour_.mode == Mode::kReset || peerEnded_) {
    state_ = State::kClosed;
    return;
  }
  if (misbehaviour_.mode == Mode::kCut) shutdown(socket_.get(), SHUT_WR);
  state_ = State::kLingering;
  deadline_ = now + limits_.linger;
}

}  // namespace oxaqrycln::devserver
