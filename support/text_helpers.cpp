#include "support/text_helpers.h"

#include <charconv>
#include <cstddef>
#include <utility>

#include "values/errors.h"
#include "values/text_parts.h"
#include "values/variant.h"

namespace oxaqrycln {
namespace {

constexpr std::size_t kLargestCode = 32767;
constexpr std::size_t kMostPages = 1'000'000;

// The number whose decimal digits are those of value written in another base.
unsigned DigitsAsDecimal(unsigned value, unsigned base) noexcept {
  unsigned result = 0;
  for (unsigned place = 1; value > 0; value /= base, place *= 10) result += value % base * place;
  return result;
}

unsigned HexDigit(char digit) {
  if (digit >= '0' && digit <= '9') return static_cast<unsigned>(digit - '0');
  if (digit >= 'A' && digit <= 'F') return static_cast<unsigned>(digit - 'A' + 10);
  if (digit >= 'a' && digit <= 'f') return static_cast<unsigned>(digit - 'a' + 10);
  throw RuntimeError(error::kTypeMismatch);
}

// The number whose octal digits are the decimal digits of value.
unsigned DecimalAsOctal(unsigned value) {
  unsigned result = 0;
  for (unsigned place = 1; value > 0; value /= 10, place *= 8) {
    if (value % 10 > 7) throw RuntimeError(error::kTypeMismatch);
    result += value % 10 * place;
  }
  return result;
}

class PageList {
 public:
  void Add(std::int64_t page) {
    if (++count_ > kMostPages) throw RuntimeError(error::kOutOfStringSpace);
    if (!text_.empty()) text_ += ',';
    text_ += std::to_string(page);
  }
  std::string Take() && { return std::move(text_); }

 private:
  std::string text_;
  std::size_t count_ = 0;
};

void AddPages(std::string_view item, PageList& pages) {
  const TextCut range = Cut(item, '-');
  const std::int64_t from = ToNumber(range.before);
  if (!range.hasSeparator) {
    if (from >= 1) pages.Add(from);
    return;
  }
  const std::int64_t to = ToNumber(range.after);
  if (from == 0) return pages.Add(to);
  if (to == 0) return pages.Add(from);
  const std::int64_t step = from > to ? -1 : 1;
  for (std::int64_t page = from;; page += step) {
    pages.Add(page);
    if (page == to) return;
  }
}

}  // namespace

std::string Encode(std::string_view text) {
  static constexpr char kHex[] = "0123456789ABCDEF";
  std::string result(text.size() * 2, '0');
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::size_t code = static_cast<unsigned char>(text[i]) + i + 1;
    if (code > kLargestCode) throw RuntimeError(error::kOverflow);
    // Kept: of more than two digits only the last two stay.
    const unsigned value = DigitsAsDecimal(static_cast<unsigned>(code), 8);
    char* const piece = result.data() + (text.size() - 1 - i) * 2;
    piece[0] = kHex[value / 16 % 16];
    piece[1] = kHex[value % 16];
  }
  return result;
}

std::string Decode(std::string_view text) {
  // Half the length, rounded to the nearest whole number and halves to the even one.
  std::size_t count = text.size() / 2;
  if (text.size() % 2 == 1 && count % 2 == 1) ++count;
  if (count * 2 > text.size()) throw RuntimeError(error::kInvalidProcedureCall);
  const std::size_t skipped = text.size() - count * 2;
  std::string result(count, '\0');
  for (std::size_t i = count; i >= 1; --i) {
    const std::string_view pair = text.substr(skipped + (count - i) * 2, 2);
    const std::size_t code = DecimalAsOctal(HexDigit(pair[0]) * 16 + HexDigit(pair[1]));
    if (code < i || code - i > 255) throw RuntimeError(error::kInvalidProcedureCall);
    result[i - 1] = static_cast<char>(code - i);
  }
  return result;
}

std::int32_t InStrExt(std::string_view text, std::string_view search, std::int32_t occurrence) {
  std::size_t position = 0;
  for (std::int32_t count = 1;; ++count) {
    const std::size_t found = position < text.size() ? text.find(search, position) : std::string_view::npos;
    if (found == std::string_view::npos) return 0;
    position = found + 1;
    if (count == occurrence) return static_cast<std::int32_t>(position);
  }
}

std::string GetPages(std::string_view pages) {
  PageList list;
  for (const std::string_view item : Split(pages, ';')) AddPages(item, list);
  return std::move(list).Take();
}

std::int32_t ToNumber(std::string_view text) noexcept {
  try {
    return TextToLong(text);
  } catch (...) {  // a text that is no number counts as 0
    return 0;
  }
}

}  // namespace oxaqrycln
