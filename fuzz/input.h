// input.h - what the fuzz targets share: cutting an input apart, and checking claims about the results.
// Inputs are text wherever that is possible, so that the corpus can be read.
#ifndef OXAQRYCLN_FUZZ_INPUT_H_
#define OXAQRYCLN_FUZZ_INPUT_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/error_of.h"
#include "values/errors.h"

namespace oxaqrycln::fuzz {

// What every target does with an input.
void Run(std::string_view input);

// Ends the program if a claim does not hold.
inline void Require(bool holds, const char* claim) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", claim);
  std::abort();
}

// Removes the text up to the separator, or all of it without one, and the separator from rest; returns the text.
inline std::string_view CutOff(std::string_view& rest, std::string_view separator) {
  const std::size_t end = rest.find(separator);
  const std::string_view head = rest.substr(0, end);
  rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + separator.size());
  return head;
}

// The parts of a text between its separators; the empty text is one empty part.
inline std::vector<std::string_view> Parts(std::string_view text, std::string_view separator) {
  std::vector<std::string_view> parts;
  for (std::size_t start = 0;;) {
    const std::size_t end = text.find(separator, start);
    parts.push_back(text.substr(start, end - start));
    if (end == std::string_view::npos) return parts;
    start = end + separator.size();
  }
}

// The text in pieces. Each character of sizes is the size of one, and sizes is repeated: "1" to "9" are numbers of
// bytes, "0" is all the rest.
inline std::vector<std::string_view> Pieces(std::string_view text, std::string_view sizes) {
  std::vector<std::string_view> pieces;
  for (std::size_t i = 0; !text.empty(); ++i) {
    const std::size_t wanted = sizes.empty() ? 0 : static_cast<std::uint8_t>(sizes[i % sizes.size()] - '0');
    const std::size_t size = wanted == 0 ? text.size() : std::min(wanted, text.size());
    pieces.push_back(text.substr(0, size));
    text.remove_prefix(size);
  }
  return pieces;
}

using testing::ErrorOf;

}  // namespace oxaqrycln::fuzz

#endif  // OXAQRYCLN_FUZZ_INPUT_H_
