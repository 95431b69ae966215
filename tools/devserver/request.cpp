#include "tools/devserver/request.h"

namespace oxaqrycln::devserver {

RequestFields SplitRequest(std::string_view text) {
  RequestFields request;
  if (text.empty() || text.front() != '^') return request;
  // Closing the text with ",^" makes every field end in "^,^"; what is left behind the last of them tells whether the
  // last field was closed.
  const std::string closed = std::string(text.substr(1)) + ",^";
  std::size_t start = 0;
  for (std::size_t end = closed.find("^,^"); end != std::string::npos; end = closed.find("^,^", start)) {
    request.fields.push_back(closed.substr(start, end - start));
    start = end + 3;
  }
  request.ended = start == closed.size();
  return request;
}

RequestState JudgeRequest(std::string_view text, const ParameterCount& parameterCount) {
  if (text.empty()) return RequestState::kPartial;
  if (text.front() != '^') return RequestState::kBad;
  const RequestFields request = SplitRequest(text);
  if (request.fields.size() <= kPrefixFieldCount) return request.ended ? RequestState::kShort : RequestState::kPartial;
  const auto count = parameterCount(request.fields[kPrefixFieldCount]);
  if (!count) return RequestState::kBad;
  if (!request.ended) return RequestState::kPartial;
  return request.fields.size() < kPrefixFieldCount + 1 + *count ? RequestState::kShort : RequestState::kComplete;
}

std::string Printable(std::string_view text) {
  constexpr std::size_t kLimit = 80;
  std::string line(text.substr(0, kLimit));
  for (char& character : line) {
    if (static_cast<unsigned char>(character) < 0x20 || character == 0x7F) character = '.';
  }
  if (text.size() > kLimit) line += "...";
  return line;
}

}  // namespace oxaqrycln::devserver
