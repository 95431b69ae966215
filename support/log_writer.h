// log_writer.h - lines of a session's log file. A line that cannot be written is lost; nothing is ever raised.
// Owns nothing: a SessionLog refers to the directory and session id of an instance or of a connection slot.
#ifndef OXAQRYCLN_SUPPORT_LOG_WRITER_H_
#define OXAQRYCLN_SUPPORT_LOG_WRITER_H_

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "platform/clock.h"
#include "values/errors.h"

namespace oxaqrycln {

// The level of a line, as pages pass it.
enum udtLogType : std::uint8_t { bytInfo = 1, bytWarning = 2, bytError = 3, bytExtended = 4 };

// An error that a handler has caught; number 0 for none.
struct HandledError {
  std::int32_t number = 0;
  std::string description;
};

class SessionLog {
 public:
  // firstError, when given, keeps the first error that was written since its number was last set to 0.
  SessionLog(const std::string& directory, const std::string& sessionId, const Clock& clock,
             HandledError* firstError = nullptr) noexcept
      : directory_(&directory), sessionId_(&sessionId), clock_(clock), firstError_(firstError) {}

  // Refers to other texts from now on.
  void ReferTo(const std::string& directory, const std::string& sessionId) noexcept {
    directory_ = &directory;
    sessionId_ = &sessionId;
  }
  const std::string& sessionId() const noexcept { return *sessionId_; }

  // False when the directory is empty, which means that nothing is logged.
  bool Active() const noexcept { return !directory_->empty(); }

  // One line made of the pieces: texts, and whole numbers in decimal. Costs nothing when the log is not active.
  template <typename... Pieces>
  void Write(int level, const Pieces&... pieces) const noexcept {
    if (!Active()) return;
    try {
      const std::array<std::string, sizeof...(Pieces)> numbers{Number(pieces)...};
      std::array<std::string_view, sizeof...(Pieces)> texts{Text(pieces)...};
      for (std::size_t i = 0; i < sizeof...(Pieces); ++i) {
        if (!numbers[i].empty()) texts[i] = numbers[i];
      }
      WriteLine(level, texts);
    } catch (...) {  // the line is lost
    }
  }

  // The line that every error handler writes.
  void WriteProcessingError(std::string_view routine, const RuntimeError& error) const noexcept;

 private:
  template <typename Piece>
  static std::string Number(const Piece& piece) {
    if constexpr (std::integral<Piece>) return std::to_string(piece);
    return {};
  }
  template <typename Piece>
  static std::string_view Text(const Piece& piece) {
    if constexpr (!std::integral<Piece>) return piece;
    return {};
  }
  void WriteLine(int level, std::span<const std::string_view> texts) const;

  const std::string* directory_;
  const std::string* sessionId_;
  const Clock& clock_;
  HandledError* const firstError_;
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_SUPPORT_LOG_WRITER_H_
