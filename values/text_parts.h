// text_parts.h - cutting texts: the one way to split and to trim.
#ifndef OXAQRYCLN_VALUES_TEXT_PARTS_H_
#define OXAQRYCLN_VALUES_TEXT_PARTS_H_

#include <string>
#include <string_view>
#include <vector>

namespace oxaqrycln {

// The parts of a text between its separators; none of the empty text. They refer to the text.
std::vector<std::string_view> Split(std::string_view text, char separator);
std::vector<std::string_view> Split(std::string&& text, char separator) = delete;

// The text without the blanks, or the other characters given, around it.
std::string_view Trimmed(std::string_view text, std::string_view blanks = " ") noexcept;

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_VALUES_TEXT_PARTS_H_
