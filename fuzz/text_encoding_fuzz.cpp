// Encode and Decode. Input: a text to encode, which is also decoded unchanged.
#include "fuzz/input.h"
#include "support/text_helpers.h"
#include "values/code_page.h"

using namespace oxaqrycln;
using namespace oxaqrycln::fuzz;

namespace {

// Whether every character keeps its digits: its code and position stay below 174.
bool LosesNothing(std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (static_cast<unsigned char>(text[i]) + i + 1 >= 174) return false;
  }
  return true;
}

}  // namespace

void oxaqrycln::fuzz::Run(std::string_view text) {
  std::string encoded;
  if (ErrorOf([&] { encoded = Encode(text); }) == 0) {
    Require(encoded.size() == text.size() * 2, "two digits a character");
    Require(encoded.find_first_not_of("0123456789ABCDEF") == std::string::npos, "the digits are hexadecimal");
    if (LosesNothing(text)) Require(Decode(encoded) == text, "decoding is the inverse of encoding");
  } else {
    Require(text.size() > 32767U - 255U, "only a long text does not fit");
  }
  std::string decoded;
  const std::int32_t refused = ErrorOf([&] { decoded = Decode(text); });
  Require(refused == 0 || refused == error::kTypeMismatch || refused == error::kInvalidProcedureCall,
          "what is no encoding is refused");
  Require(decoded.size() <= text.size() / 2, "a character takes two digits");
  if (refused != 0) return;
  // The characters that form no pair are the first ones.
  Require(Encode(decoded) == UpperCase(text.substr(text.size() - 2 * decoded.size())),
          "encoding is the inverse of decoding");
}
