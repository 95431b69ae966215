// text_helpers.h - the reversible text encoding, counted search, page lists and error-free number conversion.
// Free of state; every function but ToNumber raises RuntimeError on failure.
#ifndef OXAQRYCLN_SUPPORT_TEXT_HELPERS_H_
#define OXAQRYCLN_SUPPORT_TEXT_HELPERS_H_

#include <cstdint>
#include <string>
#include <string_view>

namespace oxaqrycln {

// Two upper-case hexadecimal digits a character, the last character first. A character whose code plus its 1-based
// position is 174 or more loses a digit. Raises Overflow when code plus position exceeds 32767.
std::string Encode(std::string_view text);
// The inverse of Encode, for texts that lost no digit. Raises Type mismatch for a text that is no such encoding,
// Invalid procedure call for a code below 0 and for the lengths 3 and 7, 11, ... that have no first pair.
std::string Decode(std::string_view text);

// The 1-based position of the n-th occurrence of a text, 0 when there are fewer. Occurrences may overlap.
std::int32_t InStrExt(std::string_view text, std::string_view search, std::int32_t occurrence);

// "1;4-6;9-7" as "1,4,5,6,9,8,7". Raises Out of string space when the list would pass a million pages.
std::string GetPages(std::string_view pages);

// The whole number that a text spells, or 0 when it spells none.
std::int32_t ToNumber(std::string_view text) noexcept;

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_SUPPORT_TEXT_HELPERS_H_
