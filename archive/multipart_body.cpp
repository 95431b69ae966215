#include "archive/multipart_body.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

#include "values/code_page.h"
#include "values/errors.h"
#include "values/text_parts.h"

namespace oxaqrycln {
namespace {

constexpr std::string_view kHeaderEnd = "\r\n\r\n";
constexpr std::size_t kLongestBoundary = 1024;
constexpr std::size_t kLongestHeader = 65536;

[[noreturn]] void Refuse(const char* why) { throw RuntimeError(error::kInvalidProcedureCall, why); }

// The value of the parameter "filename" in a line of a header, quoted or not; nothing if the line has none. Other
// quoted texts are skipped. A backslash escapes nothing, because clients send whole paths.
std::optional<std::string_view> FileNameIn(std::string_view line) {
  constexpr std::string_view kParameter = "FILENAME=";
  bool quoted = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '"') quoted = !quoted;
    const bool begins = i > 0 && (line[i - 1] == ';' || line[i - 1] == ' ' || line[i - 1] == '\t');
    if (quoted || !begins || UpperCase(line.substr(i, kParameter.size())) != kParameter) continue;
    const std::string_view value = line.substr(i + kParameter.size());
    if (!value.starts_with('"')) return value.substr(0, value.find_first_of("; \t"));
    const std::size_t end = value.find('"', 1);
    if (end == std::string_view::npos) Refuse("The file name of a form has no closing quote");
    return value.substr(1, end - 1);
  }
  return std::nullopt;
}

std::string_view FileName(std::string_view header) {
  for (std::size_t start = 0; start < header.size();) {
    const std::size_t end = std::min(header.find(kLineEnd, start), header.size());
    if (const auto name = FileNameIn(header.substr(start, end - start))) return *name;
    start = end + kLineEnd.size();
  }
  return {};
}

}  // namespace

void MultipartBody::Take(std::string_view piece) {
  if (HasFile() || state_ == State::BodyEnded) return;
  rest_.erase(0, std::exchange(taken_, 0));
  rest_.append(piece);
  for (bool more = true; more;) {
    switch (state_) {
      case State::Boundary:
        more = TakeBoundary();
        break;
      case State::Header:
        more = TakeHeader();
        break;
      case State::Content:
        more = TakeContent();
        break;
      case State::FileEnded:
      case State::BodyEnded:
        rest_.clear();
        taken_ = 0;
        return;
    }
  }
}

// The first line of the body is the boundary. Every later one has a line end before it, which the delimiter includes.
bool MultipartBody::TakeBoundary() {
  const std::string_view rest = Rest();
  const std::size_t end = rest.find(kLineEnd);
  if (end == std::string::npos && rest.size() < kLongestBoundary + kLineEnd.size()) return false;
  if (end == 0 || end > kLongestBoundary)
    Refuse("The body of the request is not a form: it does not begin with a boundary");
  delimiter_ = std::string(kLineEnd).append(rest.substr(0, end));
  taken_ += end;
  state_ = State::Header;
  return true;
}

// From the line end of the boundary line to the empty line.
bool MultipartBody::TakeHeader() {
  const std::string_view rest = Rest();
  const std::size_t end = rest.substr(0, kLongestHeader + kHeaderEnd.size()).find(kHeaderEnd);
  if (end == std::string::npos && rest.size() < kLongestHeader + kHeaderEnd.size()) return false;
  if (end > kLongestHeader) Refuse("The header of a part of the form has no end");
  const std::string_view name = FileName(rest.substr(0, end));
  inFile_ = !name.empty() && sink_.Begin(name);
  taken_ += end + kHeaderEnd.size();
  state_ = State::Content;
  return true;
}

// Content ends at a delimiter that is followed by a line end or, after the last part, by "--". A delimiter that is
// followed by anything else is content.
bool MultipartBody::TakeContent() {
  const std::string_view rest = Rest();
  for (std::size_t at = rest.find(delimiter_); at != std::string_view::npos; at = rest.find(delimiter_, at + 1)) {
    const std::string_view behind = rest.substr(at + delimiter_.size(), 2);
    const bool isLast = behind == "--";
    if (behind.size() == 2 && !isLast && behind != kLineEnd) continue;
    HandOver(at);
    if (behind.size() < 2) return false;
    taken_ += delimiter_.size();
    const State afterPart = isLast ? State::BodyEnded : State::Header;
    state_ = inFile_ ? State::FileEnded : afterPart;
    return true;
  }
  // The last bytes may be the start of a delimiter.
  HandOver(rest.size() - std::min(rest.size(), delimiter_.size() - 1));
  return false;
}

void MultipartBody::HandOver(std::size_t byteCount) {
  if (inFile_ && byteCount > 0) sink_.Content(Rest().substr(0, byteCount));
  taken_ += byteCount;
}

bool MultipartBody::Finish() const {
  if (HasFile()) return true;
  if (state_ != State::BodyEnded) Refuse("The body of the form ended before its closing boundary");
  return false;
}

}  // namespace oxaqrycln
