#include "tools/devserver/protocol/request.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "tools/devserver/protocol/errors.h"

namespace oxaqrycln::devserver {

namespace {

constexpr std::string_view kBetween = "^,^";

// The position of the first parameter's opening caret; npos while only the command word has arrived. Reads no further
// than that.
std::size_t ParametersStart(std::string_view text) {
  std::size_t from = 1;
  for (std::size_t field = 0; field <= kPrefixFieldCount; ++field) {
    const std::size_t end = text.find(kBetween, from);
    if (end == std::string_view::npos) return end;
    from = end + kBetween.size();
  }
  return from - 1;
}

// Whether "^first^,^rows^,^last^" is complete. It is not when the text ends inside the rows: then the last "^,^"
// follows a field and not a complete row.
bool EndsBehindRows(std::string_view parameters) {
  const std::size_t firstEnd = parameters.find(kBetween, 1);
  const std::size_t rowsEnd = parameters.rfind(kBetween);
  if (firstEnd == std::string_view::npos || rowsEnd < firstEnd + kBetween.size()) return false;
  if (rowsEnd + kBetween.size() == parameters.size()) return false;  // the last caret opens a field
  const std::size_t rowsStart = firstEnd + kBetween.size();
  const std::string_view rows = parameters.substr(rowsStart, rowsEnd - rowsStart);
  const std::size_t lineEnd = rows.rfind("\r\n");
  const std::string_view row = lineEnd == std::string_view::npos ? rows : rows.substr(lineEnd + 2);
  return row.size() >= 2 && row.starts_with('^') && row.ends_with('^') && !row.ends_with(kBetween);
}

RequestState JudgeText(std::string_view text, const ShapeOf& shapeOf) {
  if (text.empty()) return RequestState::kPartial;
  if (text.front() != '^') return RequestState::kBad;
  if (HoldsRows(text, shapeOf)) {
    if (!text.ends_with('^')) return RequestState::kPartial;
    return EndsBehindRows(text.substr(ParametersStart(text))) ? RequestState::kComplete : RequestState::kShort;
  }
  const RequestFields request = SplitRequest(text);
  if (request.fields.size() <= kPrefixFieldCount) return request.ended ? RequestState::kShort : RequestState::kPartial;
  const auto shape = shapeOf(request.fields[kPrefixFieldCount]);
  if (!shape) return RequestState::kBad;
  if (!request.ended) return RequestState::kPartial;
  const bool isShort = request.fields.size() < kPrefixFieldCount + 1 + shape->parameterCount;
  return isShort || shape->form == Form::kBody ? RequestState::kShort : RequestState::kComplete;
}

}  // namespace

RequestFields SplitRequest(std::string_view text) {
  RequestFields request;
  if (text.empty() || text.front() != '^') return request;
  // With ",^" appended, every closed field ends in "^,^"; anything left after the last one is an unclosed field.
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
  // A line end only ends a request with a body; it may occur in the values of other commands.
  const std::size_t end = text.find("^\r\n");
  if (end != std::string_view::npos) {
    const RequestFields begin = SplitRequest(text.substr(0, end + 1));
    const bool hasCommand = begin.ended && begin.fields.size() > kPrefixFieldCount;
    const auto shape = hasCommand ? shapeOf(begin.fields[kPrefixFieldCount]) : std::nullopt;
    if (shape && shape->form == Form::kBody && begin.fields.size() > kPrefixFieldCount + shape->parameterCount) {
      return {RequestState::kBody, end + 1};
    }
  }
  return {JudgeText(text, shapeOf), text.size()};
}

bool HoldsRows(std::string_view text, const ShapeOf& shapeOf) {
  const std::size_t parameters = text.starts_with('^') ? ParametersStart(text) : std::string_view::npos;
  if (parameters == std::string_view::npos) return false;
  const auto shape = shapeOf(SplitRequest(text.substr(0, parameters - 1)).fields[kPrefixFieldCount]);
  return shape && shape->form == Form::kRows;
}

std::vector<std::string> JoinRows(std::vector<std::string> parameters) {
  if (parameters.size() <= 3) return parameters;
  std::string& rows = parameters[1];
  for (auto part = parameters.begin() + 2; part != parameters.end() - 1; ++part) rows.append(kBetween).append(*part);
  parameters.erase(parameters.begin() + 2, parameters.end() - 1);
  return parameters;
}

std::optional<std::int64_t> ParseNumber(std::string_view text) {
  std::int64_t number = 0;
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || stop != text.data() + text.size() || number < 0) return std::nullopt;
  return number;
}

std::int64_t ParseLimit(const std::string& name, const std::string& text) {
  const auto limit = text.empty() ? 0 : ParseNumber(text);
  if (!limit || *limit > std::numeric_limits<std::int32_t>::max()) {
    throw ServerError(name + " '" + Printable(text) + "' is not a number of 0 or more");
  }
  return *limit;
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
