#include "tools/devserver/request.h"

namespace oxaqrycln::devserver {

namespace {

RequestState JudgeText(std::string_view text, const ShapeOf& shapeOf) {
  if (text.empty()) return RequestState::kPartial;
  if (text.front() != '^') return RequestState::kBad;
  const RequestFields request = SplitRequest(text);
  if (request.fields.size() <= kPrefixFieldCount) return request.ended ? RequestState::kShort : RequestState::kPartial;
  const auto shape = shapeOf(request.fields[kPrefixFieldCount]);
  if (!shape) return RequestState::kBad;
  if (!request.ended) return RequestState::kPartial;
  const bool isShort = request.fields.size() < kPrefixFieldCount + 1 + shape->parameterCount;
  return isShort || shape->hasBody ? RequestState::kShort : RequestState::kComplete;
}

}  // namespace

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

RequestJudgement JudgeRequest(std::string_view text, const ShapeOf& shapeOf) {
  // Only a text that a body follows is ended by a line end; values of other commands may hold one.
  const std::size_t end = text.find("^\r\n");
  if (end != std::string_view::npos) {
    const RequestFields begin = SplitRequest(text.substr(0, end + 1));
    const bool hasCommand = begin.ended && begin.fields.size() > kPrefixFieldCount;
    const auto shape = hasCommand ? shapeOf(begin.fields[kPrefixFieldCount]) : std::nullopt;
    if (shape && shape->hasBody && begin.fields.size() > kPrefixFieldCount + shape->parameterCount) {
      return {RequestState::kBody, end + 1};
    }
  }
  return {JudgeText(text, shapeOf), text.size()};
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
