#include "automation/method_table.h"

#include <algorithm>
#include <cstddef>

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

std::vector<Member> CollectMembers() {
  std::vector<Member> members(PublicVariables().size() + PublicMethods().size() + 1);
  for (const VariableEntry& variable : PublicVariables()) {
    members.at(static_cast<std::size_t>(variable.number)).variable = &variable;
  }
  for (const MethodEntry& method : PublicMethods()) {
    members.at(static_cast<std::size_t>(method.number)).method = &method;
  }
  return members;
}

const std::vector<Member>& Members() {
  static const auto* const members = new std::vector<Member>(CollectMembers());  // NOLINT: never destroyed
  return *members;
}

}  // namespace

Member FindMember(int number) {
  const std::vector<Member>& members = Members();
  const auto index = static_cast<std::size_t>(number);
  return number > 0 && index < members.size() ? members[index] : Member{};
}

int MemberCount() { return static_cast<int>(Members().size()) - 1; }

const VariableEntry* FindVariable(std::string_view name) { return Find(PublicVariables(), name); }

const MethodEntry* FindMethod(std::string_view name) { return Find(PublicMethods(), name); }

}  // namespace oxaqrycln
