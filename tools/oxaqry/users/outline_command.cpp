// The command "outline": the outliners of the web user database, their trees, and the searches of their nodes.
#include "client/archive.h"
#include "tools/oxaqry/cli/document_name.h"
#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/cli/text.h"
#include "tools/oxaqry/users/commands.h"

namespace oxaqrycln::oxaqry {
namespace {

struct OutlineRequest {
  std::string what;  // CHANNEL/ARCHIVE, or the ID of an outliner
  std::int32_t depth = 10;
  std::optional<std::int32_t> node;
};

// The children of a node, with what is below them down to a number of levels; the roots for the parent 0.
Json ReadNodes(client::Archive& archive, const std::string& outliner, std::int32_t parent, std::int32_t depth) {
  Json nodes = Json::array();
  for (const client::OutlinerNode& node : archive.Nodes(outliner, parent)) {
    const bool isOpened = depth > 1 && node.childCount > 0;
    nodes.push_back({{"id", node.id},
                     {"level", node.level},
                     {"field", JsonId(node.fieldId)},
                     {"description", node.description},
                     {"dataType", node.dataType},
                     {"content", node.content},
                     {"expanded", node.isExpanded},
                     {"childCount", node.childCount},
                     {"nodes", isOpened ? ReadNodes(archive, outliner, node.id, depth - 1) : Json::array()}});
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

int ListOutliners(client::Archive& layer, const std::string& channel, const std::string& archive,
                  const Output& output) {
  Json outliners = Json::array();
  for (const client::Outliner& outliner : layer.Outline(channel, archive)) {
    outliners.push_back({{"id", JsonId(outliner.id)}, {"name", outliner.name}});
  }
  return PrintResult(output, {{"channel", channel}, {"archive", archive}, {"outliners", outliners}},
                     TableText(output, outliners, {{"ID", "id"}, {"Outliner", "name"}}));
}

int ShowOutliner(UserDatabase& database, std::int32_t outliner, std::int32_t depth, const Output& output) {
  if (!database.Exists("Outliner WHERE ID=?", {outliner})) {
    throw CommandError("there is no outliner " + std::to_string(outliner) +
                       ": \"oxaqry outline CHANNEL/ARCHIVE\" lists those of an archive");
  }
  client::Archive archive(database.settings().ForDatabase());
  const Json nodes = ReadNodes(archive, std::to_string(outliner), 0, depth);
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
  client::Archive archive(database.settings().ForDatabase());
  const std::string expression = archive.NodeQuery(node);
  if (expression.empty()) {
    throw CommandError("the " + name + " has no search: no level from it up to its root is searched");
  }
  return PrintResult(output, {{"node", node}, {"expression", expression}}, Printable(expression));
}

int Outline(UserDatabase& database, const OutlineRequest& request, const Output& output) {
  if (request.node) return ShowSearch(database, *request.node, output);
  if (const auto outliner = ParseInteger(request.what)) return ShowOutliner(database, *outliner, request.depth, output);
  const auto parts = SplitName(request.what);
  if (parts.size() != 2 || parts[0].empty() || parts[1].empty()) {
    throw UsageError("name an archive as CHANNEL/ARCHIVE, or an outliner by its ID, not \"" + request.what + "\"");
  }
  client::Archive archive(database.settings().ForDatabase());
  return ListOutliners(archive, parts[0], parts[1], output);
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
