// text.h - dividing texts and reading numbers.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_TEXT_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_TEXT_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace oxaqrycln::oxaqry {

// The parts between the separators; one empty part of the empty text.
std::vector<std::string> SplitText(std::string_view text, std::string_view separator);

// A whole number of 32 bits, written in decimal digits, with "-" in front of a negative one.
std::optional<std::int32_t> ParseInteger(std::string_view text);
// A whole number from 0 to 2147483647, written in decimal digits only.
std::optional<std::int32_t> ParseNumber(std::string_view text);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_TEXT_H_
