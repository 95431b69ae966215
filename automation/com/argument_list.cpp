#include "automation/com/argument_list.h"

#include <algorithm>
#include <string>
#include <utility>

#include "values/errors.h"

namespace oxaqrycln::com {
namespace {

// An argument without its references to variants. A typed reference stays one.
struct Resolved {
  VARIANT& value;
  bool isVariable;  // writing it reaches the caller's variable
};
Resolved Resolve(VARIANT& given) {
  constexpr int kMostReferences = 4;
  VARIANT* value = &given;
  for (int i = 0; i < kMostReferences && value != nullptr; ++i) {
    if (value->vt != (VT_BYREF | VT_VARIANT)) return {*value, value != &given || (value->vt & VT_BYREF) != 0};
    value = value->pvarVal;
  }
  throw RuntimeError(error::kTypeMismatch);
}

bool IsOutput(ParameterKind kind) noexcept {
  return kind == ParameterKind::OptionalOut || kind == ParameterKind::InOut;
}

// The text that a variable holds when it is as long as the new value, as in most columns of a list. Its characters can
// be replaced without another allocation.
BSTR TextOfSameLength(const VARIANT& target, const Variant& value) {
  if (target.vt != VT_BSTR && target.vt != (VT_BYREF | VT_BSTR)) return nullptr;
  const BSTR held = target.vt == VT_BSTR ? target.bstrVal : *target.pbstrVal;
  std::string scratch;
  const bool fits =
      held != nullptr && value.type() == Variant::Type::String && SysStringLen(held) == value.TextView(scratch).size();
  return fits ? held : nullptr;
}

}  // namespace

void ArgumentList::Read(const MethodEntry& method, const DISPPARAMS& parameters) {
  method_ = &method;
  const UINT named = parameters.cNamedArgs;
  if (parameters.cArgs > method_->parameters.size() || method_->parameters.size() > kMost || named > parameters.cArgs) {
    throw RuntimeError(error::kWrongArgumentCount);
  }
  // Positional arguments are in reverse order, behind the named ones.
  const UINT positional = parameters.cArgs - named;
  for (UINT i = 0; i < positional; ++i) {
    failedAt_ = parameters.cArgs - 1 - i;
    Take(parameters.rgvarg[failedAt_], i);
  }
  for (UINT i = 0; i < named; ++i) {
    failedAt_ = i;
    const auto position = static_cast<std::size_t>(parameters.rgdispidNamedArgs[i]);
    const bool isFree = position >= positional && position < method_->parameters.size() &&
                        pointers_[position] == nullptr && targets_[position] == nullptr;
    if (!isFree) throw RuntimeError(error::kWrongArgumentCount);
    Take(parameters.rgvarg[i], position);
  }
}

void ArgumentList::Take(VARIANT& given, std::size_t position) {
  const Resolved argument = Resolve(given);
  if (IsLeftOut(argument.value)) return;
  count_ = std::max(count_, position + 1);
  const ParameterKind kind = method_->parameters[position].kind;
  if (IsOutput(kind) && argument.isVariable) targets_[position] = &argument.value;
  // An output stays Missing as long as the method does not write it.
  if (kind != ParameterKind::OptionalOut) {
    values_[position] =
        FromCom(argument.value, method_->name == "OnStartPage" ? ObjectMeaning::Context : ObjectMeaning::Value);
  }
  pointers_[position] = &values_[position];
}

void ArgumentList::ConvertOutputs() {
  for (std::size_t i = 0; i < count_; ++i) {
    const VARIANT* const target = targets_[i];
    if (target == nullptr) continue;
    const bool isKept = method_->parameters[i].kind == ParameterKind::InOut ? IsSame(FromCom(*target), values_[i])
                                                                            : values_[i].IsMissing();
    if (isKept) {
      targets_[i] = nullptr;
    } else if ((overwritten_[i] = TextOfSameLength(*target, values_[i])) != nullptr) {
      continue;
    } else if ((target->vt & VT_BYREF) == 0) {
      outputs_[i] = ToCom(values_[i]);
    } else {
      outputs_[i] = ToComAs(values_[i], static_cast<VARTYPE>(target->vt & ~VT_BYREF));
    }
  }
}

void ArgumentList::WriteOutputs() noexcept {
  // First what releases nothing: a release may run code of the host, which may change its variables.
  std::string scratch;
  for (std::size_t i = 0; i < count_; ++i) {
    if (overwritten_[i] == nullptr) continue;
    WriteText(overwritten_[i], values_[i].TextView(scratch));
    targets_[i] = nullptr;
  }
  for (std::size_t i = 0; i < count_; ++i) {
    if (targets_[i] != nullptr) Store(*targets_[i], std::move(outputs_[i]));
  }
}

void ArgumentList::Clear() noexcept {
  for (std::size_t i = 0; i < count_; ++i) {
    if (!values_[i].IsMissing()) values_[i] = Missing;
    if (outputs_[i].get().vt != VT_EMPTY) outputs_[i] = OwnedVariant();
    pointers_[i] = nullptr;
    targets_[i] = nullptr;
    overwritten_[i] = nullptr;
  }
  count_ = 0;
}

}  // namespace oxaqrycln::com
