#include "archive/record_fields.h"

#include <cstring>

#include "platform/errors.h"

namespace oxaqrycln {
namespace {

constexpr std::string_view kBetween = "^,^";

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
      at = static_cast<const char*>(std::memchr(at, '^', static_cast<std::size_t>(last - at)));
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
