#include "values/text_parts.h"

#include <algorithm>
#include <cstddef>

namespace oxaqrycln {

TextCut Cut(std::string_view text, char separator) noexcept {
  const std::size_t at = text.find(separator);
  if (at == std::string_view::npos) return {text, {}, false};
  return {text.substr(0, at), text.substr(at + 1), true};
}

std::vector<std::string_view> Split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  if (text.empty()) return parts;
  for (std::size_t start = 0;;) {
    const std::size_t end = text.find(separator, start);
    parts.push_back(text.substr(start, end - start));
    if (end == std::string_view::npos) return parts;
    start = end + 1;
  }
}

std::string_view Trimmed(std::string_view text, std::string_view blanks) noexcept {
  text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
  return text.substr(0, text.find_last_not_of(blanks) + 1);
}

}  // namespace oxaqrycln
