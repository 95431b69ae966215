// code_page.h - the Windows-1252 code page: its case mapping, and conversion from and to UTF-8 and UTF-16.
// Text inside the component is single-byte text of this code page; Unicode exists at the bindings only.
// The five bytes that it leaves undefined are the control characters of the same number.
#ifndef OXAQRYCLN_VALUES_CODE_PAGE_H_
#define OXAQRYCLN_VALUES_CODE_PAGE_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace oxaqrycln {

// The upper-case form of one character; a character without one stays.
char UpperCase(char character) noexcept;
std::string UpperCase(std::string_view text);
// Whether left comes before right when the codes of their upper-case forms are compared.
bool PrecedesInUpperCase(std::string_view left, std::string_view right) noexcept;
// The lower-case form of a text; characters without one stay.
std::string LowerCase(std::string_view text);

std::uint32_t ToUnicode(char character) noexcept;
// Nothing for a character that the code page does not have.
std::optional<char> FromUnicode(std::uint32_t code) noexcept;

// Whether all characters are below 0x80, which are the same in UTF-8.
bool IsAscii(std::string_view text) noexcept;
std::string ToUtf8(std::string_view text);
void AppendUtf8(std::string& utf8, std::string_view text);
// The same at target; returns how many bytes it wrote. Up to eight bytes behind them may be overwritten, too: a text
// has room in Utf8Room(text.size()) bytes.
std::size_t WriteUtf8(std::string_view text, char* target) noexcept;
constexpr std::size_t Utf8Room(std::size_t byteCount) noexcept { return 3 * byteCount + 8; }
// Nothing if the text is not well-formed UTF-8 or contains a character that the code page does not have.
std::optional<std::string> FromUtf8(std::string_view utf8);
// The first character for which that is nothing, counted from 1; 0 without one.
std::size_t PlaceOfForeignCharacter(std::string_view utf8) noexcept;

// Every character of the code page is one unit; target has room for text.size() units.
void ToUtf16(std::string_view text, char16_t* target) noexcept;
// Nothing if the text contains a character that the code page does not have.
std::optional<std::string> FromUtf16(std::u16string_view utf16);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_VALUES_CODE_PAGE_H_
