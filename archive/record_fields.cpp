#include "archive/record_fields.h"

#include <bit>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "platform/errors.h"

namespace oxaqrycln {
namespace {

constexpr std::string_view kBetween = "^,^";

// The first caret from at on, nullptr when there is none before last. The fields of a hit's head are so short that the
// call of a library function would cost more than the search.
const char* FindCaret(const char* at, const char* last) noexcept {
#if defined(__SSE2__)
  const __m128i caret = _mm_set1_epi8('^');
  for (; last - at >= 16; at += 16) {
    const __m128i chunk = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    const auto found = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(chunk, caret)));
    if (found != 0) return at + std::countr_zero(found);
  }
#endif
  return static_cast<const char*>(std::memchr(at, '^', static_cast<std::size_t>(last - at)));
}

}  // namespace

RecordFields::RecordFields(std::string_view line) {
  const std::string closed = "^," + std::string(line) + ",^";
  for (std::size_t start = 0;;) {
    const std::size_t end = closed.find(kBetween, start);
    fields_.emplace_back(closed, start, end == std::string::npos ? end : end - start);
    if (end == std::string::npos) return;
    start = end + kBetween.size();
  }
}

const std::string& RecordFields::Field(std::int32_t number) const {
  if (number < 0 || static_cast<std::size_t>(number) >= fields_.size()) {
    throw RuntimeError(error::kSubscriptOutOfRange);
  }
  return fields_[static_cast<std::size_t>(number)];
}

std::optional<HitHead> SplitHitHead(std::string_view line) noexcept {
  if (line.size() < 2 || line[0] != '^') return std::nullopt;
  std::array<std::size_t, 3> cuts{};
  const char* const first = line.data();
  const char* const last = first + line.size();
  const char* at = first + 1;
  for (std::size_t& cut : cuts) {
    for (;;) {
      at = FindCaret(at, last);
      if (at == nullptr) return std::nullopt;
      if (last - at < 3) return std::nullopt;
      if (at[1] == ',' && at[2] == '^') break;
      ++at;
    }
    cut = static_cast<std::size_t>(at - first);
    at += kBetween.size();
  }
  // A field that begins with ",^" makes cuts overlap, which the plain way does not follow.
  for (const std::size_t field : {std::size_t{1}, cuts[0] + 3, cuts[1] + 3}) {
    if (line.substr(field, 2) == ",^") return std::nullopt;
  }
  return HitHead{line.substr(1, cuts[0] - 1), line.substr(cuts[0] + 3, cuts[1] - cuts[0] - 3),
                 line.substr(cuts[1] + 3, cuts[2] - cuts[1] - 3), line.substr(cuts[2] + 2)};
}

}  // namespace oxaqrycln
