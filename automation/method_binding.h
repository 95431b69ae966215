// method_binding.h - makes entries of the method table from pointers to members of clsQuery.
// The C++ types say how a parameter is passed; names and descriptions stand in the tables.
#ifndef OXAQRYCLN_AUTOMATION_METHOD_BINDING_H_
#define OXAQRYCLN_AUTOMATION_METHOD_BINDING_H_

#include <concepts>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "automation/method_table.h"
#include "platform/errors.h"

namespace oxaqrycln::binding {

// Stands for "every input must be given".
inline constexpr std::size_t kEveryInput = static_cast<std::size_t>(-1);

inline const Variant kLeftOut{Missing};

// The argument at a position as the member function takes it. An argument that is Missing counts as left out.
template <typename Parameter>
Parameter Argument(std::span<Variant* const> arguments, std::size_t position, bool isRequired) {
  Variant* const argument = position < arguments.size() ? arguments[position] : nullptr;
  if constexpr (std::is_same_v<Parameter, Variant*>) {
    return argument;
  } else {
    const bool isLeftOut = argument == nullptr || argument->IsMissing();
    if (isLeftOut && isRequired) throw RuntimeError(error::kArgumentNotOptional);
    if constexpr (std::is_same_v<Parameter, const Variant&>) {
      return isLeftOut ? kLeftOut : *argument;
    } else {
      return *argument;
    }
  }
}

template <typename Parameter>
constexpr ParameterKind KindOf(bool isRequired) {
  if constexpr (std::is_same_v<Parameter, Variant*>) {
    return ParameterKind::OptionalOut;
  } else if constexpr (std::is_same_v<Parameter, Variant&>) {
    return ParameterKind::InOut;
  } else {
    static_assert(std::is_same_v<Parameter, const Variant&>);
    return isRequired ? ParameterKind::In : ParameterKind::OptionalIn;
  }
}

// kRequired: how many leading inputs must be given.
template <auto kMethod, std::size_t kRequired, typename Type = decltype(kMethod)>
struct MethodBinding;

template <auto kMethod, std::size_t kRequired, typename Result, typename... Parameters>
struct MethodBinding<kMethod, kRequired, Result (clsQuery::*)(Parameters...)> {
  static constexpr std::size_t kParameterCount = sizeof...(Parameters);

  static Variant Call(clsQuery& query, std::span<Variant* const> arguments) {
    if (arguments.size() > kParameterCount) {
      throw RuntimeError(error::kWrongArgumentCount);
    }
    return Invoke(query, arguments, std::index_sequence_for<Parameters...>{});
  }

  template <typename... Names>
  static std::vector<ParameterEntry> Describe(Names... names) {
    static_assert(sizeof...(Names) == kParameterCount, "one name for each parameter");
    std::size_t position = 0;
    return {ParameterEntry{names, KindOf<Parameters>(IsRequired<Parameters>(position++))}...};
  }

 private:
  template <typename Parameter>
  static constexpr bool IsRequired(std::size_t position) {
    return std::is_same_v<Parameter, Variant&> || position < kRequired;
  }

  template <std::size_t... kPositions>
  static Variant Invoke(clsQuery& query, std::span<Variant* const> arguments, std::index_sequence<kPositions...>) {
    const auto call = [&]() -> Result {
      return (query.*kMethod)(Argument<Parameters>(arguments, kPositions, IsRequired<Parameters>(kPositions))...);
    };
    if constexpr (std::is_void_v<Result>) {
      call();
      return {};
    } else {
      return Variant(call());
    }
  }
};

// What a table says of a method beside its parameters.
struct MethodText {
  std::string_view name;
  std::string_view group;
  std::string_view result;
  std::string_view summary;
};

// The entry of a method whose first kRequired inputs must be given; parameterNames in order.
template <auto kMethod, std::size_t kRequired = kEveryInput, typename... Names>
MethodEntry Method(const MethodText& text, Names... parameterNames) {
  using Bound = MethodBinding<kMethod, kRequired>;
  return {.name = text.name,
          .group = text.group,
          .result = text.result,
          .summary = text.summary,
          .parameters = Bound::Describe(parameterNames...),
          .isProperty = false,
          .call = &Bound::Call};
}

// The same for what a page assigns to instead of calling it.
template <auto kMethod>
MethodEntry Property(const MethodText& text, std::string_view parameterName) {
  MethodEntry entry = Method<kMethod>(text, parameterName);
  entry.isProperty = true;
  return entry;
}

// A value as a variable of the type takes it.
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

template <auto kMember>
VariableEntry Variable(std::string_view name, std::string_view summary) {
  using Type = std::remove_cvref_t<decltype(std::declval<clsQuery&>().*kMember)>;
  return {.name = name,
          .type = VariantTypeOf<Type>(),
          .summary = summary,
          .get = [](const clsQuery& query) { return Variant(query.*kMember); },
          .set = [](clsQuery& query, const Variant& value) { query.*kMember = Convert<Type>(value); }};
}

}  // namespace oxaqrycln::binding

#endif  // OXAQRYCLN_AUTOMATION_METHOD_BINDING_H_
