// Outliners: trees of predefined search values that pages offer their users.
#include <algorithm>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "component/clsQuery.h"
#include "component/query_state.h"
#include "userdb/definition_rows.h"
#include "userdb/sql_values.h"
#include "values/code_page.h"
#include "values/errors.h"

namespace oxaqrycln {
namespace {

// The row of a level in OutlinerNodes; a level without a row has empty texts and adds nothing to a search.
struct Level {
  std::string fieldId;
  std::string description;
  std::string dataType;
  bool isSearched = false;
};
using Levels = std::map<std::int16_t, Level>;

// The search setting is a text. Blank, "False" and every spelling of the number 0 count as 0, all other texts do not.
bool IsNotZero(const Variant& setting) {
  if (setting.ToText().find_first_not_of(' ') == std::string::npos) return false;
  try {
    return setting.ToBoolean();
  } catch (const RuntimeError&) {
    return true;
  }
}

Levels ReadLevels(QueryState& state, const std::string& outliner) {
  const auto rows = state.Database().Execute(
      "SELECT NodeLevel, FieldID, Description, DataType, Search FROM OutlinerNodes WHERE OutlinerID=" + outliner);
  Levels levels;
  for (; !rows->EndOfRows(); rows->MoveNext()) {
    levels.emplace(rows->Field(0).ToInteger(), Level{rows->Field(1).ToText(), rows->Field(2).ToText(),
                                                     rows->Field(3).ToText(), IsNotZero(rows->Field(4))});
  }
  rows->Close();
  return levels;
}

const Level& LevelOf(const Levels& levels, std::int16_t number) {
  static const auto* const none = new Level;  // NOLINT: never destroyed, as a host may call while the process ends
  const auto found = levels.find(number);
  return found == levels.end() ? *none : found->second;
}

// The condition for the children of a node; those of none are the roots.
std::string ChildrenOf(const std::string& outliner, const Variant& parent) {
  const std::string id = parent.IsMissing() ? "0" : SqlNumber(parent);
  const bool isNone = id.find_first_not_of("+-0") == std::string::npos;
  return "OutlinerID=" + outliner + " AND " + (isNone ? "(ParentID=0 OR ParentID IS NULL)" : "ParentID=" + id);
}

// The number of children of each node that meets the condition; nodes without children are left out.
std::map<std::int32_t, std::int32_t> CountChildren(QueryState& state, const std::string& outliner,
                                                   const std::string& condition) {
  const auto rows = state.Database().Execute(
      "SELECT ParentID, COUNT(*) FROM OutlinerContent WHERE OutlinerID=" + outliner +
      " AND ParentID IN (SELECT ID FROM OutlinerContent WHERE " + condition + ") GROUP BY ParentID");
  std::map<std::int32_t, std::int32_t> counts;
  for (; !rows->EndOfRows(); rows->MoveNext()) counts[rows->Field(0).ToLong()] = rows->Field(1).ToLong();
  rows->Close();
  return counts;
}

// The nodes that meet the condition, in the order of their contents.
std::vector<OutlinerNode> ReadNodes(QueryState& state, const std::string& outliner, const std::string& condition) {
  const Levels levels = ReadLevels(state, outliner);
  const auto counts = CountChildren(state, outliner, condition);
  const auto rows =
      state.Database().Execute("SELECT ID, NodeLevel, Content, Expand FROM OutlinerContent WHERE " + condition);
  std::map<std::pair<NameKey, std::int32_t>, OutlinerNode> sorted;
  for (; !rows->EndOfRows(); rows->MoveNext()) {
    const std::int32_t id = rows->Field(0).ToLong();
    const std::int16_t number = rows->Field(1).ToInteger();
    const Level& level = LevelOf(levels, number);
    const std::string content = rows->Field(2).ToText();
    const Variant expand = rows->Field(3);
    const auto count = counts.find(id);
    sorted[{NameKeyOf(content), id}] = {id,
                                        number,
                                        level.fieldId,
                                        level.description,
                                        level.dataType,
                                        content,
                                        !expand.IsNull() && expand.ToBoolean(),
                                        count == counts.end() ? 0 : count->second};
  }
  rows->Close();
  std::vector<OutlinerNode> nodes;
  for (auto& [key, node] : sorted) nodes.push_back(std::move(node));
  return nodes;
}

struct PathNode {
  std::int32_t id = 0;
  std::int32_t outliner = 0;
  std::int16_t level = 0;
  Variant parent;
  std::string content;
};

// The node and its parents, up to the root. Also ends at a parent that does not exist or belongs to another outliner.
// Raises Invalid procedure call for parents that form a circle.
std::vector<PathNode> PathToRoot(QueryState& state, const std::string& node) {
  std::vector<PathNode> path;
  std::set<std::int32_t> visited;
  for (std::string next = node; next != "0";) {
    const auto rows = state.Database().Execute(
        "SELECT ID, OutlinerID, NodeLevel, ParentID, Content FROM OutlinerContent WHERE ID=" + next);
    if (rows->EndOfRows()) break;
    PathNode found{rows->Field(0).ToLong(), rows->Field(1).ToLong(), rows->Field(2).ToInteger(), rows->Field(3),
                   rows->Field(4).ToText()};
    rows->Close();
    if (!path.empty() && found.outliner != path.front().outliner) break;
    if (!visited.insert(found.id).second) {
      throw RuntimeError(error::kInvalidProcedureCall,
                         "The parents of outliner node " + std::to_string(path.front().id) + " form a circle");
    }
    next = found.parent.IsNull() ? "0" : std::to_string(found.parent.ToLong());
    path.push_back(std::move(found));
  }
  return path;
}

// Letters of the code page, digits, ".", "-", "_" and "*".
bool NeedsNoQuotes(char character) {
  if (std::string_view("0123456789.-_*\xDF").find(character) != std::string_view::npos) return true;  // DF: sharp s
  return UpperCase(character) != character || LowerCase({&character, 1}).front() != character;
}

std::string ConditionOf(const Level& level, std::string value) {
  std::ranges::replace(value, '"', ' ');
  const bool isPlain = level.dataType != "TXT" && !value.empty() && std::ranges::all_of(value, NeedsNoQuotes);
  return level.fieldId + ":" + (isPlain ? value : "\"" + value + "\"");
}

}  // namespace

Variant clsQuery::GetOutliner(const Variant& strChannel, const Variant& strArchive, Variant* strOutliner) {
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
    WriteText(strOutliner, "");
    const auto rows = state.Database().Execute(
        "SELECT ID, DisplayName FROM Outliner WHERE ID IN (SELECT OutlinerID FROM OutlinerArchives WHERE " +
        CoversArchive(state.Database(), strChannel, strArchive) + ")");
    std::map<std::pair<NameKey, IdKey>, std::string> lines;
    for (; !rows->EndOfRows(); rows->MoveNext()) {
      const Variant id = rows->Field(0);
      const std::string name = rows->Field(1).ToText();
      lines[{NameKeyOf(name), IdKeyOf(id)}] = CaretQuoted({id.ToText(), name}) + "\r\n";
    }
    rows->Close();
    std::string list;
    for (const auto& [key, line] : lines) list += line;
    WriteText(strOutliner, list);
    result = Variant::Long(static_cast<std::int32_t>(lines.size()));
  });
}

