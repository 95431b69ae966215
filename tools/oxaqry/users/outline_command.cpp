// The command "outline": the outliners of the web user database, their trees, and the searches of their nodes.
#include "tools/oxaqry/cli/document_name.h"
#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/cli/text.h"
#include "tools/oxaqry/users/commands.h"
#include "tools/oxaqry/users/lists.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

struct OutlineRequest {
  std::string what;  // CHANNEL/ARCHIVE, or the ID of an outliner
  std::int32_t depth = 10;
  std::optional<std::int32_t> node;
};

// The children of a node, with what is below them down to a number of levels; the roots for the parent 0.
Json ReadNodes(UserDatabase& database, std::int32_t outliner, std::int32_t parent, std::int32_t depth) {
  clsQuery& query = database.query();
  const std::string failure = "the outliner cannot be read";
  const std::int32_t count = database.Checked(query.GetOutlinerContentInit(outliner, parent), failure).ToLong();
  Json nodes = Json::array();
  for (std::int32_t i = 0; i < count; ++i) {
    Variant id;
    Variant level;
    Variant field;
    Variant description;
    Variant dataType;
    Variant isExpanded;
    Variant childCount;
    const Variant content = database.Checked(
        query.GetOutlinerContentNext(&id, &level, &field, &description, &dataType, &isExpanded, &childCount), failure);
    nodes.push_back({{"id", id.ToLong()},
                     {"level", JsonFromValue(level)},
                     {"field", JsonId(field.ToText())},
                     {"description", JsonFromValue(description)},
                     {"dataType", JsonFromValue(dataType)},
                     {"content", ToUtf8(content.ToText())},
                     {"expanded", isExpanded.ToBoolean()},
                     {"childCount", childCount.ToLong()},
                     {"nodes", Json::array()}});
  }
  // The component holds one list of nodes at a time.
  for (Json& node : nodes) {
    if (depth > 1 && node["childCount"] > 0) node["nodes"] = ReadNodes(database, outliner, node["id"], depth - 1);
  }
  return nodes;
}

void AddRows(const Json& nodes, std::size_t indentation, Json& rows) {
  for (Json row : nodes) {
    const Json children = std::move(row["nodes"]);
    row["content"].get_ref<std::string&>().insert(0, indentation, ' ');
    rows.push_back(std::move(row));
    AddRows(children, indentation + 2, rows);
  }
}

int ListOutliners(UserDatabase& database, const std::vector<std::string>& archive, const Output& output) {
  const std::string channelName = database.Entry(archive[0], "the channel");
  const std::string archiveName = database.Entry(archive[1], "the archive");
  Variant lines;
  database.Checked(database.query().GetOutliner(channelName, archiveName, &lines), "the outliners cannot be read");
  const Json outliners = LineObjects(lines.ToText(), 1, {"id", "name"});
  return PrintResult(output, {{"channel", archive[0]}, {"archive", archive[1]}, {"outliners", outliners}},
                     TableText(output, outliners, {{"ID", "id"}, {"Outliner", "name"}}));
}

int ShowOutliner(UserDatabase& database, std::int32_t outliner, std::int32_t depth, const Output& output) {
  if (!database.Exists("Outliner WHERE ID=?", {outliner})) {
    throw CommandError("there is no outliner " + std::to_string(outliner) +
                       ": \"oxaqry outline CHANNEL/ARCHIVE\" lists those of an archive");
  }
  const Json nodes = ReadNodes(database, outliner, 0, depth);
  Json rows = Json::array();
  AddRows(nodes, 0, rows);
  return PrintResult(output, {{"outliner", outliner}, {"nodes", nodes}},
                     TableText(output, rows,
                               {{"ID", "id"},
                                {"Node", "content"},
                                {"Description", "description"},
                                {"Field", "field"},
                                {"Expanded", "expanded"},
                                {"Children", "childCount"}}));
}

int ShowSearch(UserDatabase& database, std::int32_t node, const Output& output) {
  const std::string name = "outliner node " + std::to_string(node);
  if (!database.Exists("OutlinerContent WHERE ID=?", {node})) throw CommandError("there is no " + name);
  const std::string expression =
      database.Checked(database.query().GetOutlinerSearchExpr(node), "the outliner cannot be read").ToText();
  if (expression.empty()) {
    throw CommandError("the " + name + " has no search: no level from it up to its root is searched");
  }
  return PrintResult(output, {{"node", node}, {"expression", ToUtf8(expression)}}, Printable(expression));
}

int Outline(UserDatabase& database, const OutlineRequest& request, const Output& output) {
  if (request.node) return ShowSearch(database, *request.node, output);
  if (const auto outliner = ParseInteger(request.what)) return ShowOutliner(database, *outliner, request.depth, output);
  const auto parts = SplitName(request.what);
  if (parts.size() != 2 || parts[0].empty() || parts[1].empty()) {
    throw UsageError("name an archive as CHANNEL/ARCHIVE, or an outliner by its ID, not \"" + request.what + "\"");
  }
  return ListOutliners(database, parts, output);
}

}  // namespace

void AddOutline(CommandParser& parser, CLI::App& parent) {
  AddCommand(
      parser, parent, "outline", "list the outliners of an archive, show the tree of one, or the search of a node",
      "Examples:\n  oxaqry outline Finance/Invoices --config web.json\n"
      "  oxaqry outline 1 --depth 2 --config web.json\n"
      "  oxaqry search \"$(oxaqry outline --expression 3 --config web.json)\" --hosts localhost,2001",
      Outline, [](CLI::App& command, OutlineRequest& request) {
        CLI::Option* const what = command.add_option("WHAT", request.what, "CHANNEL/ARCHIVE, or the ID of an outliner");
        CLI::Option* const node =
            command.add_option("--expression", request.node, "print the search of the node with this ID")
                ->excludes(what)
                ->type_name("NODE");
        command.add_option("--depth", request.depth, "how many levels of the tree to show (default 10)")
            ->check(CLI::Validator(CLI::Range(std::int32_t{1}, std::int32_t{100})).description(""))
            ->excludes(node)
            ->type_name("N");
        RequireOptions(command, {what, node}, 1,
                       "name CHANNEL/ARCHIVE, the ID of an outliner, or a node with --expression");
      });
}

}  // namespace oxaqrycln::oxaqry
