#include "client/text.h"

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
