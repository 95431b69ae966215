// buffer_of.h - a response buffer with the lines of a text.
#ifndef OXAQRYCLN_TESTS_SUPPORT_BUFFER_OF_H_
#define OXAQRYCLN_TESTS_SUPPORT_BUFFER_OF_H_

#include <cstddef>
#include <string_view>
#include <utility>

#include "support/response_buffer.h"

namespace oxaqrycln::testing {

// start: where in the text the lines begin.
inline ResponseBuffer BufferOf(std::string_view text, std::size_t start = 0) {
  ByteBlock block;
  block.Append(text);
  ResponseBuffer buffer;
  buffer.Assign(std::move(block), start);
  return buffer;
}

}  // namespace oxaqrycln::testing

#endif  // OXAQRYCLN_TESTS_SUPPORT_BUFFER_OF_H_
