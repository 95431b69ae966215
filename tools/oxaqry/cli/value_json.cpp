#include "tools/oxaqry/cli/value_json.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

#include "values/code_page.h"
#include "values/errors.h"

namespace oxaqrycln::oxaqry {
namespace {

// A whole number in the range of Number.
template <typename Number>
Number WholeNumber(const Json& json, const char* typeName) {
  const bool isWhole = json.is_number_integer();
  const bool isTooLarge =
      json.is_number_unsigned() && json.get<std::uint64_t>() > std::uint64_t{std::numeric_limits<std::int32_t>::max()};
  if (isWhole && !isTooLarge) {
    const auto number = json.get<std::int64_t>();
    if (number >= std::numeric_limits<Number>::min() && number <= std::numeric_limits<Number>::max()) {
      return static_cast<Number>(number);
    }
  }
  throw ValueError(json.dump() + " is not a whole number in the range of the type " + typeName);
}

DateTime DateFromJson(const Json& json) {
  if (json.is_string()) {
    try {
      if (const auto date = DateTime::FromIso(json.get_ref<const std::string&>())) return *date;
    } catch (const RuntimeError&) {  // no such day
    }
  }
  throw ValueError(json.dump() + " is not a date like \"2026-11-15T20:31:07\"");
}

void MustBe(bool isFitting, const Json& json, const char* typeName) {
  if (!isFitting) throw ValueError(json.dump() + " is not a value of the type " + typeName);
}

Variant TypedValue(const std::string& type, const Json& json) {
  if (type == "Integer") return WholeNumber<std::int16_t>(json, "Integer");
  if (type == "Byte") return WholeNumber<std::uint8_t>(json, "Byte");
  if (type == "Long") return WholeNumber<std::int32_t>(json, "Long");
  if (type == "Date") return DateFromJson(json);
  if (type == "Double") {
    MustBe(json.is_number(), json, "Double");
    return json.get<double>();
  }
  if (type == "Boolean" || type == "Null" || type == "Empty") {
    MustBe(json.is_boolean() && (type == "Boolean" || json.get<bool>()), json, type.c_str());
    if (type == "Boolean") return json.get<bool>();
    return type == "Null" ? Variant::Null() : Variant();
  }
  if (type == "String") {
    MustBe(json.is_string(), json, "String");
    return TextFromUtf8(json.get_ref<const std::string&>());
  }
  throw ValueError("unknown type \"" + type + "\"");
}

}  // namespace

std::string TextFromUtf8(std::string_view utf8) {
  auto text = FromUtf8(utf8);
  if (!text) throw ValueError("a text holds a character that has no place in the code page Windows-1252");
  return std::move(*text);
}

Variant ValueFromJson(const Json& json) {
  switch (json.type()) {
    case Json::value_t::null:
      return {};
    case Json::value_t::boolean:
      return json.get<bool>();
    case Json::value_t::number_integer:
    case Json::value_t::number_unsigned:
      return WholeNumber<std::int32_t>(json, "Long");
    case Json::value_t::number_float:
      // A whole number that no 64 bits hold is read as a fraction.
      if (std::abs(json.get<double>()) >= 0x1p63) {
        throw ValueError(json.dump() +
                         " is not a whole number in the range of the type Long; a Double is {\"Double\":...}");
      }
      return json.get<double>();
    case Json::value_t::string:
      return TextFromUtf8(json.get_ref<const std::string&>());
    case Json::value_t::object:
      if (json.size() != 1) throw ValueError("a value written as an object must have exactly one member");
      return TypedValue(json.begin().key(), json.begin().value());
    default:
      throw ValueError("a list is not a value");
  }
}

Json JsonFromValue(const Variant& value) {
  switch (value.type()) {
    case Variant::Type::Empty:
    case Variant::Type::Null:
    case Variant::Type::Missing:
      return nullptr;
    case Variant::Type::Boolean:
      return value.ToBoolean();
    case Variant::Type::Byte:
    case Variant::Type::Integer:
    case Variant::Type::Long:
      return value.ToLong();
    case Variant::Type::Double:
      return value.ToDouble();
    case Variant::Type::Date:
      return value.ToDate().ToIso();
    case Variant::Type::String:
      return ToUtf8(value.ToText());
    case Variant::Type::ByteArray:
    case Variant::Type::Object:
      break;
  }
  throw ValueError("a value of the type " + std::string(value.TypeName()) + " cannot be shown");
}

Json TypedJsonFromValue(const Variant& value) {
  return {{"type", std::string(value.TypeName())}, {"value", JsonFromValue(value)}};
}

}  // namespace oxaqrycln::oxaqry
