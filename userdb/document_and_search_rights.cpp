// The definitions that restrict what a web user sees and searches: those of the user and of the user's groups, not of
// groups that contain groups.
#include <cstdint>
#include <set>
#include <string>
#include <tuple>
#include <utility>

#include "component/clsQuery.h"
#include "component/query_state.h"
#include "userdb/definition_rows.h"
#include "userdb/sql_values.h"
#include "values/errors.h"

namespace oxaqrycln {
namespace {

// Definition, grade, field, operator, value, type. Equal rows are one condition.
using Condition = std::tuple<IdKey, IdKey, IdKey, std::string, std::string, std::string>;

std::set<Condition> ReadConditions(QueryState& state, const std::string& user, const std::string& coversArchive) {
  const auto rows = state.Database().Execute(
      "SELECT DocRightFields.DocRightID, Grade, FieldID, Operator, Val, Type FROM DocRightFields, DocRights WHERE "
      "DocRightFields.DocRightID=DocRights.DocRightID AND " +
      coversArchive + " AND DocRights.DocRightID IN (" + DefinitionsOfUser("UserDocRights", "DocRightID", user) + ")");
  std::set<Condition> conditions;
  for (; !rows->EndOfRows(); rows->MoveNext()) {
    conditions.emplace(IdKeyOf(rows->Field(0)), IdKeyOf(rows->Field(1)), IdKeyOf(rows->Field(2)),
                       rows->Field(3).ToText(), rows->Field(4).ToText(), rows->Field(5).ToText());
  }
  rows->Close();
  return conditions;
}

const std::string& TextOf(const IdKey& id) { return std::get<2>(id); }

// A flag column contains 1, or True in databases with a Boolean type.
bool IsOne(const Variant& flag) {
  if (flag.IsNull()) return false;
  return flag.type() == Variant::Type::Boolean ? flag.ToBoolean() : flag.ToDouble() == 1;
}

struct SearchFields {
  std::set<IdKey> all;
  std::set<std::pair<IdKey, std::string>> fixed;
  std::set<IdKey> hidden;
  std::set<IdKey> noMatchcode;
};

SearchFields ReadSearchFields(QueryState& state, const std::string& user, const std::string& coversArchive) {
  const auto rows = state.Database().Execute(
      "SELECT FieldID, Val, HideField, NoMatchcode FROM SearchRightFields WHERE SearchRightID IN (" +
      DefinitionsOfUser("UserSearchRights", "SearchRightID", user) +
      ") AND SearchRightID IN (SELECT SearchRightID FROM SearchRightArchives WHERE " + coversArchive + ")");
  SearchFields fields;
  for (; !rows->EndOfRows(); rows->MoveNext()) {
    const IdKey field = IdKeyOf(rows->Field(0));
    fields.all.insert(field);
    std::string value = rows->Field(1).ToText();
    if (!value.empty()) fields.fixed.emplace(field, std::move(value));
    if (IsOne(rows->Field(2))) fields.hidden.insert(field);
    if (IsOne(rows->Field(3))) fields.noMatchcode.insert(field);
  }
  rows->Close();
  return fields;
}

std::string ListOf(const std::set<IdKey>& fields) {
  std::string list;
  for (const IdKey& field : fields) list.append(list.empty() ? "" : ",").append(CaretQuoted({TextOf(field)}));
  return list;
}

}  // namespace

Variant clsQuery::GetUserDocRights(const Variant& strUserID, const Variant& strChannel, const Variant& strArchive,
                                   Variant* strDocRights) {
  return state_->Run(Variant(), [&](QueryState& state, Variant& result) {
    WriteText(strDocRights, "");
    const auto conditions =
        ReadConditions(state, SqlNumber(strUserID), CoversArchive(state.Database(), strChannel, strArchive));
    std::string lines;
    for (const auto& [definition, grade, field, comparison, value, type] : conditions) {
      lines += CaretQuoted({TextOf(definition), TextOf(field), comparison, value, type}) + "\r\n";
    }
    WriteText(strDocRights, lines);
    result = Variant::Long(static_cast<std::int32_t>(conditions.size()));
  });
}

Variant clsQuery::GetUserSearchRights(const Variant& strUserID, const Variant& strChannel, const Variant& strArchive,
                                      Variant* strFixedValues, Variant* strHiddenFields,
                                      Variant* strNoMatchcodeFields) {
  return state_->Run(Variant(), [&](QueryState& state, Variant& result) {
    for (Variant* const output : {strFixedValues, strHiddenFields, strNoMatchcodeFields}) WriteText(output, "");
    const auto fields =
        ReadSearchFields(state, SqlNumber(strUserID), CoversArchive(state.Database(), strChannel, strArchive));
    std::string lines;
    for (const auto& [field, value] : fields.fixed) lines += CaretQuoted({TextOf(field), value}) + "\r\n";
    WriteText(strFixedValues, lines);
    WriteText(strHiddenFields, ListOf(fields.hidden));
    WriteText(strNoMatchcodeFields, ListOf(fields.noMatchcode));
    result = Variant::Long(static_cast<std::int32_t>(fields.all.size()));
  });
}

}  // namespace oxaqrycln
