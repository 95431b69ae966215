// How "outline" stands on the command line.
#include <charconv>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <system_error>

#include "tools/oxaqry/cli/command_parser.h"
#include "tools/oxaqry/cli/document_name.h"
#include "tools/oxaqry/users/outline_command.h"

namespace oxaqrycln::oxaqry {
namespace {

struct OutlineRequest {
  std::string what;  // CHANNEL/ARCHIVE, or the ID of an outliner
  std::int32_t depth = 10;
  std::optional<std::int32_t> node;
};

// The ID that the text spells; nothing for anything else.
std::optional<std::int32_t> ParseId(const std::string& text) {
  std::int32_t id = 0;
  const auto [end, failed] = std::from_chars(text.data(), text.data() + text.size(), id);
  if (failed != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return id;
}

int Run(const OutlineRequest& request, const Settings& settings, const Output& output) {
  if (request.node) return ShowOutlinerSearch(settings, *request.node, output);
  if (const auto outliner = ParseId(request.what)) return ShowOutliner(settings, *outliner, request.depth, output);
  const auto parts = SplitName(request.what);
  if (parts.size() != 2 || parts[0].empty() || parts[1].empty()) {
    throw UsageError("name an archive as CHANNEL/ARCHIVE, or an outliner by its ID, not \"" + request.what + "\"");
  }
  return ListOutliners(settings, parts[0], parts[1], output);
}

}  // namespace

void AddOutline(CommandParser& parser) {
  const auto request = std::make_shared<OutlineRequest>();
  CLI::App* const outline = parser.AddDatabase(
      parser.app(), "outline", "list the outliners of an archive, show the tree of one, or the search of a node",
      "Examples:\n  oxaqry outline Finance/Invoices --config web.json\n"
      "  oxaqry outline 1 --depth 2 --config web.json\n"
      "  oxaqry search \"$(oxaqry outline --expression 3 --config web.json)\" --hosts localhost,2001",
      [request](const Settings& settings, const Output& output) { return Run(*request, settings, output); });
  CLI::Option* const what =
      outline->add_option("WHAT", request->what, "CHANNEL/ARCHIVE, or the ID of an outliner")->type_name("");
  CLI::Option* const node =
      outline
          ->add_option("--expression", request->node, "print the query that finds what the node of this ID stands for")
          ->excludes(what)
          ->type_name("NODE");
  outline->add_option("--depth", request->depth, "how many levels of the tree to show (default 10)")
      ->check(CLI::Validator(CLI::Range(std::int32_t{1}, std::int32_t{100})).description(""))
      ->excludes(node)
      ->type_name("N");
  outline->parse_complete_callback([what, node] {
    if (what->count() + node->count() == 0) {
      throw CLI::ValidationError("WHAT", "name CHANNEL/ARCHIVE, the ID of an outliner, or a node with --expression");
    }
  });
}

}  // namespace oxaqrycln::oxaqry
