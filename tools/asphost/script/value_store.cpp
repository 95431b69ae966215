#include "tools/asphost/script/value_store.h"

#include "tools/asphost/script/script_values.h"

namespace oxaqrycln::asphost {

namespace {
constexpr std::size_t kMostValues = 1000;
}

bool ValueStore::ByName::operator()(const std::wstring& left, const std::wstring& right) const noexcept {
  return CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(), static_cast<int>(right.size()),
                              TRUE) == CSTR_LESS_THAN;
}

OwnedVariant ValueStore::Get(const std::wstring& name) const {
  const auto found = values_.find(name);
  return found == values_.end() ? OwnedVariant() : CopyOf(found->second.get());
}

void ValueStore::Set(const std::wstring& name, const VARIANT& value) {
  OwnedVariant copy = CopyOf(value);
  if (HoldsObject(copy.get())) throw ScriptError{kIllegalCall, L"An object cannot be kept beyond its page"};
  if (values_.size() >= kMostValues && !values_.contains(name))
    throw ScriptError{kIllegalCall, L"There are too many values"};
  values_[name] = std::move(copy);
}

std::vector<std::wstring> ValueStore::Names() const {
  std::vector<std::wstring> names;
  for (const auto& [name, value] : values_) names.push_back(name);
  return names;
}

}  // namespace oxaqrycln::asphost
