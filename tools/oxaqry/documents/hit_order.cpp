#include "tools/oxaqry/documents/hit_order.h"

#include <string_view>

#include "support/text_helpers.h"
#include "tools/oxaqry/cli/answers.h"
#include "tools/oxaqry/cli/output.h"
#include "tools/oxaqry/cli/table.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

constexpr std::string_view kDescending = ":desc";
constexpr std::string_view kLineEnd = "\r\n";

// The columns with that title, counted from 1; else the one of that number.
std::vector<std::int32_t> FindColumns(const std::string& name, const std::vector<std::string>& titles) {
  std::vector<std::int32_t> found;
  const auto count = static_cast<std::int32_t>(titles.size());
  const auto wanted = FromUtf8(name);
  for (std::int32_t column = 1; wanted && column <= count; ++column) {
    if (UpperCase(titles[static_cast<std::size_t>(column - 1)]) == UpperCase(*wanted)) found.push_back(column);
  }
  const bool isNumber = !name.empty() && name.find_first_not_of("0123456789") == std::string::npos;
  const std::int32_t number = isNumber ? ToNumber(name) : 0;
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
  query.TELOGetAllArchivesExtFirst();  // to the first line of the answer, whatever it was to
  for (std::int32_t i = 0; i < kTitleLine + rowCount; ++i) {
    std::string line = query.TELOGetAllArchivesNext();
    if (i == kFlagLine || i == kTitleLine) lines.head += line.append(kLineEnd);
    if (i == kTitleLine + 1) lines.firstHit = line;
    if (i > kTitleLine) lines.lastHit = std::move(line);
  }
  return lines;
}

// Whether the first hit's key is greater than the last one's. Only the component can tell, and it tells by sorting the
// two in ascending order: a list without hits leaves the direction "descending", which the next sort turns round.
bool IsFirstGreater(clsQuery& query, const Lines& lines, std::int32_t column) {
  query.TELOSortHitlist2Init(lines.head, column);
  std::string two = lines.head;
  for (const std::string* hit : {&lines.firstHit, &lines.lastHit}) two.append(*hit).append(kLineEnd);
  query.TELOSortHitlist2Init(two, column);
  query.TELOSortHitlist2Next();  // the titles
  return query.TELOSortHitlist2Next() != lines.firstHit;
}

}  // namespace

void SortHits(clsQuery& query, const std::string& order, const std::vector<std::string>& titles,
              std::int32_t rowCount) {
  const bool descends = order.ends_with(kDescending);
  const std::string name = order.substr(0, order.size() - (descends ? kDescending.size() : 0));
  const std::int32_t column = FindColumn(name, titles);
  // The first sort turns the direction of the data round: it is ascending when the first hit is the greater one.
  const bool ascendsAtFirst = IsFirstGreater(query, ReadLines(query, rowCount), column);
  const int sorts = ascendsAtFirst == descends ? 2 : 1;
  for (int i = 0; i < sorts; ++i) Count(query.TELOSortHitlistInit(column), Variant());
}

}  // namespace oxaqrycln::oxaqry
