// The caret-quoted fields of records, hit lines and requests. Input: a field number, a line end, the record.
#include "archive/record_fields.h"
#include "fuzz/input.h"
#include "support/text_helpers.h"
#include "transport/request_text.h"

using namespace oxaqrycln;
using namespace oxaqrycln::fuzz;

namespace {

void CheckRecord(std::string_view line) {
  const std::string closed = "^," + std::string(line) + ",^";
  const auto expected = Parts(closed, "^,^");
  const RecordFields fields(line);
  const auto count = static_cast<std::int32_t>(expected.size());
  for (std::int32_t i = 1; i < count; ++i) {
    Require(fields.Field(i) == expected[static_cast<std::size_t>(i)], "a field is what is between the separators");
  }
  Require(ErrorOf([&] { fields.Field(count); }) == error::kSubscriptOutOfRange, "there is no further field");
  Require(ErrorOf([&] { fields.Field(0); }) == error::kSubscriptOutOfRange, "there is no field below 1");

  // The last field also without the caret that closes the line, or without the ",^" that was added.
  const bool isClosed = expected.back().empty();
  const std::int32_t last = isClosed ? count - 2 : count - 1;
  for (std::int32_t i = 1; i < count; ++i) {
    std::string_view field = expected[static_cast<std::size_t>(i)];
    if (i == last && !isClosed) field.remove_suffix(2);
    const auto found = FindRecordField(line, i);
    Require(found.has_value() == (i <= last), "a line has the fields up to its closing caret");
    Require(!found || *found == field, "a field is found where the cut has it");
  }
}

void CheckRequest(std::string_view text, std::int32_t number) {
  auto expected = Parts(text.substr(std::min<std::size_t>(text.size(), 1)), "^,^");
  if (expected.back().ends_with('^')) {
    expected.back().remove_suffix(1);
  } else {
    expected.pop_back();
  }
  const auto index = static_cast<std::size_t>(std::max(number, 1)) - 1;
  Require(GetRequestField(text, number) == (index < expected.size() ? expected[index] : "{Err}"),
          "a request's field is the text between its carets");
}

}  // namespace

void oxaqrycln::fuzz::Run(std::string_view text) {
  const std::int32_t number = ToNumber(CutOff(text, "\n"));
  CheckRecord(text);
  CheckRequest(text, number);
}
