// method_binding.h - completes entries of the method table from pointers to members of clsQuery.
// For the table that automation/describe_interface.py generates; its entries must agree with the C++ types.
#ifndef OXAQRYCLN_AUTOMATION_METHOD_BINDING_H_
#define OXAQRYCLN_AUTOMATION_METHOD_BINDING_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include "automation/method_table.h"
#include "values/errors.h"

namespace oxaqrycln::binding {

// Never destroyed: a host may call while the process ends.
inline const Variant& LeftOut() {
  static const auto* const value = new Variant(Missing);  // NOLINT
  return *value;
}

// The C++ type of a parameter.
template <ParameterKind kKind>
using ParameterType = std::conditional_t<kKind == ParameterKind::OptionalOut, Variant*,
                                         std::conditional_t<kKind == ParameterKind::InOut, Variant&, const Variant&>>;

// The argument at a position, as the member function expects it. An argument that is Missing counts as left out.
template <ParameterKind kKind>
ParameterType<kKind> Argument(std::span<Variant* const> arguments, std::size_t position) {
  Variant* const argument = position < arguments.size() ? arguments[position] : nullptr;
  if constexpr (kKind == ParameterKind::OptionalOut) {
    return argument;
  } else {
    const bool isLeftOut = argument == nullptr || argument->IsMissing();
    if constexpr (kKind == ParameterKind::OptionalIn) {
      return isLeftOut ? LeftOut() : *argument;
    } else {
      if (isLeftOut) throw RuntimeError(error::kArgumentNotOptional);
      return *argument;
    }
  }
}

template <typename Result>
constexpr ResultKind ResultKindOf() {
  if constexpr (std::is_void_v<Result>) return ResultKind::None;
  if constexpr (std::is_same_v<Result, bool>) return ResultKind::Boolean;
  if constexpr (std::is_same_v<Result, std::string>) return ResultKind::String;
  return ResultKind::Variant;
}

template <auto kMethod, typename Type, ParameterKind... kKinds>
struct MethodBinding;

template <auto kMethod, typename Result, typename... Parameters, ParameterKind... kKinds>
struct MethodBinding<kMethod, Result (clsQuery::*)(Parameters...), kKinds...> {
  static_assert(std::is_same_v<std::tuple<Parameters...>, std::tuple<ParameterType<kKinds>...>>,
                "the declared parameters differ from the description");
  static constexpr ResultKind kResult = ResultKindOf<Result>();

  static Variant Call(clsQuery& query, std::span<Variant* const> arguments) {
    if (arguments.size() > sizeof...(Parameters)) throw RuntimeError(error::kWrongArgumentCount);
    return Invoke(query, arguments, std::index_sequence_for<Parameters...>{});
  }

 private:
  template <std::size_t... kPositions>
  static Variant Invoke(clsQuery& query, std::span<Variant* const> arguments, std::index_sequence<kPositions...>) {
    const auto call = [&]() -> Result { return (query.*kMethod)(Argument<kKinds>(arguments, kPositions)...); };
    if constexpr (std::is_void_v<Result>) {
      call();
      return {};
    } else {
      return Variant(call());
    }
  }
};

// The entry, completed by its parameters (their names are given in order), its result and its call.
template <auto kMethod, ResultKind kResult, ParameterKind... kKinds, typename... Names>
MethodEntry Method(MethodEntry entry, Names... parameterNames) {
  using Binding = MethodBinding<kMethod, decltype(kMethod), kKinds...>;
  static_assert(Binding::kResult == kResult, "the declared result differs from the description");
  static_assert(sizeof...(Names) == sizeof...(kKinds), "one name for each parameter");
  entry.result = kResult;
  entry.parameters = {ParameterEntry{parameterNames, kKinds}...};
  entry.call = &Binding::Call;
  return entry;
}

// A value converted to the type of a variable.
template <typename Type>
Type Convert(const Variant& value) {
  if (value.IsNull()) throw RuntimeError(error::kInvalidUseOfNull);
  if constexpr (std::is_same_v<Type, std::string>) {
    return value.ToText();
  } else if constexpr (std::is_same_v<Type, DateTime>) {
    return value.ToDate();
  } else {
    static_assert(std::is_same_v<Type, std::int32_t>);
    return value.ToLong();
  }
}

template <typename Type>
constexpr Variant::Type VariantTypeOf() {
  if constexpr (std::is_same_v<Type, std::string>) return Variant::Type::String;
  if constexpr (std::is_same_v<Type, DateTime>) return Variant::Type::Date;
  return Variant::Type::Long;
}

// The entry, completed by its type and its accessors.
template <auto kMember>
VariableEntry Variable(VariableEntry entry) {
  using Type = std::remove_cvref_t<decltype(std::declval<clsQuery&>().*kMember)>;
  entry.type = VariantTypeOf<Type>();
  entry.get = [](const clsQuery& query) { return Variant(query.*kMember); };
  entry.set = [](clsQuery& query, const Variant& value) { query.*kMember = Convert<Type>(value); };
  return entry;
}

}  // namespace oxaqrycln::binding

#endif  // OXAQRYCLN_AUTOMATION_METHOD_BINDING_H_
