// base64.h - Base64 as defined in RFC 4648: the common alphabet, padding, no line breaks.
#ifndef OXAQRYCLN_VALUES_BASE64_H_
#define OXAQRYCLN_VALUES_BASE64_H_

#include <optional>
#include <string>
#include <string_view>

namespace oxaqrycln {

std::string EncodeBase64(std::string_view bytes);
// Nothing for a text that is not such an encoding.
std::optional<std::string> DecodeBase64(std::string_view text);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_VALUES_BASE64_H_
