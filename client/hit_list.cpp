#include "client/hit_list.h"

#include <charconv>
#include <utility>

#include "client/errors.h"
#include "component/clsQuery.h"
#include "values/code_page.h"

namespace oxaqrycln::client {
namespace {

constexpr std::string_view kLineEnd = "\r\n";

// The columns as those of a line of the class, with a number in the place of the hit's reference.
void AddLine(std::string& lines, std::size_t number, const std::vector<std::string>& values) {
  lines.append("^").append(std::to_string(number)).append("^,^0^,^0^");
  for (const std::string& value : values) {
    // The value came from the code page, so it has a place there.
    lines.append(",^").append(FromUtf8(value).value_or("")).append("^");
  }
  lines.append(kLineEnd);
}

}  // namespace

std::size_t HitList::Column(std::string_view title) const {
  const std::string wanted = UpperCase(FromUtf8(title).value_or(""));
  std::size_t found = columns_.size();
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    if (UpperCase(FromUtf8(columns_[i]).value_or("")) != wanted) continue;
    if (found != columns_.size()) throw BadArgument("there are several columns \"" + std::string(title) + "\"");
    found = i;
  }
  if (found == columns_.size()) throw BadArgument("there is no column \"" + std::string(title) + "\"");
  return found;
}

void HitList::Sort(std::size_t column, Order order) {
  if (column >= columns_.size()) throw BadArgument("there is no column " + std::to_string(column));
  std::string head = flags_;
  head.append(kLineEnd);
  AddLine(head, 0, columns_);
  std::string lines = head;
  for (std::size_t i = 0; i < hits_.size(); ++i) AddLine(lines, i, hits_[i].values);
  // The first sort of an instance turns the order of the data round; without any hits that leaves it descending, and
  // each further sort turns it again.
  clsQuery sorter;
  const auto number = static_cast<std::int32_t>(column + 1);
  sorter.TELOSortHitlist2Init(head, number);
  const bool isDescending = order == Order::Descending;
  Variant rows;
  for (int i = 0; i < (isDescending ? 2 : 1); ++i) rows = sorter.TELOSortHitlist2Init(lines, number);
  if (rows.ToLong() != static_cast<std::int32_t>(hits_.size() + 1)) throw Error("the hit list cannot be sorted");
  sorter.TELOSortHitlist2Next();  // the titles
  std::vector<Hit> sorted;
  sorted.reserve(hits_.size());
  for (std::size_t i = 0; i < hits_.size(); ++i) {
    const std::string line = sorter.TELOSortHitlist2Next();
    std::size_t from = hits_.size();
    if (line.starts_with('^')) std::from_chars(line.data() + 1, line.data() + line.size(), from);
    sorted.push_back(hits_.at(from));
  }
  hits_ = std::move(sorted);
}

void HitList::Remove(std::size_t position) {
  if (position >= hits_.size()) throw BadArgument("there is no hit " + std::to_string(position));
  hits_.erase(hits_.begin() + static_cast<std::ptrdiff_t>(position));
}

}  // namespace oxaqrycln::client
