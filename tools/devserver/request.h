// request.h - cuts a request text into its fields and tells whether it has arrived whole.
// A request has no terminator: it is whole when its text ends with "^" and holds the fields its command takes.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_REQUEST_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_REQUEST_H_

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace oxaqrycln::devserver {

// Session id, user and encoded password stand before the command word.
inline constexpr std::size_t kPrefixFieldCount = 3;

struct RequestFields {
  std::vector<std::string> fields;
  bool ended = false;  // the last field has its closing caret
};
// Without an opening caret there are no fields.
RequestFields SplitRequest(std::string_view text);

enum class RequestState {
  kPartial,   // an unfinished field: more bytes must come
  kShort,     // every field is closed, but the command takes more of them
  kComplete,  // at least the fields that the command takes
  kBad        // no caret-quoted text, or a command word that nobody knows: its end cannot be told
};

// The number of parameters that a command word takes; nothing for an unknown word.
using ParameterCount = std::function<std::optional<std::size_t>(std::string_view command)>;

RequestState JudgeRequest(std::string_view text, const ParameterCount& parameterCount);

// Text of a client made fit for one line of an answer or a log: control characters as ".", at most 80 characters.
std::string Printable(std::string_view text);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_REQUEST_H_
