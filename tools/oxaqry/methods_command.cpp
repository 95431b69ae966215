#include "tools/oxaqry/methods_command.h"

#include <ostream>
#include <string>

#include "automation/method_table.h"
#include "tools/oxaqry/value_json.h"

namespace oxaqrycln {
namespace {

const char* TypeName(Variant::Type type) {
  if (type == Variant::Type::Long) return "Long";
  return type == Variant::Type::Date ? "Date" : "String";
}

const char* KindName(ParameterKind kind) {
  switch (kind) {
    case ParameterKind::In:
      return "in";
    case ParameterKind::OptionalIn:
      return "optional in";
    case ParameterKind::OptionalOut:
      return "optional out";
    case ParameterKind::InOut:
      return "in-out";
  }
  return "";
}

Json Document() {
  Json variables = Json::array();
  for (const VariableEntry& variable : PublicVariables()) {
    variables.push_back({{"name", variable.name}, {"type", TypeName(variable.type)}, {"summary", variable.summary}});
  }
  Json methods = Json::array();
  for (const MethodEntry& method : PublicMethods()) {
    Json parameters = Json::array();
    for (const ParameterEntry& parameter : method.parameters) {
      parameters.push_back({{"name", parameter.name}, {"kind", KindName(parameter.kind)}});
    }
    methods.push_back({{"name", method.name},
                       {"group", method.group},
                       {"property", method.isProperty},
                       {"parameters", std::move(parameters)},
                       {"result", method.result},
                       {"summary", method.summary}});
  }
  return {{"variables", std::move(variables)}, {"methods", std::move(methods)}};
}

void PrintList(std::ostream& out) {
  out << "Public variables\n";
  for (const VariableEntry& variable : PublicVariables()) {
    out << "  " << variable.name << " (" << TypeName(variable.type) << ")\n      " << variable.summary << '\n';
  }
  std::string_view group;
  for (const MethodEntry& method : PublicMethods()) {
    if (method.group != group) out << '\n' << method.group << '\n';
    group = method.group;
    out << "  " << Signature(method) << "\n      " << method.summary << '\n';
    if (!method.result.empty()) out << "      Result: " << method.result << '\n';
  }
}

}  // namespace

int Methods(bool isMarkdown, const Output& output) {
  if (isMarkdown) {
    output.out << MethodReference();
  } else if (output.json) {
    output.out << Document().dump(2) << '\n';
  } else {
    PrintList(output.out);
  }
  return 0;
}

}  // namespace oxaqrycln
