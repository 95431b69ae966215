#include "tools/oxaqry/cli/command_families.h"

#include <array>
#include <ostream>
#include <string>

#include "automation/method_table.h"
#include "tools/oxaqry/cli/value_json.h"
#include "tools/oxaqry/session/session.h"

namespace oxaqrycln::oxaqry {
namespace {

const char* TypeName(Variant::Type type) {
  if (type == Variant::Type::Long) return "Long";
  return type == Variant::Type::Date ? "Date" : "String";
}

// In the order of ParameterKind and ResultKind.
constexpr std::array kParameterKinds{"in", "optional in", "optional out", "in-out"};
constexpr std::array kResultKinds{"", "Boolean", "String", "Variant"};

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
      parameters.push_back(
          {{"name", parameter.name}, {"kind", kParameterKinds[static_cast<std::size_t>(parameter.kind)]}});
    }
    methods.push_back({{"name", method.name},
                       {"number", method.number},
                       {"group", method.group},
                       {"property", method.isProperty},
                       {"parameters", std::move(parameters)},
                       {"result", kResultKinds[static_cast<std::size_t>(method.result)]},
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

int Methods(const Output& output) {
  if (output.json) {
    output.out << Document().dump(2) << '\n';
  } else {
    PrintList(output.out);
  }
  return 0;
}

}  // namespace

void AddSessionCommands(CommandParser& parser) {
  parser.AddPlain("session", "run calls given as JSON lines on standard input",
                  "Examples:\n  oxaqry session < calls.jsonl\n  echo '{\"call\":\"HelloWorld\"}' | oxaqry session",
                  [](const Settings&, const Output& output) { return RunSession(output.in, output.out); });
  CLI::App* const methods = parser.AddPlain("methods", "list the component's public variables and methods",
                                            "Example:\n  oxaqry methods | less",
                                            [](const Settings&, const Output& output) { return Methods(output); });
  parser.AddJson(*methods, "print one JSON document");
}

}  // namespace oxaqrycln::oxaqry
