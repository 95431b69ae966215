// The functions that describe variables, methods and parameters.
#include <cstddef>
#include <string>
#include <string_view>

#include "automation/c/boundary.h"
#include "automation/method_table.h"

using namespace oxaqrycln;
using namespace oxaqrycln::c;

namespace {

oxaqry_member_type_kind TypeOf(const Member& member) noexcept {
  if (member.variable != nullptr) {
    if (member.variable->type == Variant::Type::Long) return OXAQRY_TYPE_LONG;
    return member.variable->type == Variant::Type::Date ? OXAQRY_TYPE_DATE : OXAQRY_TYPE_TEXT;
  }
  switch (member.method->result) {
    case ResultKind::Boolean:
      return OXAQRY_TYPE_BOOLEAN;
    case ResultKind::String:
      return OXAQRY_TYPE_TEXT;
    case ResultKind::Variant:
      return OXAQRY_TYPE_VARIANT;
    default:
      return OXAQRY_TYPE_NONE;
  }
}

oxaqry_member_kind KindOf(const Member& member) noexcept {
  if (member.variable != nullptr) return OXAQRY_MEMBER_VARIABLE;
  return member.method->isProperty ? OXAQRY_MEMBER_PROPERTY : OXAQRY_MEMBER_METHOD;
}

// In the order of ParameterKind.
static_assert(static_cast<int>(ParameterKind::In) == OXAQRY_PARAMETER_IN);
static_assert(static_cast<int>(ParameterKind::OptionalIn) == OXAQRY_PARAMETER_OPTIONAL_IN);
static_assert(static_cast<int>(ParameterKind::OptionalOut) == OXAQRY_PARAMETER_OPTIONAL_OUT);
static_assert(static_cast<int>(ParameterKind::InOut) == OXAQRY_PARAMETER_IN_OUT);

// Runs body(member) for the member of a number.
template <typename Body>
std::int32_t WithMember(std::int32_t number, Body&& body) noexcept {
  return Guarded([&]() -> std::int32_t {
    const Member member = FindMember(number);
    if (member.variable == nullptr && member.method == nullptr) {
      return Fail(OXAQRY_E_MEMBER, {"there is no member ", std::to_string(number)});
    }
    return body(member);
  });
}

std::size_t ParameterCount(const Member& member) noexcept {
  return member.method != nullptr ? member.method->parameters.size() : 0;
}

}  // namespace

int32_t oxaqry_member_count(int32_t* count) {
  return Guarded([&]() -> std::int32_t {
    if (count == nullptr) return IsNull("count");
    *count = MemberCount();
    return OXAQRY_OK;
  });
}

int32_t oxaqry_find_member(const char* name, size_t length, int32_t* number) {
  return Guarded([&]() -> std::int32_t {
    if (name == nullptr || number == nullptr) return IsNull(name == nullptr ? "name" : "number");
    const std::string_view wanted(name, length);
    if (const VariableEntry* const variable = FindVariable(wanted)) {
      *number = variable->number;
    } else if (const MethodEntry* const method = FindMethod(wanted)) {
      *number = method->number;
    } else {
      return Fail(OXAQRY_E_MEMBER, {"there is no member of that name"});
    }
    return OXAQRY_OK;
  });
}

int32_t oxaqry_member(int32_t number, int32_t* kind, int32_t* type) {
  return WithMember(number, [&](const Member& member) {
    Give(kind, KindOf(member));
    Give(type, TypeOf(member));
    return OXAQRY_OK;
  });
}

int32_t oxaqry_member_text(int32_t number, int32_t what, const char** text, size_t* length) {
  return WithMember(number, [&](const Member& member) -> std::int32_t {
    const auto give = [&](const auto& entry, std::string_view signature) -> std::int32_t {
      const std::string_view texts[] = {entry.name, entry.group, entry.documentation, signature};
      if (what < OXAQRY_MEMBER_NAME || what > OXAQRY_MEMBER_SIGNATURE) {
        return Fail(OXAQRY_E_ARGUMENT, {"there is no such text of a member"});
      }
      GiveText(text, length, texts[what]);
      return OXAQRY_OK;
    };
    return member.variable != nullptr ? give(*member.variable, "") : give(*member.method, member.method->signature);
  });
}

int32_t oxaqry_parameter_count(int32_t number, int32_t* count) {
  return WithMember(number, [&](const Member& member) -> std::int32_t {
    if (count == nullptr) return IsNull("count");
    *count = static_cast<std::int32_t>(ParameterCount(member));
    return OXAQRY_OK;
  });
}

int32_t oxaqry_parameter(int32_t number, int32_t position, int32_t* kind, const char** name, size_t* length) {
  return WithMember(number, [&](const Member& member) -> std::int32_t {
    if (position < 0 || static_cast<std::size_t>(position) >= ParameterCount(member)) {
      return Fail(OXAQRY_E_ARGUMENT, {"there is no parameter ", std::to_string(position)});
    }
    const ParameterEntry& parameter = member.method->parameters[static_cast<std::size_t>(position)];
    Give(kind, parameter.kind);
    GiveText(name, length, parameter.name);
    return OXAQRY_OK;
  });
}
