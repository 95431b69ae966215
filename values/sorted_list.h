// sorted_list.h - a list of texts in ascending order, each with a number.
// Equal texts (by code page upper case) keep the order in which they were added.
#ifndef OXAQRYCLN_VALUES_SORTED_LIST_H_
#define OXAQRYCLN_VALUES_SORTED_LIST_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace oxaqrycln {

class SortedList {
 public:
  void Add(std::string_view text, std::int32_t data);
  void Clear() noexcept;
  std::int32_t Count() const noexcept { return static_cast<std::int32_t>(entries_.size()); }
  // The entry at a position counted from 0 in ascending order. Raise Subscript out of range.
  const std::string& Text(std::int32_t position);
  std::int32_t Data(std::int32_t position);

 private:
  struct Entry {
    std::string key;
    std::string text;
    std::int32_t data;
  };
  const Entry& At(std::int32_t position);
  std::vector<Entry> entries_;
  bool sorted_ = true;  // sorting waits for the first read after an addition
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_VALUES_SORTED_LIST_H_
