// base64.h - reads the Base64 form in which a session line carries the body of a page's request.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_BASE64_H_
#define OXAQRYCLN_TOOLS_OXAQRY_BASE64_H_

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace oxaqrycln {

// The bytes; nothing for a text that is not whole, padded Base64 of the standard alphabet.
std::optional<std::vector<std::uint8_t>> DecodeBase64(std::string_view text);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_TOOLS_OXAQRY_BASE64_H_
