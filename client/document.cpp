#include "client/document.h"

namespace oxaqrycln::client {
namespace {

// The byte behind as many characters of a UTF-8 text, from a byte on.
std::size_t BehindCharacters(const std::string& text, std::size_t from, std::size_t count) {
  for (; count > 0 && from < text.size(); --count) {
    ++from;
    while (from < text.size() && (static_cast<unsigned char>(text[from]) & 0xC0U) == 0x80U) ++from;
  }
  return from;
}

}  // namespace

std::vector<TextPiece> MarkedText::Pieces() const {
  std::vector<TextPiece> pieces;
  std::size_t byte = 0;
  std::size_t character = 0;
  const auto add = [&](std::size_t count, bool isMarked) {
    const std::size_t end = BehindCharacters(text, byte, count);
    if (end > byte) pieces.push_back({text.substr(byte, end - byte), isMarked});
    byte = end;
    character += count;
  };
  for (const Mark& mark : marks) {
    add(mark.start - character, false);
    add(mark.length, true);
  }
  add(text.size(), false);  // the rest has no more characters than the text has bytes
  return pieces;
}

}  // namespace oxaqrycln::client
