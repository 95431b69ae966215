#include "tools/oxaqry/session/methods_command.h"

#include <ostream>
#include <string>

#include "automation/method_table.h"
#include "tools/oxaqry/cli/value_json.h"

namespace oxaqrycln::oxaqry {
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

const char* ResultName(ResultKind kind) {
  switch (kind) {
    case ResultKind::None:
      return "";
    case ResultKind::Boolean:
      return "Boolean";
    case ResultKind::String:
      return "String";
    case ResultKind::Variant:
      return "Variant";
  }
  return "";
}

Json Document() {
  Json variables = Json::array();
  for (const VariableEntry& variable : PublicVariables()) {
    variables.push_back({{"name", variable.name},
                         {"number", variable.number},
                         {"group", variable.group},
                         {"type", TypeName(variable.type)},
                         {"documentation", variable.documentation}});
  }
  Json methods = Json::array();
  for (const MethodEntry& method : PublicMethods()) {
    Json parameters = Json::array();
    for (const ParameterEntry& parameter : method.parameters) {
      parameters.push_back({{"name", parameter.name}, {"kind", KindName(parameter.kind)}});
    }
    methods.push_back({{"name", method.name},
                       {"number", method.number},
                       {"group", method.group},
                       {"property", method.isProperty},
                       {"parameters", std::move(parameters)},
                       {"result", ResultName(method.result)},
                       {"documentation", method.documentation}});
  }
  return {{"variables", std::move(variables)}, {"methods", std::move(methods)}};
}

// One member with its documentation below, after the heading of its group where that begins.
template <typename Entry>
void PrintMember(std::ostream& out, std::string_view& group, const Entry& entry, std::string_view title) {
  if (entry.group != group) out << (group.empty() ? "" : "\n") << entry.group << '\n';
  group = entry.group;
  out << "  " << title << "\n      ";
  for (const char letter : entry.documentation) {
    out << letter;
    if (letter == '\n') out << "      ";
  }
  out << '\n';
}

void PrintList(std::ostream& out) {
  std::string_view group;
  for (const VariableEntry& variable : PublicVariables()) {
    PrintMember(out, group, variable, std::string(variable.name) + " (" + TypeName(variable.type) + ")");
  }
  for (const MethodEntry& method : PublicMethods()) PrintMember(out, group, method, method.signature);
}

}  // namespace

int Methods(const Output& output) {
  if (output.json) {
    output.out << Document().dump(2) << '\n';
  } else {
    PrintList(output.out);
  }
  return 0;
}

}  // namespace oxaqrycln::oxaqry
