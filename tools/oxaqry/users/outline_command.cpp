#include "tools/oxaqry/users/outline_command.h"

#include <ostream>
#include <vector>

#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/cli/value_json.h"
#include "tools/oxaqry/users/database.h"
#include "tools/oxaqry/users/lists.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

struct Node {
  Variant id;
  Variant level;
  Variant fieldId;
  Variant description;
  Variant dataType;
  Variant isExpanded;
  Variant childCount;
  std::string content;
  std::vector<Node> children;
};

// The children of a node and what is below them; the roots for the parent 0.
std::vector<Node> ReadNodes(UserDatabase& database, std::int32_t outliner, const Variant& parent, std::int32_t depth) {
  clsQuery& query = database.query();
  const std::int32_t count = query.GetOutlinerContentInit(outliner, parent).ToLong();
  if (count < 0) database.Fail("the outliner cannot be read");
  std::vector<Node> nodes(static_cast<std::size_t>(count));
  for (Node& node : nodes) {
    node.content = query.GetOutlinerContentNext(&node.id, &node.level, &node.fieldId, &node.description, &node.dataType,
                                                &node.isExpanded, &node.childCount);
  }
  for (Node& node : nodes) {
    if (depth > 1 && node.childCount.ToLong() > 0) node.children = ReadNodes(database, outliner, node.id, depth - 1);
  }
  return nodes;
}

Json JsonOf(const std::vector<Node>& nodes) {
  Json list = Json::array();
  for (const Node& node : nodes) {
    list.push_back({{"id", JsonFromValue(node.id)},
                    {"level", JsonFromValue(node.level)},
                    {"field", JsonId(node.fieldId.ToText())},
                    {"description", JsonFromValue(node.description)},
                    {"dataType", JsonFromValue(node.dataType)},
                    {"content", ToUtf8(node.content)},
                    {"expanded", JsonFromValue(node.isExpanded)},
                    {"childCount", JsonFromValue(node.childCount)},
                    {"nodes", JsonOf(node.children)}});
  }
  return list;
}

void AddRows(const std::vector<Node>& nodes, std::size_t indentation, Table& table) {
  for (const Node& node : nodes) {
    table.Add({node.id.ToText(), std::string(indentation, ' ') + Printable(node.content),
               Printable(node.description.ToText()), Printable(node.fieldId.ToText()),
               node.isExpanded.ToBoolean() ? "yes" : "no", node.childCount.ToText()});
    AddRows(node.children, indentation + 2, table);
  }
}

bool Exists(UserDatabase& database, const std::string& table, std::int32_t id) {
  return !database.Rows("SELECT ID FROM " + table + " WHERE ID=" + std::to_string(id), 1).empty();
}

}  // namespace

int ListOutliners(const Settings& settings, const std::string& channel, const std::string& archive,
                  const Output& output) {
  UserDatabase database(settings);
  const std::string channelName = database.Entry(channel, "the channel");
  const std::string archiveName = database.Entry(archive, "the archive");
  Variant lines;
  if (database.query().GetOutliner(channelName, archiveName, &lines).ToLong() < 0) {
    database.Fail("the outliners cannot be read");
  }
  Json outliners = Json::array();
  Table table({"ID", "Outliner"});
  for (const auto& line : ListLines(lines.ToText(), 2)) {
    outliners.push_back({{"id", JsonId(line[0])}, {"name", ToUtf8(line[1])}});
    table.Add({Printable(line[0]), Printable(line[1])});
  }
  if (output.json) {
    output.out << Json{{"channel", channel}, {"archive", archive}, {"outliners", outliners}}.dump(2) << '\n';
  } else {
    table.Print(output.out);
  }
  return 0;
}

int ShowOutliner(const Settings& settings, std::int32_t outliner, std::int32_t depth, const Output& output) {
  UserDatabase database(settings);
  if (!Exists(database, "Outliner", outliner)) {
    throw CommandError("there is no outliner " + std::to_string(outliner) +
                       ": \"oxaqry outline CHANNEL/ARCHIVE\" lists those of an archive");
  }
  const std::vector<Node> nodes = ReadNodes(database, outliner, 0, depth);
  if (output.json) {
    output.out << Json{{"outliner", outliner}, {"nodes", JsonOf(nodes)}}.dump(2) << '\n';
    return 0;
  }
  Table table({"ID", "Node", "Description", "Field", "Expanded", "Children"});
  AddRows(nodes, 0, table);
  table.Print(output.out);
  return 0;
}

int ShowOutlinerSearch(const Settings& settings, std::int32_t node, const Output& output) {
  UserDatabase database(settings);
  if (!Exists(database, "OutlinerContent", node)) {
    throw CommandError("there is no outliner node " + std::to_string(node));
  }
  const std::string expression = database.query().GetOutlinerSearchExpr(node);
  if (expression.empty()) {
    database.CheckMethod("the outliner cannot be read");
    throw CommandError("the outliner node " + std::to_string(node) +
                       " stands for no search: no level up to its root is searched, or its parents form a circle");
  }
  if (output.json) {
    output.out << Json{{"node", node}, {"expression", ToUtf8(expression)}}.dump(2) << '\n';
  } else {
    output.out << Printable(expression) << '\n';
  }
  return 0;
}

}  // namespace oxaqrycln::oxaqry
