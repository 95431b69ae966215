// value_json.h - automation values as the lines of a session write them, in both directions.
// Text is UTF-8 in JSON and Windows-1252 in a Variant.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_VALUE_JSON_H_
#define OXAQRYCLN_TOOLS_OXAQRY_VALUE_JSON_H_

#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "values/variant.h"

namespace oxaqrycln {

// Members stay in the order in which they were written: a "set" assigns in that order.
using Json = nlohmann::ordered_json;

// What is wrong with a value or a line, for the one who wrote it.
class ValueError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Text from outside; raises ValueError for what has no place in the code page.
std::string TextFromUtf8(std::string_view utf8);
// The same for a text that becomes a field of a request; raises ValueError, too, for one that would end its field.
std::string FieldFromUtf8(std::string_view utf8);

// A scalar or a typed scalar; null is Empty. Raises ValueError.
Variant ValueFromJson(const Json& json);

// An argument of a call.
struct Argument {
  Variant value{};
  bool isLeftOut = false;
  bool isReference = false;  // its value after the call is wanted
};
// A value, null (left out), {"ref":VALUE} or {"context":{"body":BASE64}}. Raises ValueError.
Argument ArgumentFromJson(const Json& json);

// The value alone: null for Empty and Null. Raises ValueError for byte arrays and objects.
Json JsonFromValue(const Variant& value);
// {"type":TYPE,"value":VALUE}
Json TypedJsonFromValue(const Variant& value);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_TOOLS_OXAQRY_VALUE_JSON_H_
