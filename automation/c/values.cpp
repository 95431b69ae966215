// The functions for values.
#include "automation/c/values.h"

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <utility>

#include "component/memory_request.h"
#include "values/code_page.h"
#include "values/date_time.h"
#include "values/errors.h"

using namespace oxaqrycln;
using namespace oxaqrycln::c;

namespace {

constexpr std::size_t kLongestText = 0x7FFFFFFF;

// In the order of Variant::Type. A value is never Missing.
constexpr std::array kKinds = {OXAQRY_EMPTY, OXAQRY_NULL,   OXAQRY_EMPTY, OXAQRY_BOOLEAN, OXAQRY_BYTE,  OXAQRY_INTEGER,
                               OXAQRY_LONG,  OXAQRY_DOUBLE, OXAQRY_DATE,  OXAQRY_TEXT,    OXAQRY_BYTES, OXAQRY_OBJECT};

std::int32_t Assign(oxaqry_value* value, Variant given) noexcept {
  return With<Value>(value, [&](Value& target) {
    target.variant = std::move(given);
    return OXAQRY_OK;
  });
}

// Reads what convert(variant) makes of the value.
template <typename Target, typename Convert>
std::int32_t Read(oxaqry_value* value, Target* target, Convert&& convert) noexcept {
  return With<Value>(value, [&](Value& source) -> std::int32_t {
    if (target == nullptr) return IsNull("the place for the content");
    *target = convert(source.variant);
    return OXAQRY_OK;
  });
}

// Runs body(value, text) with what the caller passed.
template <typename Body>
std::int32_t WithText(oxaqry_value* value, const void* text, std::size_t length, Body&& body) noexcept {
  return With<Value>(value, [&](Value& target) -> std::int32_t {
    if (text == nullptr && length != 0) return IsNull("the text");
    if (length > kLongestText) return Fail(OXAQRY_E_ARGUMENT, {"the text has more than 2147483647 bytes"});
    return body(target, std::string_view(static_cast<const char*>(text), length));
  });
}

bool IsDate(std::int64_t seconds) {
  static const std::int64_t first = DateTime::FromCivil({100, 1, 1, 0, 0, 0}).seconds();
  static const std::int64_t last = DateTime::FromCivil({9999, 12, 31, 23, 59, 59}).seconds();
  return seconds >= first && seconds <= last;
}

}  // namespace

std::string_view Value::KeptUtf8(std::string_view windows1252) {
  text.clear();  // only a String has other characters, and the variant holds it
  AppendUtf8(text, windows1252);
  return text;
}

int32_t oxaqry_value_new(oxaqry_value** value) { return Make<Value>(value); }

int32_t oxaqry_value_free(oxaqry_value* value) { return FreeHandle(value, HandleKind::Value); }

int32_t oxaqry_value_set_empty(oxaqry_value* value) { return Assign(value, {}); }

int32_t oxaqry_value_set_null(oxaqry_value* value) { return Assign(value, Variant::Null()); }

int32_t oxaqry_value_set_boolean(oxaqry_value* value, int32_t is_true) { return Assign(value, is_true != 0); }

int32_t oxaqry_value_set_byte(oxaqry_value* value, uint8_t number) { return Assign(value, number); }

int32_t oxaqry_value_set_integer(oxaqry_value* value, int16_t number) { return Assign(value, number); }

int32_t oxaqry_value_set_long(oxaqry_value* value, int32_t number) { return Assign(value, number); }

int32_t oxaqry_value_set_double(oxaqry_value* value, double number) { return Assign(value, number); }

int32_t oxaqry_value_set_date(oxaqry_value* value, int64_t seconds) {
  return With<Value>(value, [&](Value& target) -> std::int32_t {
    if (!IsDate(seconds)) return Fail(OXAQRY_E_ARGUMENT, {"the date is not in the years 100 to 9999"});
    target.variant = DateTime::FromSeconds(seconds);
    return OXAQRY_OK;
  });
}

int32_t oxaqry_value_set_text(oxaqry_value* value, const char* text, size_t length, int32_t encoding) {
  return WithText(value, text, length, [&](Value& target, std::string_view given) -> std::int32_t {
    if (!IsEncoding(encoding)) return IsNoEncoding();
    if (encoding == OXAQRY_WINDOWS_1252 || IsAscii(given)) {
      target.variant.AssignText(given);
      return OXAQRY_OK;
    }
    std::optional<std::string> converted = FromUtf8(given);
    if (!converted) return IsBadText(given);
    target.variant = *std::move(converted);
    return OXAQRY_OK;
  });
}

int32_t oxaqry_value_set_bytes(oxaqry_value* value, const void* bytes, size_t length) {
  return WithText(value, bytes, length, [&](Value& target, std::string_view given) {
    target.variant = Variant::Bytes(given.begin(), given.end());
    return OXAQRY_OK;
  });
}

int32_t oxaqry_value_set_request(oxaqry_value* value, const void* body, size_t length) {
  return WithText(value, body, length, [&](Value& target, std::string_view given) {
    target.variant = MemoryContext(std::string(given));
    return OXAQRY_OK;
  });
}

int32_t oxaqry_value_kind(oxaqry_value* value, int32_t* kind) {
  return Read(value, kind, [](const Variant& variant) -> std::int32_t {
    return kKinds.at(static_cast<std::size_t>(variant.type()));
  });
}

int32_t oxaqry_value_get_boolean(oxaqry_value* value, int32_t* is_true) {
  return Read(value, is_true, [](const Variant& variant) -> std::int32_t { return variant.ToBoolean() ? 1 : 0; });
}

int32_t oxaqry_value_get_long(oxaqry_value* value, int32_t* number) {
  return Read(value, number, [](const Variant& variant) { return variant.ToLong(); });
}

int32_t oxaqry_value_get_double(oxaqry_value* value, double* number) {
  return Read(value, number, [](const Variant& variant) { return variant.ToDouble(); });
}

int32_t oxaqry_value_get_date(oxaqry_value* value, int64_t* seconds) {
  return Read(value, seconds, [](const Variant& variant) { return variant.ToDate().seconds(); });
}

int32_t oxaqry_value_get_text(oxaqry_value* value, int32_t encoding, const char** text, size_t* length) {
  return With<Value>(value, [&](Value& source) -> std::int32_t {
    if (text == nullptr || length == nullptr) return IsNull("the place for the text");
    if (!IsEncoding(encoding)) return IsNoEncoding();
    GiveText(text, length, source.Text(encoding));
    return OXAQRY_OK;
  });
}

int32_t oxaqry_value_get_bytes(oxaqry_value* value, const uint8_t** bytes, size_t* length) {
  return With<Value>(value, [&](Value& source) -> std::int32_t {
    if (bytes == nullptr || length == nullptr) return IsNull("the place for the bytes");
    const Variant::Bytes& content = source.variant.ToBytes();
    *bytes = content.data();
    *length = content.size();
    return OXAQRY_OK;
  });
}
