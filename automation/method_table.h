// method_table.h - every public variable and method of clsQuery, with its description and a way to access or call it,
// for sessions and language bindings. Both tables are in the order of clsQuery.h, from which describe_interface.py
// generates them during the build.
#ifndef OXAQRYCLN_AUTOMATION_METHOD_TABLE_H_
#define OXAQRYCLN_AUTOMATION_METHOD_TABLE_H_

#include <span>
#include <string_view>
#include <vector>

#include "component/clsQuery.h"

namespace oxaqrycln {

// A public variable.
struct VariableEntry {
  int number = 0;  // from 1, in one series with the methods; never changed
  std::string_view name;
  std::string_view group;  // heading in the reference
  std::string_view documentation;
  Variant::Type type = Variant::Type::Empty;  // Long, String or Date
  Variant (*get)(const clsQuery& query) = nullptr;
  // Converts by the automation rules, and raises their errors.
  void (*set)(clsQuery& query, const Variant& value) = nullptr;
};

enum class ParameterKind { In, OptionalIn, OptionalOut, InOut };

// Variant: the documentation says which type the result has.
enum class ResultKind { None, Boolean, String, Variant };

struct ParameterEntry {
  std::string_view name;
  ParameterKind kind;
};

struct MethodEntry {
  int number = 0;  // as for a variable
  std::string_view name;
  std::string_view group;
  std::string_view documentation;
  std::string_view signature;  // "Name(input, [optional input], [out output], inout variable) -> Type"
  bool isProperty = false;     // RemoteHosts: assigned, not called
  ResultKind result = ResultKind::None;
  std::vector<ParameterEntry> parameters{};
  // Calls the method. arguments has at most one pointer per parameter, in order; a null pointer or a shorter list
  // leaves arguments out; outputs are written through the pointers. Returns Empty for a method without a result.
  // Raises Argument not optional if a required argument is left out, 450 if there are too many arguments.
  Variant (*call)(clsQuery& query, std::span<Variant* const> arguments) = nullptr;
};

std::span<const VariableEntry> PublicVariables();
std::span<const MethodEntry> PublicMethods();

// A variable or a method; neither for a number without a member.
struct Member {
  const VariableEntry* variable = nullptr;
  const MethodEntry* method = nullptr;
};
Member FindMember(int number);
// The largest number of a member; none is left out below it.
int MemberCount();

// The entry of that name, regardless of letter case; nullptr for an unknown name.
const VariableEntry* FindVariable(std::string_view name);
const MethodEntry* FindMethod(std::string_view name);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_AUTOMATION_METHOD_TABLE_H_
