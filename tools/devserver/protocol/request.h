// request.h - splits a request text into its fields and decides whether all of it has arrived.
// A request has no terminator: it is complete when its text ends with "^" and contains the fields that its command
// takes. CR LF ends a request that a body follows; a request with rows is complete with a field after a complete row.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_PROTOCOL_REQUEST_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_PROTOCOL_REQUEST_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace oxaqrycln::devserver {

// Session id, user and encoded password precede the command word.
inline constexpr std::size_t kPrefixFieldCount = 3;

struct RequestFields {
  std::vector<std::string> fields;
  bool ended = false;  // the last field has its closing caret
};
// Without an opening caret there are no fields.
RequestFields SplitRequest(std::string_view text);

enum class RequestState {
  kPartial,   // a field without its closing caret: more bytes must follow
  kShort,     // every field is closed, but the command takes more fields, or a body
  kComplete,  // at least the fields that the command takes
  kBody,      // likewise, and the body has begun
  kBad        // not caret-quoted, or an unknown command word: the end cannot be determined
};

enum class Form {
  kFields,    // the request is fields, the answer lines
  kBody,      // CR LF and the bytes of a file follow the request text
  kRows,      // the second of three parameters is rows of fields, which contain "^,^"
  kRawAnswer  // the answer is the bytes of a file; on an error none are sent, since the client takes any for content
};
struct CommandShape {
  std::size_t parameterCount;
  Form form = Form::kFields;
};

// The shape of a command; nothing for an unknown command word.
using ShapeOf = std::function<std::optional<CommandShape>(std::string_view command)>;

struct RequestJudgement {
  RequestState state;
  std::size_t textByteCount;  // of the request text, without the CR LF and the body
};
RequestJudgement JudgeRequest(std::string_view text, const ShapeOf& shapeOf);

// Whether the command of the text takes rows. Such a request may be large.
bool HoldsRows(std::string_view text, const ShapeOf& shapeOf);

// The three parameters of a command with rows, with the fields of the rows joined to one parameter again.
std::vector<std::string> JoinRows(std::vector<std::string> parameters);

// The decimal number of 0 or more that the whole text spells; nothing for any other text.
std::optional<std::int64_t> ParseNumber(std::string_view text);

// A limit that a parameter sets: a number of 0 or more in 31 bits; "" is 0. Raises ServerError for any other text.
std::int64_t ParseLimit(const std::string& name, const std::string& text);

// Text of a client for one line of an answer or a log: at most 80 characters, control characters replaced by ".".
std::string Printable(std::string_view text);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_PROTOCOL_REQUEST_H_
