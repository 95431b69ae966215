#include "client/text.h"

#include <algorithm>

#include "client/errors.h"
#include "values/code_page.h"

namespace oxaqrycln::client {
namespace {

constexpr std::string_view kSeparator = "^,^";

}  // namespace

std::vector<std::string> Fields(std::string_view record) {
  std::vector<std::string> fields;
  if (record.empty()) return fields;
  if (record.starts_with('^')) record.remove_prefix(1);
  if (record.ends_with('^')) record.remove_suffix(1);
  for (std::size_t end = record.find(kSeparator); end != std::string_view::npos; end = record.find(kSeparator)) {
    fields.emplace_back(record.substr(0, end));
    record.remove_prefix(end + kSeparator.size());
  }
  fields.emplace_back(record);
  return fields;
}

std::string RequestText(std::string_view utf8, std::string_view what) {
  auto text = FromUtf8(utf8);
  if (!text) {
    throw BadArgument(std::string(what) + ": character " + std::to_string(PlaceOfForeignCharacter(utf8)) +
                      " has no place in the archive's code page (Windows-1252)");
  }
  if (text->find(kSeparator) != std::string::npos || text->ends_with("^,")) {
    throw BadArgument(std::string(what) +
                      R"( holds "^,^", or ends with "^,", which separates the fields of a request)");
  }
  return *std::move(text);
}

std::string IsoDate(std::string_view text) {
  constexpr std::string_view kLongest = "00.00.0000 00:00:00";  // "0" stands for any digit
  const bool hasForm = text.size() == 10 || text.size() == 16 || text.size() == kLongest.size();
  const auto fits = [](char have, char want) { return want == '0' ? have >= '0' && have <= '9' : have == want; };
  if (!hasForm || !std::ranges::equal(text, kLongest.substr(0, text.size()), fits)) return std::string(text);
  const auto part = [&](std::size_t from, std::size_t count) { return std::string(text.substr(from, count)); };
  const std::string date = part(6, 4) + "-" + part(3, 2) + "-" + part(0, 2);
  if (text.size() == 10) return date;
  return date + "T" + part(11, 5) + (text.size() == 16 ? ":00" : part(16, 3));
}

std::string WithNetworkLineEnds(std::string_view text) {
  std::string lines;
  while (text.ends_with('\n') || text.ends_with('\r')) text.remove_suffix(1);
  for (const char character : text) {
    if (character == '\n' && !lines.ends_with('\r')) lines += '\r';
    lines += character;
  }
  return lines;
}

}  // namespace oxaqrycln::client
