#include "values/sorted_list.h"

#include <algorithm>
#include <cstddef>

#include "values/code_page.h"
#include "values/errors.h"

namespace oxaqrycln {

void SortedList::Add(std::string_view text, std::int32_t data) {
  entries_.push_back({UpperCase(text), std::string(text), data});
  sorted_ = entries_.size() == 1;
}

void SortedList::Clear() noexcept {
  entries_.clear();
  sorted_ = true;
}

const std::string& SortedList::Text(std::int32_t position) { return At(position).text; }

std::int32_t SortedList::Data(std::int32_t position) { return At(position).data; }

const SortedList::Entry& SortedList::At(std::int32_t position) {
  if (position < 0 || position >= Count()) throw RuntimeError(error::kSubscriptOutOfRange);
  if (!sorted_) std::ranges::stable_sort(entries_, {}, &Entry::key);
  sorted_ = true;
  return entries_[static_cast<std::size_t>(position)];
}

}  // namespace oxaqrycln
