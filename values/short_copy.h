// short_copy.h - copying the short texts of a list's columns, for which the call of a library function costs more than
// the copy. Ranges may overlap.
#ifndef OXAQRYCLN_VALUES_SHORT_COPY_H_
#define OXAQRYCLN_VALUES_SHORT_COPY_H_

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace oxaqrycln {

namespace short_copy {

// From one word to two: the first and the last word of the range, which may share bytes.
template <typename Word>
inline void CopyTwo(char* to, const char* from, std::size_t size) noexcept {
  Word first;
  Word last;
  std::memcpy(&first, from, sizeof first);
  std::memcpy(&last, from + size - sizeof last, sizeof last);
  std::memcpy(to, &first, sizeof first);
  std::memcpy(to + size - sizeof last, &last, sizeof last);
}

}  // namespace short_copy

inline void CopyShort(char* to, const char* from, std::size_t size) noexcept {
  if (size > 16) {
    std::memmove(to, from, size);
  } else if (size >= 8) {
    short_copy::CopyTwo<std::uint64_t>(to, from, size);
  } else if (size >= 4) {
    short_copy::CopyTwo<std::uint32_t>(to, from, size);
  } else if (size >= 2) {
    short_copy::CopyTwo<std::uint16_t>(to, from, size);
  } else if (size == 1) {
    *to = *from;
  }
}

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_VALUES_SHORT_COPY_H_
