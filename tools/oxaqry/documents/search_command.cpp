// The command "search": one query with its hit list.
#include <ostream>
#include <vector>

#include "tools/oxaqry/cli/answers.h"
#include "tools/oxaqry/cli/document_name.h"
#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/cli/value_json.h"
#include "tools/oxaqry/documents/hit_order.h"
#include "tools/oxaqry/documents/search_command.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

struct HitList {
  std::int32_t rowCount = 0;  // the title row included
  Variant totalHits;
  Variant layoutKeys;
  Variant layoutValues;
  Variant isMultiTiff;
};

struct Row {
  Variant channel;
  Variant archive;
  Variant document;
  Variant version;
  std::vector<std::string> columns;
};

HitList Run(clsQuery& query, const SearchRequest& request) {
  HitList list;
  Variant status;
  const Variant result = query.TELOQueryArchiveInit(
      FieldFromUtf8(request.query), request.maxLines, request.maxHits, FieldFromUtf8(request.format),
      FieldFromUtf8(request.rights), FieldFromUtf8(request.layoutFieldId), FieldFromUtf8(request.layoutId),
      &list.layoutKeys, &list.layoutValues, &list.totalHits, &list.isMultiTiff, &status);
  list.rowCount = Count(result, status);
  return list;
}

// In the server's order, unless the list was sorted.
Row NextRow(clsQuery& query, std::int32_t number) {
  Row row;
  row.columns = SplitColumns(query.TELOSortHitlistNext(&row.channel, &row.archive, &row.document, &row.version));
  // A row that cannot be read leaves the channel unwritten, and the walk stands still.
  if (row.channel.IsEmpty()) {
    throw CommandError("row " + std::to_string(number) +
                       " of the hit list is malformed: see the log (--log-dir) and ask the query server's operator");
  }
  return row;
}

// As the commands on documents take it.
DocumentName Name(const Row& row) {
  return {ToUtf8(row.channel.ToText()), ToUtf8(row.archive.ToText()), ToUtf8(row.document.ToText()),
          ToUtf8(row.version.ToText())};
}

Json JsonColumns(const Row& row) {
  Json columns = Json::array();
  for (const std::string& column : row.columns) columns.push_back(ToUtf8(column));
  return columns;
}

std::vector<std::string> Cells(const Row& row) {
  std::vector<std::string> cells{Printable(row.channel.ToText()), Printable(row.archive.ToText()),
                                 Printable(row.document.ToText()), Printable(row.version.ToText())};
  for (const std::string& column : row.columns) cells.push_back(Printable(column));
  return cells;
}

void PrintJson(clsQuery& query, const HitList& list, std::ostream& out) {
  Json columns = Json::array();
  Json hits = Json::array();
  for (std::int32_t i = 0; i < list.rowCount; ++i) {
    const Row row = NextRow(query, i + 1);
    if (i == 0) {
      columns = JsonColumns(row);
      continue;
    }
    hits.push_back({{"name", ToText(Name(row))},
                    {"channel", ToUtf8(row.channel.ToText())},
                    {"archive", ToUtf8(row.archive.ToText())},
                    {"document", ToUtf8(row.document.ToText())},
                    {"version", ToUtf8(row.version.ToText())},
                    {"columns", JsonColumns(row)}});
  }
  const Json document{{"totalHits", ToUtf8(list.totalHits.ToText())},
                      {"multiTiff", list.isMultiTiff.ToBoolean()},
                      {"layoutKeys", ToUtf8(list.layoutKeys.ToText())},
                      {"layoutValues", ToUtf8(list.layoutValues.ToText())},
                      {"columns", std::move(columns)},
                      {"hits", std::move(hits)}};
  out << document.dump(2) << '\n';
}

void PrintTable(clsQuery& query, const HitList& list, std::ostream& out) {
  if (list.rowCount > 0) {
    std::vector<std::string> titles = Cells(NextRow(query, 1));
    titles[2] = "Document";
    titles[3] = "Version";
    Table table(std::move(titles));
    for (std::int32_t i = 1; i < list.rowCount; ++i) table.Add(Cells(NextRow(query, i + 1)));
    table.Print(out);
    out << '\n';
  }
  out << "Showing " << std::max(list.rowCount - 1, 0) << " of " << Printable(list.totalHits.ToText()) << " hits\n";
}

}  // namespace

int Search(const Settings& settings, const SearchRequest& request, const Output& output) {
  const auto query = settings.Connect();
  const HitList list = Run(*query, request);
  if (request.sort && list.rowCount > 0) SortHits(*query, *request.sort, NextRow(*query, 1).columns, list.rowCount);
  if (output.json) {
    PrintJson(*query, list, output.out);
  } else {
    PrintTable(*query, list, output.out);
  }
  return 0;
}

}  // namespace oxaqrycln::oxaqry
