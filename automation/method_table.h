// method_table.h - every public variable and method of clsQuery, described once: for the session, the C interface, the
// COM server and the method reference. The tables are in the order of the class interface.
#ifndef OXAQRYCLN_AUTOMATION_METHOD_TABLE_H_
#define OXAQRYCLN_AUTOMATION_METHOD_TABLE_H_

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "component/clsQuery.h"

#pragma GCC visibility push(default)

namespace oxaqrycln {

// A public variable. set converts by the automation rules and raises what they raise.
struct VariableEntry {
  std::string_view name;
  Variant::Type type;  // Long, String or Date
  std::string_view summary;
  Variant (*get)(const clsQuery& query);
  void (*set)(clsQuery& query, const Variant& value);
};

enum class ParameterKind { In, OptionalIn, OptionalOut, InOut };

struct ParameterEntry {
  std::string_view name;
  ParameterKind kind;
};

struct MethodEntry {
  std::string_view name;
  std::string_view group;    // heading in the reference
  std::string_view result;   // what it returns, "" for nothing
  std::string_view summary;  // one or two sentences
  std::vector<ParameterEntry> parameters;
  bool isProperty = false;  // RemoteHosts: assigned, not called
  // Calls the method. arguments holds at most one pointer a parameter, in order; a null pointer or a shorter list
  // leaves arguments out; outputs are written through the pointers. Returns Empty for a method without a result.
  // Raises Argument not optional when a required argument is left out, 450 when there are too many.
  Variant (*call)(clsQuery& query, std::span<Variant* const> arguments);
};

std::span<const VariableEntry> PublicVariables();
std::span<const MethodEntry> PublicMethods();

// The entry of that name, whatever its letter case; nullptr for an unknown name.
const VariableEntry* FindVariable(std::string_view name);
const MethodEntry* FindMethod(std::string_view name);

// How a method is written in the reference: "Name(input, [optional input], [out output], inout variable)".
std::string Signature(const MethodEntry& method);

// The method reference in Markdown, as docs/methods.md holds it.
std::string MethodReference();

}  // namespace oxaqrycln

#pragma GCC visibility pop

#endif  // OXAQRYCLN_AUTOMATION_METHOD_TABLE_H_
