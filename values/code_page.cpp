#include "values/code_page.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace oxaqrycln {
namespace {

// The characters 0x80 to 0x9F in Unicode; the five undefined ones keep their codes.
constexpr std::array<std::uint16_t, 32> kUpperControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr std::uint8_t UpperOf(std::uint8_t c) {
  if (c >= 'a' && c <= 'z') return static_cast<std::uint8_t>(c - 0x20);
  if (c >= 0xE0 && c <= 0xFE && c != 0xF7) return static_cast<std::uint8_t>(c - 0x20);
  if (c == 0x9A || c == 0x9C || c == 0x9E) return static_cast<std::uint8_t>(c - 0x10);
  return c == 0xFF ? std::uint8_t{0x9F} : c;
}

using Table = std::array<char, 256>;

constexpr Table MakeUpper() {
  Table table{};
  for (unsigned c = 0; c < 256; ++c) table[c] = static_cast<char>(UpperOf(static_cast<std::uint8_t>(c)));
  return table;
}

constexpr Table MakeLower() {
  Table table{};
  for (unsigned c = 0; c < 256; ++c) table[c] = static_cast<char>(c);
  for (unsigned c = 0; c < 256; ++c) {
    const std::uint8_t upper = UpperOf(static_cast<std::uint8_t>(c));
    if (upper != c) table[upper] = static_cast<char>(c);
  }
  return table;
}

constexpr Table kUpper = MakeUpper();
constexpr Table kLower = MakeLower();

// Every character of the code page has one to three bytes in UTF-8.
struct Decoded {
  std::uint32_t code;
  std::size_t byteCount;  // 0: not well-formed
};
Decoded DecodeOne(std::string_view text) noexcept {
  const auto byte = [&](std::size_t i) { return static_cast<std::uint32_t>(static_cast<std::uint8_t>(text[i])); };
  const auto follows = [&](std::size_t i) { return i < text.size() && (byte(i) & 0xC0U) == 0x80U; };
  if (byte(0) < 0x80) return {byte(0), 1};
  if (byte(0) >= 0xC2 && byte(0) < 0xE0 && follows(1)) return {(byte(0) & 0x1FU) << 6U | (byte(1) & 0x3FU), 2};
  if (byte(0) >= 0xE0 && byte(0) < 0xF0 && follows(1) && follows(2)) {
    const std::uint32_t code = (byte(0) & 0xFU) << 12U | (byte(1) & 0x3FU) << 6U | (byte(2) & 0x3FU);
    if (code >= 0x800) return {code, 3};
  }
  return {0, 0};
}

#if defined(__SSE2__)
// Widens eight ASCII characters; false for others.
bool WidenAscii(const char* from, char16_t* target) noexcept {
  const __m128i bytes = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(from));
  if ((_mm_movemask_epi8(bytes) & 0xFF) != 0) return false;
  _mm_storeu_si128(reinterpret_cast<__m128i*>(target), _mm_unpacklo_epi8(bytes, _mm_setzero_si128()));
  return true;
}
#endif

constexpr std::uint64_t kHighBits = 0x8080808080808080U;

std::size_t Utf8Size(char character) noexcept {
  const std::uint32_t code = ToUnicode(character);
  return code < 0x80 ? 1 : code < 0x800 ? 2 : 3;
}

// Writes a character that is not below 0x80; returns its number of bytes, 2 or 3.
std::size_t EncodeOne(char character, char* target) noexcept {
  const std::uint32_t code = ToUnicode(character);
  const auto last = static_cast<char>(0x80U | (code & 0x3FU));
  if (code < 0x800) {
    target[0] = static_cast<char>(0xC0U | code >> 6U);
    target[1] = last;
    return 2;
  }
  target[0] = static_cast<char>(0xE0U | code >> 12U);
  target[1] = static_cast<char>(0x80U | (code >> 6U & 0x3FU));
  target[2] = last;
  return 3;
}

// Calls each(position, word) for words that together are the text; they overlap at its end. Returns all words, combined
// by "or". Most columns of a list have fewer than 16 characters, which a loop over single ones takes longer to read.
template <typename Each>
std::uint64_t ForEachWord(std::string_view text, Each&& each) noexcept {
  const auto visit = [&](std::size_t at, auto word) {
    std::memcpy(&word, text.data() + at, sizeof word);
    each(at, word);
    return std::uint64_t{word};
  };
  const std::size_t size = text.size();
  std::uint64_t seen = 0;
  if (size >= 8) {
    for (std::size_t at = 0; at + 8 < size; at += 8) seen |= visit(at, std::uint64_t{});
    return seen | visit(size - 8, std::uint64_t{});
  }
  if (size >= 4) return visit(0, std::uint32_t{}) | visit(size - 4, std::uint32_t{});
  for (std::size_t at = 0; at < size; ++at) seen |= visit(at, std::uint8_t{});
  return seen;
}

