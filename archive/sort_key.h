// sort_key.h - the keys by which a hit list is sorted: texts, dates or numbers, as the flags of a column say.
// A key refers to the text it was made from and is as short-lived. Knows nothing of rows or of directions.
#ifndef OXAQRYCLN_ARCHIVE_SORT_KEY_H_
#define OXAQRYCLN_ARCHIVE_SORT_KEY_H_

#include <cstdint>
#include <string_view>

namespace oxaqrycln {

enum class KeyKind { kText, kDate, kNumber };

// What a column holds: bit 0x400 of its flags stands for dates and is looked at first, bit 0x200 for numbers. Flags are
// read as Variant::ToLong reads a text, so "1024" is 0x400; what it does not read ("", "&H400") stands for texts.
KeyKind KindOfFlags(std::string_view flags) noexcept;

struct SortKey {
  std::uint64_t head;      // decides unless it is equal
  const char* rest;        // then this text does, up to restSize characters
  std::uint32_t restSize;  // 0: the head says everything
  std::uint32_t row;       // the caller's: where the key comes from
};

// The key of a field's text.
// - Texts are in the order of their upper-case characters' codes.
// - Dates are dd.mm.yyyy, yyyy-mm-dd or mm/dd/yyyy: one or two digits for day and month, four for the year, a day that
//   exists, and nothing else.
// - Numbers are decimal digits with at most one comma or point between two of them, a sign in front, and blanks or tabs
//   around. They may have any number of digits, all of which count; leading zeros, trailing zeros of a fraction and the
//   sign of zero do not.
// What is no date or number comes before all that are, in the order of texts; the empty text is the first.
SortKey MakeSortKey(KeyKind kind, std::string_view text, std::uint32_t row) noexcept;

// For keys with equal heads.
bool RestPrecedes(const SortKey& left, const SortKey& right) noexcept;

// Whether left comes before right in ascending order; both are keys of one kind.
inline bool Precedes(const SortKey& left, const SortKey& right) noexcept {
  if (left.head != right.head) return left.head < right.head;
  return (left.restSize | right.restSize) != 0 && RestPrecedes(left, right);
}

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_ARCHIVE_SORT_KEY_H_
