// The head of a key, from its highest bit on:
//
//   text    00 | 3 zero bits   | the first 7 characters in upper case, 0 where there are fewer | how many, 3 bits
//   number  10 | digits before the comma, 31 bits | the first 9 digits, 0 where there are fewer, 31 bits
//           01 | the same with every bit inverted, for a negative number
//   date    10 | year * 10000 + month * 100 + day
//
// Keys with equal heads get new heads from the next 7 characters of their rests: the two highest bits stay, the others
// have the layout of a text. The rest of a number begins after its ninth digit and has neither the leading zeros of the
// number nor the trailing zeros of its fraction. The number of digits before the comma is part of the first head, so
// the rests of equal heads have their commas at the same position.
#include "archive/sort_key.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <optional>
#include <span>

#include "support/text_helpers.h"
#include "values/code_page.h"
#include "values/text_parts.h"

namespace oxaqrycln {
namespace {

constexpr std::int32_t kDateFlag = 0x400;
constexpr std::int32_t kNumberFlag = 0x200;

constexpr unsigned kClassShift = 62;
constexpr std::uint64_t kNegativeClass = 1;
constexpr std::uint64_t kValueClass = 2;
constexpr std::uint64_t kBelowClass = (std::uint64_t{1} << kClassShift) - 1;

constexpr std::size_t kHeadCharacters = 7;
constexpr unsigned kSizeBits = 3;
constexpr std::size_t kHeadDigits = 9;
constexpr unsigned kDigitBits = 31;

bool IsDigit(char c) noexcept { return c >= '0' && c <= '9'; }

SortKey KeyWithRest(std::uint64_t head, std::string_view rest, std::uint32_t row) noexcept {
  return {head, rest.data(), static_cast<std::uint32_t>(rest.size()), row};
}

template <typename Code>
std::uint64_t HeadOfCharacters(std::string_view text, Code&& code) noexcept {
  const std::size_t size = std::min(text.size(), kHeadCharacters);
  std::uint64_t head = 0;
  for (std::size_t i = 0; i < size; ++i) head = head << 8U | static_cast<std::uint8_t>(code(text[i]));
  head <<= 8U * (kHeadCharacters - size);
  return head << kSizeBits | size;
}

SortKey TextKey(std::string_view text, std::uint32_t row) noexcept {
  const std::uint64_t head = HeadOfCharacters(text, [](char c) { return UpperCase(c); });
  return KeyWithRest(head, text.substr(std::min(text.size(), kHeadCharacters)), row);
}

// Replaces the head by one of the next characters of the rest.
void Advance(SortKey& key) noexcept {
  const std::string_view rest(key.rest, key.restSize);
  const std::uint64_t type = key.head >> kClassShift;
  if (type == 0) {
    key = TextKey(rest, key.row);
    return;
  }
  const std::uint64_t digits = HeadOfCharacters(rest, [](char c) { return IsDigit(c) ? c : ','; });
  const std::uint64_t head = type << kClassShift | (type == kNegativeClass ? digits ^ kBelowClass : digits);
  key = KeyWithRest(head, rest.substr(std::min(rest.size(), kHeadCharacters)), key.row);
}

// Removes the digits at the start of the text and returns their number, if there are least to most of them.
std::optional<unsigned> TakeDigits(std::string_view& text, std::size_t least, std::size_t most) noexcept {
  unsigned number = 0;
  std::size_t count = 0;
  for (; count < text.size() && IsDigit(text[count]); ++count) {
    if (count == most) return std::nullopt;
    number = number * 10 + static_cast<unsigned>(text[count] - '0');
  }
  text.remove_prefix(count);
  if (count < least) return std::nullopt;
  return number;
}

std::optional<std::uint64_t> DateHead(std::string_view text) noexcept {
  const auto* const between = std::find_if_not(text.begin(), text.end(), IsDigit);
  const char separator = between == text.end() ? '\0' : *between;
  const bool isYearFirst = separator == '-';
  if (!isYearFirst && separator != '.' && separator != '/') return std::nullopt;

  const auto first = TakeDigits(text, isYearFirst ? 4 : 1, isYearFirst ? 4 : 2);
  if (!first || !text.starts_with(separator)) return std::nullopt;
  text.remove_prefix(1);
  const auto second = TakeDigits(text, 1, 2);
  if (!second || !text.starts_with(separator)) return std::nullopt;
  text.remove_prefix(1);
  const auto third = TakeDigits(text, isYearFirst ? 1 : 4, isYearFirst ? 2 : 4);
  if (!third || !text.empty()) return std::nullopt;

  const unsigned year = isYearFirst ? *first : *third;
  const unsigned month = separator == '/' ? *first : *second;
  const unsigned dayBesideMonth = separator == '/' ? *second : *first;
  const unsigned day = isYearFirst ? *third : dayBesideMonth;
  const std::chrono::year_month_day date{std::chrono::year{static_cast<int>(year)}, std::chrono::month{month},
                                         std::chrono::day{day}};
  if (!date.ok()) return std::nullopt;
  return kValueClass << kClassShift | ((year * 100 + month) * 100 + day);
}

// The digits of a number before its comma, and its text from the comma on, without leading and trailing zeros.
struct Digits {
  bool negative = false;
  std::string_view whole;
  std::string_view fraction;
};

std::optional<Digits> SplitNumber(std::string_view text) noexcept {
  text = Trimmed(text, " \t");
  Digits digits;
  if (text.starts_with('-') || text.starts_with('+')) {
    digits.negative = text[0] == '-';
    text.remove_prefix(1);
  }
  std::size_t point = 0;
  while (point < text.size() && IsDigit(text[point])) ++point;
  digits.whole = text.substr(0, point);
  digits.fraction = text.substr(point);
  if (digits.whole.empty()) return std::nullopt;
  if (!digits.fraction.empty()) {
    const bool isPoint = digits.fraction[0] == ',' || digits.fraction[0] == '.';
    if (!isPoint || digits.fraction.size() == 1) return std::nullopt;
    if (!std::all_of(digits.fraction.begin() + 1, digits.fraction.end(), IsDigit)) return std::nullopt;
  }
  digits.whole.remove_prefix(std::min(digits.whole.find_first_not_of('0'), digits.whole.size()));
  while (digits.fraction.ends_with('0')) digits.fraction.remove_suffix(1);
  if (digits.fraction.size() == 1) digits.fraction = {};
  if (digits.whole.empty() && digits.fraction.empty()) digits.negative = false;
  return digits;
}

SortKey NumberKey(const Digits& digits, std::uint32_t row) noexcept {
  const std::size_t wholeInHead = std::min(digits.whole.size(), kHeadDigits);
  // The comma takes one of the fraction's characters.
  const std::size_t fractionInHead =
      wholeInHead == kHeadDigits ? 0 : std::min(digits.fraction.size(), kHeadDigits - wholeInHead + 1);
  std::uint64_t leading = 0;
  std::size_t count = wholeInHead;
  for (const char c : digits.whole.substr(0, wholeInHead)) leading = leading * 10 + static_cast<unsigned>(c - '0');
  for (std::size_t i = 1; i < fractionInHead; ++i, ++count) {
    leading = leading * 10 + static_cast<unsigned>(digits.fraction[i] - '0');
  }
  for (; count < kHeadDigits; ++count) leading *= 10;

  const std::uint64_t magnitude = std::uint64_t{digits.whole.size()} << kDigitBits | leading;
  const std::uint64_t head = digits.negative ? kNegativeClass << kClassShift | (magnitude ^ kBelowClass)
                                             : kValueClass << kClassShift | magnitude;
  // The whole part and the fraction are adjacent in the row: a rest that begins in the former continues in the latter.
  const bool endsInWhole = wholeInHead < digits.whole.size();
  const char* const rest = endsInWhole ? digits.whole.data() + wholeInHead : digits.fraction.data() + fractionInHead;
  const std::size_t restSize = digits.whole.size() - wholeInHead + digits.fraction.size() - fractionInHead;
  return KeyWithRest(head, {rest, restSize}, row);
}

using Keys = std::span<SortKey>;

void SortByHeads(Keys keys, SortOrder order) {
  const auto ascends = [](const SortKey& left, const SortKey& right) { return left.head < right.head; };
  const auto descends = [](const SortKey& left, const SortKey& right) { return left.head > right.head; };
  const bool isDone =
      order == SortOrder::kAscending ? std::ranges::is_sorted(keys, ascends) : std::ranges::is_sorted(keys, descends);
  if (isDone) return;  // the usual case when all are equal so far
  if (order == SortOrder::kAscending) {
    std::ranges::stable_sort(keys, ascends);
  } else {
    std::ranges::stable_sort(keys, descends);
  }
}

}  // namespace

KeyKind KindOfFlags(std::string_view flags) noexcept {
  const std::int32_t bits = ToNumber(flags);
  if ((bits & kDateFlag) != 0) return KeyKind::kDate;
  return (bits & kNumberFlag) != 0 ? KeyKind::kNumber : KeyKind::kText;
}

SortKey MakeSortKey(KeyKind kind, std::string_view text, std::uint32_t row) noexcept {
  if (kind == KeyKind::kDate) {
    if (const auto head = DateHead(text)) return KeyWithRest(*head, {}, row);
  } else if (kind == KeyKind::kNumber) {
    if (const auto digits = SplitNumber(text)) return NumberKey(*digits, row);
  }
  return TextKey(text, row);
}

bool Precedes(SortKey left, SortKey right) noexcept {
  while (left.head == right.head && (left.restSize | right.restSize) != 0) {
    Advance(left);
    Advance(right);
  }
  return left.head < right.head;
}

void SortKeys(std::vector<SortKey>& keys, SortOrder order) {
  // Ranges of keys whose heads have not been compared yet; they do not overlap.
  struct Run {
    std::uint32_t begin;
    std::uint32_t end;
  };
  std::vector<Run> todo{{0, static_cast<std::uint32_t>(keys.size())}};
  while (!todo.empty()) {
    const Run run = todo.back();
    todo.pop_back();
    SortByHeads(Keys(keys).subspan(run.begin, run.end - run.begin), order);
    for (std::uint32_t begin = run.begin, end = begin; begin < run.end; begin = end) {
      bool hasRest = false;
      for (; end < run.end && keys[end].head == keys[begin].head; ++end) hasRest |= keys[end].restSize != 0;
      if (!hasRest || end - begin == 1) continue;
      for (std::uint32_t i = begin; i < end; ++i) Advance(keys[i]);
      todo.push_back({begin, end});
    }
  }
}

}  // namespace oxaqrycln
