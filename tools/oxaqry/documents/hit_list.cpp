#include "tools/oxaqry/documents/hit_list.h"

#include <string_view>

#include "tools/oxaqry/cli/errors.h"
#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/cli/text.h"
#include "tools/oxaqry/cli/value_json.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

constexpr std::string_view kDescending = ":desc";
constexpr std::string_view kLineEnd = "\r\n";

// The columns with that title, counted from 1; without one the column of that number.
std::vector<std::int32_t> FindColumns(const std::string& name, const std::vector<std::string>& titles) {
  std::vector<std::int32_t> found;
  const auto count = static_cast<std::int32_t>(titles.size());
  const auto wanted = FromUtf8(name);
  for (std::int32_t column = 1; wanted && column <= count; ++column) {
    if (UpperCase(titles[static_cast<std::size_t>(column - 1)]) == UpperCase(*wanted)) found.push_back(column);
  }
  const std::int32_t number = ParseNumber(name).value_or(0);
  if (found.empty() && number >= 1 && number <= count) found.push_back(number);
  return found;
}

std::int32_t FindColumn(const std::string& name, const std::vector<std::string>& titles) {
  const std::vector<std::int32_t> found = FindColumns(name, titles);
  if (found.size() == 1) return found.front();
  std::string list;
  for (std::size_t i = 0; i < titles.size(); ++i) {
    list += (list.empty() ? "" : ", ") + std::to_string(i + 1) + " " + Printable(titles[i]);
  }
  const std::string problem = found.empty() ? "there is no column \"" + name + "\" to sort by"
                                            : "there are several columns \"" + name + "\": give the number of one";
  throw CommandError(problem + (list.empty() ? "; the hit list has none" : "; the columns are " + list));
}

// The lines of the answer that the order depends on.
struct Lines {
  std::string head;  // flags and titles
  std::string firstHit;
  std::string lastHit;
};

Lines ReadLines(clsQuery& query, std::int32_t rowCount) {
  constexpr std::int32_t kFlagLine = 3;
  constexpr std::int32_t kTitleLine = 4;
  Lines lines;
  query.TELOGetAllArchivesExtFirst();  // back to the first line of the answer, of whatever kind it is
  for (std::int32_t i = 0; i < kTitleLine + rowCount; ++i) {
    std::string line = query.TELOGetAllArchivesNext();
    if (i == kFlagLine || i == kTitleLine) lines.head += line.append(kLineEnd);
    if (i == kTitleLine + 1) lines.firstHit = line;
    if (i > kTitleLine) lines.lastHit = std::move(line);
  }
  return lines;
}

// Whether the first hit's key is greater than the last one's. Found out by letting the component sort the two, because
// it alone knows the order: sorting a list without hits first leaves the direction "descending", which the next sort
// reverses.
bool IsFirstGreater(clsQuery& query, const Lines& lines, std::int32_t column) {
  query.TELOSortHitlist2Init(lines.head, column);
  std::string two = lines.head;
  for (const std::string* hit : {&lines.firstHit, &lines.lastHit}) two.append(*hit).append(kLineEnd);
  query.TELOSortHitlist2Init(two, column);
  query.TELOSortHitlist2Next();  // the titles
  return query.TELOSortHitlist2Next() != lines.firstHit;
}

// The titles are those of the display columns; rowCount is at least 1. Raises CommandError for a column that does not
// exist, or whose title several columns have.
void SortHits(ArchiveQuery& archive, const std::string& order, const HitList& list) {
  const bool descends = order.ends_with(kDescending);
  const std::string name = order.substr(0, order.size() - (descends ? kDescending.size() : 0));
  const std::int32_t column = FindColumn(name, list.titles);
  // The first sort reverses the direction that the data has: it is ascending when the first hit is the greater one.
  const bool ascendsAtFirst = IsFirstGreater(archive.query(), ReadLines(archive.query(), list.rowCount), column);
  const int sorts = ascendsAtFirst == descends ? 2 : 1;
  for (int i = 0; i < sorts; ++i) archive.Count(archive->TELOSortHitlistInit(column));
}

}  // namespace

void AddSearchArguments(CLI::App& command, SearchRequest& request) {
  command.add_option("QUERY", request.query, "the query expression")->required();
  command.add_option("--max", request.maxLines, "largest number of hits to show (default 100)")
      ->check(FromZero<std::int32_t>())
      ->type_name("N");
  command.add_option("--query-max", request.maxHits, "largest number of hits the query may produce (default 1000)")
      ->check(FromZero<std::int32_t>())
      ->type_name("N");
  command.add_option("--format", request.format, "query format, as \"formats\" lists them")->type_name("F");
  command.add_option("--rights", request.rights, "folder rights expression that restricts the search")->type_name("R");
  command.add_option("--layout", request.layoutId, "id of the hit list layout")->type_name("ID");
  command.add_option("--layout-field", request.layoutFieldId, "field id of the hit list layout")->type_name("ID");
  command
      .add_option("--sort", request.sort,
                  "column to sort the hits by, its title or number (1 is the column after the version)")
      ->type_name("COLUMN[:desc]");
}

HitList RunQuery(ArchiveQuery& archive, const SearchRequest& request) {
  HitList list;
  const Variant result = archive->TELOQueryArchiveInit(
      FieldFromUtf8(request.query), request.maxLines, request.maxHits, FieldFromUtf8(request.format),
      FieldFromUtf8(request.rights), FieldFromUtf8(request.layoutFieldId), FieldFromUtf8(request.layoutId),
      &list.layoutKeys, &list.layoutValues, &list.totalHits, &list.isMultiTiff, archive.status());
  try {
    list.rowCount = archive.Count(result);
  } catch (const CommandError& error) {
    // Query servers word it differently, but name the limit.
    const bool isLimit = archive.LastRequest().result == RequestResult::Refused && request.maxHits > 0 &&
                         std::string_view(error.what()).find(std::to_string(request.maxHits)) != std::string_view::npos;
    throw CommandError(error.what() + std::string(isLimit ? " (--query-max sets the largest number of hits)" : ""));
  }
  if (!request.sort || list.rowCount == 0) return list;
  list.titles = SplitColumns(archive->TELOSortHitlistNext());
  SortHits(archive, *request.sort, list);
  return list;
}

}  // namespace oxaqrycln::oxaqry
