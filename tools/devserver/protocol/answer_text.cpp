#include "tools/devserver/protocol/answer_text.h"

namespace oxaqrycln::devserver {
namespace {

bool BreaksFields(char character) { return static_cast<unsigned char>(character) < 0x20 || character == '^'; }

}  // namespace

std::string Record(const std::vector<std::string>& values) {
  std::string record;
  for (const std::string& value : values) {
    record += record.empty() ? "^" : ",^";
    for (const char character : value) record += BreaksFields(character) ? ' ' : character;
    record += '^';
  }
  return record;
}

std::string CleanText(std::string_view text) {
  std::string clean;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool breaks = text[at] == '\n' || text[at] == '\r';
    if (text[at] == '\r' && at + 1 < text.size() && text[at + 1] == '\n') ++at;
    clean += breaks ? '\n' : BreaksFields(text[at]) ? ' ' : text[at];
  }
  while (clean.ends_with('\n')) clean.pop_back();
  return clean;
}

std::string WithLineEnds(std::string_view text) {
  std::string lines;
  for (const char character : text) {
    if (character == '\n') lines += '\r';
    lines += character;
  }
  return lines;
}

}  // namespace oxaqrycln::devserver
