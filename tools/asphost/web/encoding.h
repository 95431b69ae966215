// encoding.h - the encodings of the web: HTML, URLs, and the fields of queries, forms and cookies.
#ifndef OXAQRYCLN_TOOLS_ASPHOST_WEB_ENCODING_H_
#define OXAQRYCLN_TOOLS_ASPHOST_WEB_ENCODING_H_

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace oxaqrycln::asphost {

// Letters outside ASCII stay.
std::string AsciiLowerCase(std::string_view text);

// The text with < > & and both quotes as entities: safe between tags and inside a quoted attribute.
std::wstring HtmlEncode(std::wstring_view text);
std::string HtmlEncode(std::string_view text);

// The bytes with all but ASCII letters, digits, "-", "." and "_" as %XX, and blanks as "+".
std::string UrlEncode(std::string_view bytes);
// The inverse; a "%" without two hexadecimal digits stays.
std::string UrlDecode(std::string_view text);
// The same for the path of a URL, in which "+" stays.
std::string PathDecode(std::string_view text);

// Names and values in the order they were sent; a name may occur several times.
using Fields = std::vector<std::pair<std::string, std::string>>;

// The fields of a query string or of the body of a form, "a=1&b=2". Fields behind the first 1000 are left out.
Fields ParseForm(std::string_view text);
// The fields of a Cookie header, "a=1; b=2".
Fields ParseCookies(std::string_view text);

// The values of a name, in any letter case, with ", " between them; nothing if there is no such name.
std::optional<std::string> ValueOf(const Fields& fields, std::string_view name);

}  // namespace oxaqrycln::asphost

#endif  // OXAQRYCLN_TOOLS_ASPHOST_WEB_ENCODING_H_
