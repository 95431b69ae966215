// text_parts.h - cutting texts: the one way to cut, to split and to trim.
#ifndef OXAQRYCLN_VALUES_TEXT_PARTS_H_
#define OXAQRYCLN_VALUES_TEXT_PARTS_H_

#include <string>
#include <string_view>
#include <vector>

namespace oxaqrycln {

// Between the lines of requests, of answers and of texts that are sent.
inline constexpr std::string_view kLineEnd = "\r\n";

// A text cut at its first separator. Without one, before is the whole text.
struct TextCut {
  std::string_view before;
  std::string_view after;
  bool hasSeparator;
};
TextCut Cut(std::string_view text, char separator) noexcept;

// The parts of a text between its separators; none of the empty text. They refer to the text.
std::vector<std::string_view> Split(std::string_view text, char separator);
std::vector<std::string_view> Split(std::string&& text, char separator) = delete;

// The text without the blanks, or the other characters given, around it.
std::string_view Trimmed(std::string_view text, std::string_view blanks = " ") noexcept;

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_VALUES_TEXT_PARTS_H_
