#include "tools/oxaqry/cli/text.h"

#include <charconv>

namespace oxaqrycln::oxaqry {

std::vector<std::string> SplitText(std::string_view text, std::string_view separator) {
  std::vector<std::string> parts;
  for (std::size_t from = 0;;) {
    const std::size_t end = text.find(separator, from);
    parts.emplace_back(text.substr(from, end - from));
    if (end == std::string_view::npos) return parts;
    from = end + separator.size();
  }
}

std::optional<std::int32_t> ParseInteger(std::string_view text) {
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return number;
}

std::optional<std::int32_t> ParseNumber(std::string_view text) {
  return text.starts_with('-') ? std::nullopt : ParseInteger(text);
}

}  // namespace oxaqrycln::oxaqry
