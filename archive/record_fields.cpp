#include "archive/record_fields.h"

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

}  // namespace oxaqrycln
