#include "archive/record_fields.h"

#include "values/errors.h"

namespace oxaqrycln {
namespace {

constexpr std::size_t kUsualFields = 20;  // room for a segment, the longest record

}  // namespace

RecordFields::RecordFields(std::string_view line) : line_(line) {
  std::size_t start = 1;
  if (!line.starts_with('^')) {
    const std::size_t first = FindSeparator(line, 0);
    if (first == std::string_view::npos) return;
    start = first + kFieldSeparator.size();
  }
  fields_.reserve(kUsualFields);
  for (std::size_t end; (end = FindSeparator(line, start)) != std::string_view::npos;
       start = end + kFieldSeparator.size()) {
    fields_.push_back(line.substr(start, end - start));
  }
  if (start <= line.size()) unclosed_ = std::string(line.substr(start)).append(kRecordEnd);
  fields_.emplace_back(unclosed_);
}

std::string_view RecordFields::Field(std::int32_t number) const {
  if (number < 1 || static_cast<std::size_t>(number) > fields_.size()) throw RuntimeError(error::kSubscriptOutOfRange);
  return fields_[static_cast<std::size_t>(number) - 1];
}

std::string_view RecordFields::Behind(std::int32_t number) const {
  const std::string_view field = Field(number);
  return line_.substr(static_cast<std::size_t>(field.data() + field.size() - line_.data()) + 1);
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

std::optional<std::string_view> FindRecordField(std::string_view line, std::int32_t number) noexcept {
  std::size_t start = line.starts_with('^') ? 1 : 0;
  for (auto current = static_cast<std::int32_t>(start); start <= line.size(); ++current) {
    const std::size_t end = FindSeparator(line, start);
    if (current == number) return line.substr(start, end - start);
    if (end == std::string_view::npos) break;
    start = end + kFieldSeparator.size();
  }
  return std::nullopt;
}

}  // namespace oxaqrycln
