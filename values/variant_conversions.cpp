// Conversions between types by the automation rules.
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <locale>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>
#include <variant>

#include "values/code_page.h"
#include "values/errors.h"
#include "values/text_parts.h"
#include "values/variant.h"

namespace oxaqrycln {
namespace {

constexpr std::string_view kBlanks = " \t";

[[noreturn]] void Mismatch() { throw RuntimeError(error::kTypeMismatch); }

double TextToDouble(std::string_view text) {
  text = Trimmed(text, kBlanks);
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  // Only plain decimal numbers: no second sign, no "inf", no "nan".
  if (text.empty() || (text[0] != '.' && (text[0] < '0' || text[0] > '9'))) Mismatch();
  double value = 0;
  const auto [end, failed] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (end != text.data() + text.size() || failed == std::errc::invalid_argument) Mismatch();
  if (failed == std::errc::result_out_of_range) {
    // Too large or too small? A stream fails only on the former; the latter is 0.
    std::istringstream stream{std::string(text)};
    stream.imbue(std::locale::classic());
    if (!(stream >> value)) throw RuntimeError(error::kOverflow);
    value = 0;
  }
  return negative ? -value : value;
}

std::optional<DateTime> TextToDate(const std::string& text) {
  if (const auto iso = DateTime::FromIso(text)) return iso;
  CivilTime civil;
  int end = 0;
  const int fields = std::sscanf(text.c_str(), "%2d.%2d.%4d%n %2d:%2d%n:%2d%n", &civil.day, &civil.month, &civil.year,
                                 &end, &civil.hour, &civil.minute, &end, &civil.second, &end);
  if (fields != 3 && fields != 5 && fields != 6) return std::nullopt;
  if (static_cast<std::size_t>(end) != text.size()) return std::nullopt;
  try {
    return DateTime::FromCivil(civil);
  } catch (const RuntimeError&) {
    return std::nullopt;
  }
}

// Rounded to the nearest whole number, halves to the even one.
template <typename Whole>
Whole Rounded(double value) {
  const double rounded = std::nearbyint(value);
  if (!(rounded >= std::numeric_limits<Whole>::min() && rounded <= std::numeric_limits<Whole>::max())) {
    throw RuntimeError(error::kOverflow);
  }
  return static_cast<Whole>(rounded);
}

std::string DoubleToText(double value) {
  char text[40];
  const auto written = std::to_chars(text, text + sizeof text, value, std::chars_format::general, 15);
  return UpperCase(std::string_view(text, static_cast<std::size_t>(written.ptr - text)));  // the exponent's "E"
}

}  // namespace

std::int32_t TextToLong(std::string_view text) {
  text = Trimmed(text, kBlanks);
  std::int32_t value = 0;
  const auto [end, failed] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (failed == std::errc() && end == text.data() + text.size()) return value;
  return Rounded<std::int32_t>(TextToDouble(text));
}

double Variant::ToDouble() const {
  switch (type()) {
    case Type::Empty:
      return 0;
    case Type::Null:
      throw RuntimeError(error::kInvalidUseOfNull);
    case Type::Boolean:
      return std::get<bool>(value_) ? -1 : 0;
    case Type::Byte:
      return std::get<std::uint8_t>(value_);
    case Type::Integer:
      return std::get<std::int16_t>(value_);
    case Type::Long:
      return std::get<std::int32_t>(value_);
    case Type::Double:
      return std::get<double>(value_);
    case Type::Date:
      return std::get<DateTime>(value_).Days();
    case Type::String:
      return TextToDouble(std::get<std::string>(value_));
    case Type::Missing:
    case Type::ByteArray:
    case Type::Object:
      break;
  }
  Mismatch();
}

bool Variant::ToBoolean() const {
  if (const auto* text = std::get_if<std::string>(&value_)) {
    const std::string upper = UpperCase(Trimmed(*text, kBlanks));
    if (upper == "TRUE") return true;
    if (upper == "FALSE") return false;
  }
  return ToDouble() != 0;
}

std::uint8_t Variant::ToByte() const { return Rounded<std::uint8_t>(ToDouble()); }

std::int16_t Variant::ToInteger() const { return Rounded<std::int16_t>(ToDouble()); }

std::int32_t Variant::ToLong() const { return Rounded<std::int32_t>(ToDouble()); }

DateTime Variant::ToDate() const {
  if (const auto* date = std::get_if<DateTime>(&value_)) return *date;
  if (const auto* text = std::get_if<std::string>(&value_)) {
    if (const auto date = TextToDate(std::string(Trimmed(*text, kBlanks)))) return *date;
  }
  return DateTime::FromDays(ToDouble());
}

std::string Variant::ToText() const& {
  switch (type()) {
    case Type::Empty:
    case Type::Null:
      return {};
    case Type::Boolean:
      return std::get<bool>(value_) ? "True" : "False";
    case Type::Byte:
    case Type::Integer:
    case Type::Long:
      return std::to_string(ToLong());
    case Type::Double:
      return DoubleToText(std::get<double>(value_));
    case Type::Date:
      return std::get<DateTime>(value_).ToGeneralText();
    case Type::String:
      return std::get<std::string>(value_);
    case Type::Missing:
    case Type::ByteArray:
    case Type::Object:
      break;
  }
  Mismatch();
}

std::string Variant::ToText() && {
  auto* const text = std::get_if<std::string>(&value_);
  return text != nullptr ? std::move(*text) : std::as_const(*this).ToText();
}

}  // namespace oxaqrycln
