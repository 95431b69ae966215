#include "automation/c/arguments.h"

#include <algorithm>
#include <string_view>

namespace oxaqrycln::c {
namespace {

bool IsOutput(ParameterKind kind) noexcept {
  return kind == ParameterKind::OptionalOut || kind == ParameterKind::InOut;
}

bool IsRequired(ParameterKind kind) noexcept { return kind == ParameterKind::In || kind == ParameterKind::InOut; }

}  // namespace

std::int32_t Arguments::Take(const Finder& finder, const MethodEntry& method, const GivenValues& given) noexcept {
  if (TakeAgain(finder, method, given)) return OXAQRY_OK;
  method_ = nullptr;
  usedCount_ = 0;
  const std::int32_t code = Find(finder, method, given);
  if (code != OXAQRY_OK) {
    Release();
  } else {
    Keep(finder, method, given);
  }
  return code;
}

bool Arguments::TakeAgain(const Finder& finder, const MethodEntry& method, const GivenValues& given) noexcept {
  if (method_ != &method || given.count != static_cast<std::int32_t>(count_) || given.result != handles_[0] ||
      finder.releases() != releases_ || !std::equal(given.values, given.values + count_, handles_.begin() + 1)) {
    return false;
  }
  const std::span used = std::span(used_).first(usedCount_);
  for (const Used& each : used) {
    if (each.value->uses != 0) return false;
  }
  for (const Used& each : used) each.value->uses = each.isWritten ? -1 : 1;
  return true;
}

std::int32_t Arguments::Find(const Finder& finder, const MethodEntry& method, const GivenValues& given) noexcept {
  const std::size_t most = method.parameters.size();
  if (given.count < 0 || (given.count > 0 && given.values == nullptr)) {
    return Fail(OXAQRY_E_ARGUMENT, {"there are no such arguments"});
  }
  if (static_cast<std::size_t>(given.count) > most || most > kMost) {
    return Fail(OXAQRY_E_COUNT, {"there are too many arguments for ", method.name});
  }
  count_ = static_cast<std::size_t>(given.count);
  std::int32_t code = OXAQRY_OK;
  for (std::size_t i = 0; i < most; ++i) {
    const ParameterEntry& parameter = method.parameters[i];
    pointers_[i] = nullptr;
    outputs_[i + 1] = nullptr;
    if (i < count_ && given.values[i] != nullptr) {
      Value* const value = Use(finder, given.values[i], IsOutput(parameter.kind), code);
      if (value == nullptr) return code;
      pointers_[i] = &value->variant;
      if (IsOutput(parameter.kind)) outputs_[i + 1] = value;
    } else if (IsRequired(parameter.kind)) {
      return Fail(OXAQRY_E_COUNT, {"the argument ", parameter.name, " of ", method.name, " is left out"});
    }
  }
  outputs_[0] = given.result == nullptr ? nullptr : Use(finder, given.result, true, code);
  return code;
}

Value* Arguments::Use(const Finder& finder, const oxaqry_value* handle, bool isWritten, std::int32_t& code) noexcept {
  const FoundObject found = finder.Find(handle, HandleKind::Value);
  code = found.code;
  if (found.object == nullptr) return nullptr;
  auto& value = static_cast<Value&>(*found.object);
  if (value.uses < 0 || (isWritten && value.uses > 0)) {
    code = IsInUse();
    return nullptr;
  }
  value.uses = isWritten ? -1 : value.uses + 1;
  used_[usedCount_++] = {&value, isWritten};
  return &value;
}

void Arguments::Keep(const Finder& finder, const MethodEntry& method, const GivenValues& given) noexcept {
  const std::span used = std::span(used_).first(usedCount_);
  if (std::any_of(used.begin(), used.end(), [](const Used& each) { return each.value->uses > 1; })) return;
  method_ = &method;
  handles_[0] = given.result;
  std::copy_n(given.values, count_, handles_.begin() + 1);
  releases_ = finder.releases();
}

void Arguments::Release() noexcept {
  for (const Used& each : std::span(used_).first(usedCount_)) {
    each.value->uses = each.isWritten ? 0 : each.value->uses - 1;
  }
}

void Arguments::GiveTexts(std::int32_t encoding, const char** texts, std::size_t* lengths) const {
  for (std::size_t i = 0; i <= count_; ++i) {
    Value* const value = outputs_[i];
    GiveText(texts + i, lengths + i, value == nullptr ? std::string_view("") : value->Text(encoding));
  }
}

}  // namespace oxaqrycln::c