Variant clsQuery::GetOutlinerContentInit(const Variant& lngOutlinerID, const Variant& lngParentID) {
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
    state.outliner.Assign({});
    const std::string outliner = SqlNumber(lngOutlinerID);
    result = Variant::Long(state.outliner.Assign(ReadNodes(state, outliner, ChildrenOf(outliner, lngParentID))));
  });
}

std::string clsQuery::GetOutlinerContentNext(Variant* lngID, Variant* intLevel, Variant* strFieldID,
                                             Variant* strDescription, Variant* strDataType, Variant* blnExpand,
                                             Variant* lngChildren) {
  return state_->Run(std::string(), [&](QueryState& state, std::string& result) {
    const OutlinerNode* const node = state.outliner.Next();
    if (node == nullptr) return;
    if (lngID != nullptr) *lngID = Variant::Long(node->id);
    if (intLevel != nullptr) *intLevel = Variant::Integer(node->level);
    WriteText(strFieldID, node->fieldId);
    WriteText(strDescription, node->description);
    WriteText(strDataType, node->dataType);
    if (blnExpand != nullptr) *blnExpand = node->isExpanded;
    if (lngChildren != nullptr) *lngChildren = Variant::Long(node->childCount);
    result = node->content;
  });
}

void clsQuery::GetOutlinerContentReset() { state_->outliner.Reset(); }

Variant clsQuery::UpdateOutlinerContent(const Variant& lngID, const Variant& blnExpand) {
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
    const std::string condition = " WHERE ID=" + SqlNumber(lngID);
    const std::string flag = blnExpand.ToBoolean() ? "1" : "0";
    const auto rows = state.Database().Execute("SELECT ID FROM OutlinerContent" + condition);
    const bool isThere = !rows->EndOfRows();
    rows->Close();
    if (!isThere) throw RuntimeError(error::kInvalidProcedureCall, "There is no such outliner node");
    state.Database().Execute("UPDATE OutlinerContent SET Expand=" + flag + condition);
    result = Variant::Long(1);
  });
}

std::string clsQuery::GetOutlinerSearchExpr(const Variant& lngID) {
  return state_->Run(std::string(), [&](QueryState& state, std::string& result) {
    const std::vector<PathNode> path = PathToRoot(state, SqlNumber(lngID));
    if (path.empty()) return;
    const Levels levels = ReadLevels(state, std::to_string(path.front().outliner));
    std::string expression;
    // clang 14 cannot compile the reversed views of libstdc++.
    for (auto node = path.rbegin(); node != path.rend(); ++node) {  // NOLINT(modernize-loop-convert)
      const Level& level = LevelOf(levels, node->level);
      if (!level.isSearched) continue;
      expression += (expression.empty() ? "" : " AND ") + ConditionOf(level, node->content);
    }
    result = std::move(expression);
  });
}

}  // namespace oxaqrycln
