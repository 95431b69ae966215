// The command "search": a query with its hit list.
#include <algorithm>
#include <optional>
#include <ostream>
#include <string_view>
#include <vector>

#include "client/text.h"
#include "tools/oxaqry/cli/archive.h"
#include "tools/oxaqry/cli/command_families.h"
#include "tools/oxaqry/cli/result.h"
#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/documents/search_arguments.h"

namespace oxaqrycln::oxaqry {
namespace {

// The titles as names of members: one that was there before gets its column number.
std::vector<std::string> MemberNames(const client::HitList& hits) {
  std::vector<std::string> names;
  for (const std::string& title : hits.columns()) {
    const bool isTaken = std::ranges::find(names, title) != names.end();
    names.push_back(isTaken ? title + " (" + std::to_string(names.size() + 1) + ")" : title);
  }
  return names;
}

// "-12" and "12,5" as a number; nothing for any other text.
std::optional<Json> NumberFrom(std::string text) {
  std::ranges::replace(text, ',', '.');
  const Json number = Json::parse(text, nullptr, false);
  return number.is_number() ? std::optional(number) : std::nullopt;
}

Json TypedValue(std::string_view text, client::ColumnKind kind) {
  if (kind == client::ColumnKind::Date) return client::IsoDate(text);
  // The server may write "1.234" for a thousand.
  const bool isPlain = kind == client::ColumnKind::Number && text.find('.') == std::string_view::npos;
  if (const auto number = isPlain ? NumberFrom(std::string(text)) : std::nullopt) return *number;
  return text;
}

Json JsonOf(const client::HitList& hits) {
  const std::vector<std::string> names = MemberNames(hits);
  Json layout = Json::object();
  for (const auto& [key, value] : hits.layout()) layout[key] = value;
  Json list = Json::array();
  for (const client::Hit& hit : hits) {
    Json values = Json::object();
    for (std::size_t i = 0; i < names.size(); ++i) values[names[i]] = TypedValue(hit.Value(i), hits.KindOf(i));
    list.push_back({{"name", ToText(hit.document)},
                    {"channel", hit.document.channel},
                    {"archive", hit.document.archive},
                    {"document", hit.document.id},
                    {"version", hit.document.version},
                    {"values", std::move(values)}});
  }
  return {{"totalHits", hits.total()},
          {"multiPageImage", hits.isMultiPageImage()},
          {"layout", std::move(layout)},
          {"columns", names},
          {"hits", std::move(list)}};
}

std::string TextOf(const client::HitList& hits, const Output& output) {
  std::string text;
  if (!hits.columns().empty()) {
    std::vector<std::string> titles{"Document"};
    titles.insert(titles.end(), hits.columns().begin(), hits.columns().end());
    Table table(Cells(titles));
    for (const client::Hit& hit : hits) {
      std::vector<std::string> cells{ToText(hit.document)};
      cells.insert(cells.end(), hit.values.begin(), hit.values.end());
      table.Add(Cells(cells));
    }
    text = table.Text(TerminalColumns(output)) + '\n';
  }
  return text + "Showing " + std::to_string(hits.size()) + " of " + std::to_string(hits.total()) + " hits";
}

client::HitList RunQuery(client::Archive& archive, const client::SearchOptions& options) {
  try {
    return archive.Search(options);
  } catch (const client::Refused& error) {
    // Query servers word it differently, but name the limit.
    const std::string text = error.what();
    if (options.queryMax == 0 || text.find(std::to_string(options.queryMax)) == std::string::npos) throw;
    throw client::Refused(text + " (--query-max sets the largest number of hits)", error.request());
  }
}

int Search(const Settings& settings, const client::SearchOptions& options, const Output& output) {
  client::Archive archive = OpenArchive(settings, output);
  const client::HitList hits = RunQuery(archive, options);
  return PrintResult(output, output.json ? JsonOf(hits) : Json(), output.json ? "" : TextOf(hits, output));
}

}  // namespace

void AddSearch(CommandParser& parser) {
  const auto [search, options] = parser.AddQuery(
      parser.app(), "search", "run a query and show its hit list",
      "Examples:\n  oxaqry search invoice --hosts localhost,2001\n"
      "  oxaqry search '\"annual report\" NOT draft' --max 20 --format 'Full text' --hosts localhost,2001\n"
      "  oxaqry search invoice --sort Date:desc --hosts localhost,2001",
      Search);
  AddSearchArguments(*search, *options);
}

}  // namespace oxaqrycln::oxaqry
