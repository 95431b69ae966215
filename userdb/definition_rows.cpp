#include "userdb/definition_rows.h"

#include <utility>

#include "userdb/sql_values.h"
#include "values/code_page.h"
#include "values/errors.h"

namespace oxaqrycln {
namespace {

std::string Covers(const std::string& column, const std::string& literal) {
  return "(" + column + "=" + literal + " OR " + column + "='' OR " + column + " IS NULL)";
}

}  // namespace

std::string CoversArchive(const Connection& database, const Variant& channel, const Variant& archive) {
  return Covers("Channel", SqlText(database, channel)) + " AND " + Covers("Archive", SqlText(database, archive));
}

// A UNION of two plain lookups, because databases use an index for each of the two but not for an OR of them.
std::string DefinitionsOfUser(std::string_view table, std::string_view definitionColumn, const std::string& userId) {
  const std::string name(table);
  const std::string select = "SELECT " + name + "." + std::string(definitionColumn) + " FROM " + name;
  return select + " WHERE " + name + ".UserID=" + userId + " UNION " + select + ", UserGroups WHERE " + name +
         ".UserID=UserGroups.GroupID AND UserGroups.UserID=" + userId;
}

IdKey IdKeyOf(const Variant& id) {
  if (id.IsNull()) return {0, 0, ""};
  std::string text = id.ToText();
  try {
    return {1, id.ToDouble(), text};
  } catch (const RuntimeError&) {
    return {2, 0, std::move(text)};
  }
}

NameKey NameKeyOf(std::string name) {
  std::string upper = UpperCase(name);
  return {std::move(upper), std::move(name)};
}

std::string CaretQuoted(std::initializer_list<std::string_view> texts) {
  std::string list;
  for (const std::string_view text : texts) list.append(list.empty() ? "^" : ",^").append(text).append("^");
  return list;
}

}  // namespace oxaqrycln
