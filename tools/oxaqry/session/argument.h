// argument.h - an argument of a call in a session.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_SESSION_ARGUMENT_H_
#define OXAQRYCLN_TOOLS_OXAQRY_SESSION_ARGUMENT_H_

#include "tools/oxaqry/cli/value_json.h"

namespace oxaqrycln::oxaqry {

// An argument of a call.
struct Argument {
  Variant value{};
  bool isLeftOut = false;
  bool isReference = false;  // its value after the call is wanted
};
// A value, null (left out), {"ref":VALUE} or {"context":{"body":BASE64}}. Raises ValueError.
Argument ArgumentFromJson(const Json& json);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_SESSION_ARGUMENT_H_
