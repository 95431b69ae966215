#include <string>

#include "automation/method_table.h"

namespace oxaqrycln {
namespace {

constexpr std::string_view kOpening =
    R"(# Public variables and methods of clsQuery

Made from the method table by `oxaqry methods --markdown`; a test compares the two.

How to read a method: a plain parameter is an input that must be given, `[name]` an input that may be left out,
`[out name]` an output that is not written when it is left out, `inout name` a variable that is read and written.
No method raises an error to its caller: a failure shows in the result and in the session's log. An `...Init` method
sends one request; its `strParamStatus` receives "" on success and the error text of a request that failed; an error of
the component itself leaves it untouched and is in the session's log. The `...Next` methods
read what the last `...Init` of any family brought.

)";

std::string ParameterText(const ParameterEntry& parameter) {
  std::string name(parameter.name);
  switch (parameter.kind) {
    case ParameterKind::In:
      return name;
    case ParameterKind::OptionalIn:
      return "[" + name + "]";
    case ParameterKind::OptionalOut:
      return "[out " + name + "]";
    case ParameterKind::InOut:
      return "inout " + name;
  }
  return name;
}

std::string TypeText(Variant::Type type) {
  if (type == Variant::Type::Long) return "Long";
  return type == Variant::Type::Date ? "Date" : "String";
}

std::string VariablesText() {
  std::string text = "## Public variables\n\nAll start empty and are assigned before `Init`.\n\n";
  text += "| variable | type | meaning |\n|---|---|---|\n";
  for (const VariableEntry& variable : PublicVariables()) {
    text.append("| `").append(variable.name).append("` | ").append(TypeText(variable.type));
    text.append(" | ").append(variable.summary).append(" |\n");
  }
  return text;
}

std::string MethodText(const MethodEntry& method) {
  std::string text;
  text.append("\n### ").append(method.name).append("\n\n`").append(Signature(method)).append("`\n\n");
  text.append(method.summary).append("\n");
  if (!method.result.empty()) text.append("\nResult: ").append(method.result).append("\n");
  return text;
}

}  // namespace

std::string Signature(const MethodEntry& method) {
  if (method.isProperty) return std::string(method.name) + " = " + std::string(method.parameters.front().name);
  std::string text(method.name);
  text += "(";
  for (const ParameterEntry& parameter : method.parameters) {
    if (text.back() != '(') text += ", ";
    text += ParameterText(parameter);
  }
  return text + ")";
}

std::string MethodReference() {
  std::string text(kOpening);
  text += VariablesText();
  std::string_view group;
  for (const MethodEntry& method : PublicMethods()) {
    if (method.group != group) {
      group = method.group;
      text.append("\n## ").append(group).append("\n");
    }
    text += MethodText(method);
  }
  return text;
}

}  // namespace oxaqrycln
