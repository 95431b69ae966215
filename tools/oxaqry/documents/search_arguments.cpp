#include "tools/oxaqry/documents/search_arguments.h"

#include <string_view>

namespace oxaqrycln::oxaqry {
namespace {

constexpr std::string_view kDescending = ":desc";

}  // namespace

void AddSearchArguments(CLI::App& command, client::SearchOptions& options) {
  command.add_option("QUERY", options.query, "the query expression")->required();
  command.add_option("--max", options.max, "largest number of hits to show, 0 for all (default 100)")
      ->check(FromZero<std::int32_t>())
      ->type_name("N");
  command.add_option("--query-max", options.queryMax, "largest number of hits the query may produce (default 1000)")
      ->check(FromZero<std::int32_t>())
      ->type_name("N");
  command.add_option("--format", options.format, "query format, as \"formats\" lists them")->type_name("F");
  const auto setRights = [&options](const std::string& rights) { options.folderRights = rights; };
  command
      .add_option_function<std::string>("--rights", setRights,
                                        "folder rights expression that restricts the search, \"$(#CHANNEL)\\ARCHIVE;\" "
                                        "for each archive; without any archive nothing is found")
      ->type_name("R");
  command.add_option("--layout", options.layout, "id of the hit list layout")->type_name("ID");
  command.add_option("--layout-field", options.layoutField, "field id of the hit list layout")->type_name("ID");
  const auto setSort = [&options](const std::string& text) {
    const bool descends = text.ends_with(kDescending);
    options.order = descends ? client::Order::Descending : client::Order::Ascending;
    options.sort = text.substr(0, text.size() - (descends ? kDescending.size() : 0));
    if (options.sort.empty()) throw CLI::ValidationError("--sort", "name a column");
  };
  command
      .add_option_function<std::string>(
          "--sort", setSort, "column to sort the hits by, its title or number (1 is the column after the document)")
      ->type_name("COLUMN[:desc]");
}

}  // namespace oxaqrycln::oxaqry
