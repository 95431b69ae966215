// value_json.h - conversion between automation values and JSON.
// Text is UTF-8 in JSON and Windows-1252 in a Variant.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_VALUE_JSON_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_VALUE_JSON_H_

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "tools/oxaqry/cli/errors.h"
#include "values/variant.h"

namespace oxaqrycln::oxaqry {

// Members stay in the order in which they were written: a "set" assigns in that order.
using Json = nlohmann::ordered_json;

// Raises ValueError for a character that has no place in the code page.
std::string TextFromUtf8(std::string_view utf8);

// The value of a scalar or a typed scalar such as {"Integer":5}; null is Empty. Raises ValueError.
Variant ValueFromJson(const Json& json);

// The value without its type: null for Empty and Null. Raises ValueError for byte arrays and objects.
Json JsonFromValue(const Variant& value);
// {"type":TYPE,"value":VALUE}
Json TypedJsonFromValue(const Variant& value);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_VALUE_JSON_H_
