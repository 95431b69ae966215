// sort_key.h - the keys by which a hit list is sorted: texts, dates or numbers, as the flags of a column say.
// A key refers to the text that it was made from. Knows nothing of rows or of directions.
#ifndef OXAQRYCLN_ARCHIVE_SORT_KEY_H_
#define OXAQRYCLN_ARCHIVE_SORT_KEY_H_

#include <cstdint>
#include <string_view>
#include <vector>

namespace oxaqrycln {

enum class KeyKind { kText, kDate, kNumber };

// The kind of a column: bit 0x400 of its flags means dates and takes precedence, bit 0x200 means numbers. Flags are
// read as Variant::ToLong reads a text, so "1024" is 0x400; flags that it cannot read ("", "&H400") mean texts.
KeyKind KindOfFlags(std::string_view flags) noexcept;

// A part of a field that is compared at once, and the text after it.
struct SortKey {
  std::uint64_t head;
  const char* rest;
  std::uint32_t restSize;
  std::uint32_t row;  // set by the caller; never compared
};

// The key of a field's text.
// - Texts are ordered by the codes of their upper-case characters.
// - Dates are dd.mm.yyyy, yyyy-mm-dd or mm/dd/yyyy: one or two digits for day and month, four for the year, a day that
//   exists, and nothing else.
// - Numbers are decimal digits with at most one comma or point between two of them, a sign in front, and blanks or tabs
//   around. They may have any number of digits, all of which count; leading zeros, trailing zeros of a fraction and the
//   sign of zero do not.
// Any other text in a column of dates or numbers comes before all of them, in the order of texts.
SortKey MakeSortKey(KeyKind kind, std::string_view text, std::uint32_t row) noexcept;

// Whether left comes before right in ascending order. Both are keys of one kind, as MakeSortKey made them.
bool Precedes(SortKey left, SortKey right) noexcept;

enum class SortOrder { kAscending, kDescending };
// Sorts keys of one kind, as MakeSortKey made them; equal ones keep their order. Only the rows of the keys may be used
// afterwards. Takes up to twelve bytes a key beside them, and reads each character of the texts at most once.
void SortKeys(std::vector<SortKey>& keys, SortOrder order);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_ARCHIVE_SORT_KEY_H_