// The number of characters below 0x80 at the start.
std::size_t AsciiPrefix(std::string_view text) noexcept {
  std::size_t at = 0;
  for (std::uint64_t word = 0; at + sizeof word <= text.size(); at += sizeof word) {
    std::memcpy(&word, text.data() + at, sizeof word);
    if ((word & kHighBits) != 0) break;
  }
  while (at < text.size() && static_cast<std::uint8_t>(text[at]) < 0x80) ++at;
  return at;
}

}  // namespace

std::uint32_t ToUnicode(char character) noexcept {
  const auto code = static_cast<std::uint8_t>(character);
  return code >= 0x80 && code < 0xA0 ? kUpperControls[code - 0x80U] : code;
}

std::optional<char> FromUnicode(std::uint32_t code) noexcept {
  if (code < 0x80 || (code >= 0xA0 && code < 0x100)) return static_cast<char>(code);
  const auto* const found = std::ranges::find(kUpperControls, code);
  if (found == kUpperControls.end()) return std::nullopt;
  return static_cast<char>(0x80 + (found - kUpperControls.begin()));
}

char UpperCase(char character) noexcept { return kUpper[static_cast<std::uint8_t>(character)]; }

std::string UpperCase(std::string_view text) {
  std::string upper(text);
  for (char& c : upper) c = kUpper[static_cast<std::uint8_t>(c)];
  return upper;
}

bool PrecedesInUpperCase(std::string_view left, std::string_view right) noexcept {
  return std::ranges::lexicographical_compare(left, right, [](char l, char r) {
    return static_cast<std::uint8_t>(UpperCase(l)) < static_cast<std::uint8_t>(UpperCase(r));
  });
}

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = kLower[static_cast<std::uint8_t>(c)];
  return lower;
}

bool IsAscii(std::string_view text) noexcept {
  return (ForEachWord(text, [](std::size_t, auto) {}) & kHighBits) == 0;
}

std::string ToUtf8(std::string_view text) {
  std::string utf8;
  utf8.reserve(text.size() + text.size() / 8);
  AppendUtf8(utf8, text);
  return utf8;
}

void AppendUtf8(std::string& utf8, std::string_view text) {
  const std::size_t prefix = AsciiPrefix(text);
  utf8.append(text.data(), prefix);
  text.remove_prefix(prefix);
  if (text.empty()) return;
  std::size_t byteCount = 0;
  for (const char character : text) byteCount += Utf8Size(character);
  const std::size_t size = utf8.size();
  utf8.resize(size + byteCount + sizeof(std::uint64_t));
  WriteUtf8(text, utf8.data() + size);
  utf8.resize(size + byteCount);
}

std::size_t WriteUtf8(std::string_view text, char* target) noexcept {
  const auto copy = [target](std::size_t at, auto word) { std::memcpy(target + at, &word, sizeof word); };
  if ((ForEachWord(text, copy) & kHighBits) == 0) return text.size();
  char* end = target;
  for (std::size_t at = 0; at < text.size();) {
    std::uint64_t word = 0;
    if (at + sizeof word <= text.size()) {
      std::memcpy(&word, text.data() + at, sizeof word);
      if ((word & kHighBits) == 0) {
        std::memcpy(end, &word, sizeof word);
        at += sizeof word;
        end += sizeof word;
        continue;
      }
    }
    const char character = text[at++];
    if (static_cast<std::uint8_t>(character) < 0x80) {
      *end++ = character;
    } else {
      end += EncodeOne(character, end);
    }
  }
  return static_cast<std::size_t>(end - target);
}

std::optional<std::string> FromUtf8(std::string_view utf8) {
  std::string text;
  text.reserve(utf8.size());
  while (!utf8.empty()) {
    const Decoded decoded = DecodeOne(utf8);
    if (decoded.byteCount == 0) return std::nullopt;
    const auto character = FromUnicode(decoded.code);
    if (!character) return std::nullopt;
    text += *character;
    utf8.remove_prefix(decoded.byteCount);
  }
  return text;
}

std::size_t PlaceOfForeignCharacter(std::string_view utf8) noexcept {
  for (std::size_t place = 1; !utf8.empty(); ++place) {
    const Decoded decoded = DecodeOne(utf8);
    if (decoded.byteCount == 0 || !FromUnicode(decoded.code)) return place;
    utf8.remove_prefix(decoded.byteCount);
  }
  return 0;
}

void ToUtf16(std::string_view text, char16_t* target) noexcept {
  const char* const from = text.data();
  const std::size_t size = text.size();
  std::size_t at = 0;
#if defined(__SSE2__)
  if (size >= 8) {
    while (at + 8 < size && WidenAscii(from + at, target + at)) at += 8;
    // The last block overlaps the one before.
    if (at + 8 >= size && WidenAscii(from + size - 8, target + size - 8)) return;
  }
#endif
  for (; at < size; ++at) target[at] = static_cast<char16_t>(ToUnicode(from[at]));
}

std::optional<std::string> FromUtf16(std::u16string_view utf16) {
  std::string text;
  text.reserve(utf16.size());
  for (const char16_t unit : utf16) {
    const auto character = FromUnicode(unit);
    if (!character) return std::nullopt;
    text += *character;
  }
  return text;
}

}  // namespace oxaqrycln
