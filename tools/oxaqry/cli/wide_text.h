// wide_text.h - text of Windows, which is UTF-16, as UTF-8. For the sources of that system only.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_WIDE_TEXT_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_WIDE_TEXT_H_

#include <string>
#include <string_view>

namespace oxaqrycln::oxaqry {

// Half a character becomes U+FFFD.
std::string Utf8FromWide(std::wstring_view text);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_WIDE_TEXT_H_
