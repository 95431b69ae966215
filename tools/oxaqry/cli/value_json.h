// value_json.h - automation values as the lines of a session write them, in both directions.
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

// Text from outside; raises ValueError for what has no place in the code page.
std::string TextFromUtf8(std::string_view utf8);
// The same for a text that becomes a field of a request; raises ValueError, too, for one that would end its field.
std::string FieldFromUtf8(std::string_view utf8);

// A scalar or a typed scalar; null is Empty. Raises ValueError.
Variant ValueFromJson(const Json& json);

// The value alone: null for Empty and Null. Raises ValueError for byte arrays and objects.
Json JsonFromValue(const Variant& value);
// {"type":TYPE,"value":VALUE}
Json TypedJsonFromValue(const Variant& value);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_VALUE_JSON_H_
