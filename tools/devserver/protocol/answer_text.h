// answer_text.h - the pieces of an answer: caret-quoted fields and texts that no value can break out of.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_PROTOCOL_ANSWER_TEXT_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_PROTOCOL_ANSWER_TEXT_H_

#include <string>
#include <string_view>
#include <vector>

namespace oxaqrycln::devserver {

// The value in carets; control characters and carets in it become blanks.
std::string Field(std::string value);

// The values as fields with commas between them, without a line end.
std::string Record(const std::vector<std::string>& values);

// A text of several lines without what could end a field: carets and control characters become blanks, and each line
// break (CR LF, CR or LF) becomes a single LF. Line breaks at the end go.
std::string CleanText(std::string_view text);

// LF as CR LF.
std::string WithLineEnds(std::string_view text);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_PROTOCOL_ANSWER_TEXT_H_
