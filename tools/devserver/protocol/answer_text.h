// answer_text.h - the parts of an answer: caret-quoted fields and texts, made so that no value can end them early.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_PROTOCOL_ANSWER_TEXT_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_PROTOCOL_ANSWER_TEXT_H_

#include <string>
#include <string_view>
#include <vector>

namespace oxaqrycln::devserver {

// The texts with the separator between them.
template <typename Texts>
std::string Join(const Texts& texts, std::string_view separator) {
  std::string joined;
  for (const std::string_view text : texts) joined.append(joined.empty() ? "" : separator).append(text);
  return joined;
}

// The values as caret-quoted fields with commas between them, without a line end. Carets and control characters in a
// value become blanks.
std::string Record(const std::vector<std::string>& values);

// A text of several lines that cannot end a field: carets and control characters become blanks, and each line break
// (CR LF, CR or LF) becomes a single LF. Line breaks at the end are removed.
std::string CleanText(std::string_view text);

// The text with each LF replaced by CR LF.
std::string WithLineEnds(std::string_view text);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_PROTOCOL_ANSWER_TEXT_H_
