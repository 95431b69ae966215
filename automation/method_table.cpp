#include "automation/method_table.h"

#include <algorithm>

#include "values/code_page.h"

namespace oxaqrycln {
namespace {

template <typename Entry>
const Entry* Find(std::span<const Entry> entries, std::string_view name) {
  const auto sameLetter = [](char left, char right) { return UpperCase(left) == UpperCase(right); };
  const auto found = std::ranges::find_if(
      entries, [&](const Entry& entry) { return std::ranges::equal(entry.name, name, sameLetter); });
  return found == entries.end() ? nullptr : &*found;
}

}  // namespace

const VariableEntry* FindVariable(std::string_view name) { return Find(PublicVariables(), name); }

const MethodEntry* FindMethod(std::string_view name) { return Find(PublicMethods(), name); }

}  // namespace oxaqrycln
