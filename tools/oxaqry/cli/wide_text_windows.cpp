#include <winsock2.h>
// windows.h follows winsock2.h.
#include <windows.h>

#include "tools/oxaqry/cli/wide_text.h"

namespace oxaqrycln::oxaqry {

std::string Utf8FromWide(std::wstring_view text) {
  const auto convert = [&](char* to, int room) {
    return WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), to, room, nullptr, nullptr);
  };
  std::string utf8(static_cast<std::size_t>(convert(nullptr, 0)), '\0');
  convert(utf8.data(), static_cast<int>(utf8.size()));
  return utf8;
}

}  // namespace oxaqrycln::oxaqry
