#include "tools/oxaqry/base64.h"

namespace oxaqrycln {

std::optional<std::vector<std::uint8_t>> DecodeBase64(std::string_view text) {
  static constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  if (text.size() % 4 != 0) return std::nullopt;
  std::size_t padding = 0;
  while (padding < 2 && text.ends_with('=')) {
    text.remove_suffix(1);
    ++padding;
  }
  std::vector<std::uint8_t> bytes;
  bytes.reserve(text.size() / 4 * 3 + 2);
  std::uint32_t bits = 0;
  unsigned bitCount = 0;
  for (const char character : text) {
    const std::size_t value = kAlphabet.find(character);
    if (value == std::string_view::npos) return std::nullopt;
    bits = (bits << 6 | static_cast<std::uint32_t>(value)) & 0x3FFFU;
    bitCount += 6;
    if (bitCount >= 8) {
      bitCount -= 8;
      bytes.push_back(static_cast<std::uint8_t>(bits >> bitCount & 0xFFU));
    }
  }
  const bool restIsZero = (bits & ((1U << bitCount) - 1U)) == 0;
  if (!restIsZero) return std::nullopt;
  return bytes;
}

}  // namespace oxaqrycln
