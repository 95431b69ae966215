// The command "search": a query with its hit list.
#include <ostream>
#include <vector>

#include "tools/oxaqry/cli/command_families.h"
#include "tools/oxaqry/cli/result.h"
#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/cli/text.h"
#include "tools/oxaqry/documents/hit_list.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

// Channel, archive, document and version, then the display columns.
struct Row {
  std::vector<std::string> name;
  std::vector<std::string> columns;
};

std::vector<Row> ReadRows(ArchiveQuery& archive, std::int32_t rowCount) {
  std::vector<Row> rows;
  archive.ForEach(rowCount, "row", [&](std::int32_t) {
    Variant channel;
    Variant name;
    Variant document;
    Variant version;
    const std::string columns = archive->TELOSortHitlistNext(&channel, &name, &document, &version);
    rows.push_back({{channel.ToText(), name.ToText(), document.ToText(), version.ToText()}, SplitColumns(columns)});
  });
  return rows;
}

Json JsonHits(const std::vector<Row>& rows) {
  Json hits = Json::array();
  for (std::size_t i = 1; i < rows.size(); ++i) {
    const auto name = JsonList(rows[i].name).get<std::vector<std::string>>();
    hits.push_back({{"name", ToText(DocumentName{name[0], name[1], name[2], name[3]})},
                    {"channel", name[0]},
                    {"archive", name[1]},
                    {"document", name[2]},
                    {"version", name[3]},
                    {"columns", JsonList(rows[i].columns)}});
  }
  return hits;
}

void PrintRows(const std::vector<Row>& rows, const Output& output) {
  const auto cells = [](const Row& row) {
    std::vector<std::string> all = Cells(row.name);
    for (std::string& cell : Cells(row.columns)) all.push_back(std::move(cell));
    return all;
  };
  std::vector<std::string> titles = cells(rows.front());
  titles[2] = "Document";
  titles[3] = "Version";
  Table table(std::move(titles));
  for (std::size_t i = 1; i < rows.size(); ++i) table.Add(cells(rows[i]));
  output.out << table.Text(TerminalColumns(output)) << '\n';
}

int Search(const Settings& settings, const SearchRequest& request, const Output& output) {
  ArchiveQuery archive(settings, output);
  const HitList list = RunQuery(archive, request);
  const std::vector<Row> rows = ReadRows(archive, list.rowCount);
  const Json document{{"totalHits", ToUtf8(list.totalHits.ToText())},
                      {"multiTiff", list.isMultiTiff.ToBoolean()},
                      {"layoutKeys", ToUtf8(list.layoutKeys.ToText())},
                      {"layoutValues", ToUtf8(list.layoutValues.ToText())},
                      {"columns", rows.empty() ? Json::array() : JsonList(rows.front().columns)},
                      {"hits", output.json ? JsonHits(rows) : Json()}};
  if (!output.json && !rows.empty()) PrintRows(rows, output);
  return PrintResult(output, document,
                     "Showing " + std::to_string(std::max(list.rowCount - 1, 0)) + " of " +
                         Printable(list.totalHits.ToText()) + " hits");
}

}  // namespace

void AddSearch(CommandParser& parser) {
  const auto [search, request] = parser.AddQuery(
      parser.app(), "search", "run a query and show its hit list",
      "Examples:\n  oxaqry search invoice --hosts localhost,2001\n"
      "  oxaqry search '\"annual report\" NOT draft' --max 20 --format 'Full text' --hosts localhost,2001\n"
      "  oxaqry search invoice --sort Date:desc --hosts localhost,2001",
      Search);
  AddSearchArguments(*search, *request);
}

}  // namespace oxaqrycln::oxaqry
