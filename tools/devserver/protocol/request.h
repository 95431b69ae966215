// request.h - cuts a request text into its fields and tells whether it has arrived whole.
// A request has no terminator: it is whole when its text ends with "^" and holds the fields its command takes. One that
// a body follows ends with CR LF; one with rows of fields in it, with a field behind a whole row.
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
  kShort,     // every field is closed, but the command takes more of them, or a body
  kComplete,  // at least the fields that the command takes
  kBody,      // so too, and the body of the command has begun
  kBad        // no caret-quoted text, or a command word that nobody knows: its end cannot be told
};

enum class Form {
  kFields,    // of the request, and lines of the answer
  kBody,      // CR LF and bytes follow the request text
  kRows,      // the second of three parameters is rows of fields, which hold "^,^" themselves
  kRawAnswer  // the answer is a file's bytes; an error ends the connection without a byte, which would pass for content
};
struct CommandShape {
  std::size_t parameterCount;
  Form form = Form::kFields;
};

// What a command word takes; nothing for an unknown word.
using ShapeOf = std::function<std::optional<CommandShape>(std::string_view command)>;

struct RequestJudgement {
  RequestState state;
  std::size_t textByteCount;  // of the request text, without the CR LF and the body
};
RequestJudgement JudgeRequest(std::string_view text, const ShapeOf& shapeOf);

// Whether the text's command takes rows, so that its request may be large.
bool HoldsRows(std::string_view text, const ShapeOf& shapeOf);

// The fields behind the command word of a command with rows as three parameters, the rows put together again.
std::vector<std::string> JoinRows(std::vector<std::string> parameters);

// The text without blanks and tabs at its ends.
std::string_view Trimmed(std::string_view text);

// The whole text as a decimal number from 0; nothing when it is none.
std::optional<std::int64_t> ParseNumber(std::string_view text);

// A parameter that bounds the answer: a number from 0 that fits 31 bits, "" for 0. Raises ServerError for anything
// else.
std::int64_t ParseLimit(const std::string& name, const std::string& text);

// Text of a client made fit for one line of an answer or a log: control characters as ".", at most 80 characters.
std::string Printable(std::string_view text);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_PROTOCOL_REQUEST_H_
