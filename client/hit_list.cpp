#include "client/hit_list.h"

#include <charconv>
#include <cstdint>
#include <utility>

#include "client/errors.h"
#include "client/text.h"
#include "component/clsQuery.h"
#include "values/code_page.h"
#include "values/text_parts.h"

namespace oxaqrycln::client {
namespace {

constexpr std::size_t kFieldsInFront = 3;  // reference, document and version

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
  const auto wanted = FromUtf8(title);
  std::vector<std::size_t> found;
  for (std::size_t i = 0; wanted && i < columns_.size(); ++i) {
    if (UpperCase(FromUtf8(columns_[i]).value_or("")) == UpperCase(*wanted)) found.push_back(i);
  }
  for (std::size_t i = 0; found.empty() && i < columns_.size(); ++i) {
    if (title == std::to_string(i + 1)) return i;
  }
  if (found.size() == 1) return found.front();
  std::string list;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    list += (i == 0 ? "; the columns are " : ", ") + std::to_string(i + 1) + " " + columns_[i];
  }
  const std::string quoted = "\"" + std::string(title) + "\"";
  throw BadArgument((found.empty() ? "there is no column " + quoted
                                   : "there are several columns " + quoted + ": give the number of one") +
                    list);
}

ColumnKind HitList::KindOf(std::size_t column) const {
  constexpr std::uint32_t kDate = 0x400;
  constexpr std::uint32_t kNumber = 0x200;
  if (column >= columns_.size()) throw BadArgument("there is no column " + std::to_string(column));
  const std::vector<std::string> all = Fields(flags_);
  std::uint32_t flags = 0;
  if (column + kFieldsInFront < all.size()) {
    const std::string_view text = Trimmed(all[column + kFieldsInFront]);
    std::from_chars(text.data(), text.data() + text.size(), flags);
  }
  if ((flags & kDate) != 0) return ColumnKind::Date;
  return (flags & kNumber) != 0 ? ColumnKind::Number : ColumnKind::Text;
}

bool HitList::BeginsGreater(std::size_t column) const {
  if (hits_.size() < 2) return false;
  HitList ends;
  ends.columns_ = columns_;
  ends.flags_ = flags_;
  ends.hits_ = {{{"", "", "first", ""}, hits_.front().values}, {{"", "", "last", ""}, hits_.back().values}};
  ends.Sort(column);
  return ends.hits_.front().document.id == "last";
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
