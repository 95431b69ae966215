// byte_scan.h - finding a pattern of two or three bytes whose places lie close together, where the call of a library
// function for each would cost more than the search.
#ifndef OXAQRYCLN_VALUES_BYTE_SCAN_H_
#define OXAQRYCLN_VALUES_BYTE_SCAN_H_

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace oxaqrycln {

namespace byte_scan {

inline constexpr std::size_t kBlock = 16;  // places looked at in one step

#if defined(__SSE2__)
// Bit i is set where the pattern stands at at + i; reads kBlock - 1 bytes more than the pattern has.
template <std::size_t kSize>
inline std::uint32_t MatchesAt(const char* at, const char (&pattern)[kSize]) noexcept {
  __m128i matches = _mm_set1_epi8(-1);
  for (std::size_t i = 0; i + 1 < kSize; ++i) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at + i));
    matches = _mm_and_si128(matches, _mm_cmpeq_epi8(bytes, _mm_set1_epi8(pattern[i])));
  }
  return static_cast<std::uint32_t>(_mm_movemask_epi8(matches));
}

// The same of four blocks, for places that lie some tens of bytes apart.
template <std::size_t kSize>
inline std::uint64_t MatchesInFour(const char* at, const char (&pattern)[kSize]) noexcept {
  const std::uint64_t first = MatchesAt(at, pattern) | MatchesAt(at + kBlock, pattern) << kBlock;
  const std::uint64_t second = MatchesAt(at + 2 * kBlock, pattern) | MatchesAt(at + 3 * kBlock, pattern) << kBlock;
  return first | second << (2 * kBlock);
}
#endif

}  // namespace byte_scan

// Calls visit(place) for every place in [at, last) from which on the pattern, a literal, stands whole before last, in
// ascending order, until visit returns false. Places may overlap.
template <std::size_t kSize, typename Visit>
inline void ForEachPlace(const char* at, const char* last, const char (&pattern)[kSize], Visit&& visit) {
  constexpr std::size_t kLength = kSize - 1;
#if defined(__SSE2__)
  using byte_scan::kBlock;
  constexpr auto kFour = static_cast<std::ptrdiff_t>(4 * kBlock + kLength - 1);
  for (; last - at >= kFour; at += 4 * kBlock) {
    for (std::uint64_t found = byte_scan::MatchesInFour(at, pattern); found != 0; found &= found - 1) {
      if (!visit(at + std::countr_zero(found))) return;
    }
  }
  constexpr auto kReach = static_cast<std::ptrdiff_t>(kBlock + kLength - 1);
  for (; last - at >= kReach; at += kBlock) {
    for (std::uint32_t found = byte_scan::MatchesAt(at, pattern); found != 0; found &= found - 1) {
      if (!visit(at + std::countr_zero(found))) return;
    }
  }
#endif
  for (; last - at >= static_cast<std::ptrdiff_t>(kLength); ++at) {
    if (std::memcmp(at, pattern, kLength) == 0 && !visit(at)) return;
  }
}

// The first place of the pattern in a text; npos when there is none. The bytes up to readable, the text's end or
// behind it, may be looked at: with some there, a short text is searched in one step.
template <std::size_t kSize>
inline std::size_t FindNear(std::string_view text, const char (&pattern)[kSize], const char* readable) noexcept {
  std::size_t found = std::string_view::npos;
  const char* const last = text.data() + text.size();
  ForEachPlace(text.data(), readable, pattern, [&](const char* place) {
    if (last - place >= static_cast<std::ptrdiff_t>(kSize - 1)) found = static_cast<std::size_t>(place - text.data());
    return false;
  });
  return found;
}
template <std::size_t kSize>
inline std::size_t FindNear(std::string_view text, const char (&pattern)[kSize]) noexcept {
  return FindNear(text, pattern, text.data() + text.size());
}

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_VALUES_BYTE_SCAN_H_
