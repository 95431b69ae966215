// Conversions of a text into a number, a Boolean or a date. Input: the text.
#include <cmath>
#include <utility>

#include "fuzz/input.h"
#include "support/text_helpers.h"
#include "values/variant.h"

using namespace oxaqrycln;
using namespace oxaqrycln::fuzz;

namespace {

bool IsDigits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

template <typename Convert>
void CheckWhole(std::int32_t number, const char* claim, Convert&& convert) {
  decltype(convert()) got{};
  const std::int32_t raised = ErrorOf([&] { got = convert(); });
  if (std::in_range<decltype(got)>(number)) {
    Require(raised == 0 && got == number, claim);
  } else {
    Require(raised == error::kOverflow, "digits of a number out of range are refused");
  }
}

// "-123": a sign and so few digits that the number fits into an integer.
void CheckPlainInteger(std::string_view text, const Variant& value) {
  const bool negative = text.starts_with('-');
  const std::string_view digits = text.substr(negative ? 1 : 0);
  if (!IsDigits(digits) || digits.size() > 9) return;
  std::int32_t number = 0;
  for (const char digit : digits) number = number * 10 + (digit - '0');
  if (negative) number = -number;
  Require(value.ToDouble() == number, "digits are read as their number");
  CheckWhole(number, "digits are a Long", [&] { return value.ToLong(); });
  CheckWhole(number, "digits are an Integer", [&] { return value.ToInteger(); });
  CheckWhole(number, "digits are a Byte", [&] { return value.ToByte(); });
}

// Any decimal number against the C library's reading of it.
void CheckDecimal(const std::string& text, const Variant& value) {
  if (text.find_first_not_of("0123456789.eE+-") != std::string::npos) return;
  char* end = nullptr;
  const double expected = std::strtod(text.c_str(), &end);
  if (text.empty() || end != text.c_str() + text.size()) {
    Require(ErrorOf([&] { value.ToDouble(); }) == error::kTypeMismatch, "a text that is not a number is refused");
  } else if (std::isinf(expected)) {
    Require(ErrorOf([&] { value.ToDouble(); }) == error::kOverflow, "a number out of range is refused");
  } else if (std::isnormal(expected) || expected == 0) {
    double got = 1;
    Require(ErrorOf([&] { got = value.ToDouble(); }) == 0 && got == expected,
            "a decimal number has the value that it spells");
  }
}

// Rounds to the nearest whole number, halves to the even one.
void CheckRounding(const Variant& value, std::int32_t whole) {
  const double distance = std::fabs(value.ToDouble() - whole);
  Require(distance < 0.5 || (distance == 0.5 && whole % 2 == 0), "the result is the nearest whole number");
}

}  // namespace

void oxaqrycln::fuzz::Run(std::string_view input) {
  const std::string text(input);
  const Variant value(text);
  CheckPlainInteger(text, value);
  CheckDecimal(text, value);
  std::int32_t whole = 0;
  const std::int32_t raised = ErrorOf([&] { whole = TextToLong(text); });
  Require(ErrorOf([&] { value.ToLong(); }) == raised, "both ways to a Long agree");
  if (raised == 0) {
    Require(value.ToLong() == whole, "both ways to a Long agree");
    CheckRounding(value, whole);
  }
  Require(ToNumber(text) == (raised == 0 ? whole : 0), "a text that is not a number counts as 0");
  ErrorOf([&] { value.ToInteger(); });
  ErrorOf([&] { value.ToByte(); });
  ErrorOf([&] { value.ToBoolean(); });
  ErrorOf([&] {
    const DateTime date = value.ToDate();
    const int year = date.Civil().year;
    Require(year >= 100 && year <= 9999, "a date is of the years 100 to 9999");
    Require(DateTime::FromIso(date.ToIso()) == date, "the text of a date is read as the same date");
  });
}
