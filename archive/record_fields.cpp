#include "archive/record_fields.h"

#include "values/errors.h"

namespace oxaqrycln {
namespace {

constexpr std::string_view kBetween = "^,^";
constexpr std::string_view kClosing = ",^";  // put behind a line before it is cut
constexpr std::size_t kUsualFields = 20;     // room for a segment, the longest record

}  // namespace

RecordFields::RecordFields(std::string_view line) : closed_("^," + std::string(line).append(kClosing)) {
  fields_.reserve(kUsualFields);
  const std::string_view closed = closed_;
  for (std::size_t start = 0;;) {
    const std::size_t end = closed.find(kBetween, start);
    fields_.push_back(closed.substr(start, end == std::string::npos ? end : end - start));
    if (end == std::string::npos) return;
    start = end + kBetween.size();
  }
}

std::string_view RecordFields::Field(std::int32_t number) const {
  if (number < 0 || static_cast<std::size_t>(number) >= fields_.size()) {
    throw RuntimeError(error::kSubscriptOutOfRange);
  }
  return fields_[static_cast<std::size_t>(number)];
}

std::string_view RecordFields::Behind(std::int32_t number) const {
  const std::string_view field = Field(number);
  const auto end = static_cast<std::size_t>(field.data() + field.size() - closed_.data());
  std::string_view behind = std::string_view(closed_).substr(end + 1);
  behind.remove_suffix(kClosing.size());
  return behind;
}

void RecordFields::WriteText(std::int32_t number, Variant* output) const {
  if (output != nullptr) output->AssignText(Field(number));
}

void RecordFields::WriteInteger(std::int32_t number, Variant* output) const {
  if (output != nullptr) *output = Variant(Field(number)).ToInteger();
}

void RecordFields::WriteLong(std::int32_t number, Variant* output) const {
  if (output != nullptr) *output = TextToLong(Field(number));
}

bool FindRecordField(std::string_view line, std::int32_t number, std::string_view& field) noexcept {
  const char* const last = line.data() + line.size();
  const bool opens = line.starts_with('^');
  std::int32_t current = opens ? 1 : 0;
  const char* start = line.data() + (opens ? 1 : 0);
  const char* end = nullptr;
  ForEachPlace(start, last, "^,^", [&](const char* place) {
    if (place < start) return true;  // its first caret has closed the field before
    if (current == number) {
      end = place;
      return false;
    }
    ++current;
    start = place + kBetween.size();
    return true;
  });
  if (current != number) return false;
  if (end == nullptr) end = start != last && last[-1] == '^' ? last - 1 : last;
  field = {start, end};
  return true;
}

}  // namespace oxaqrycln
