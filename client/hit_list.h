// hit_list.h - the hits of a search. A hit list owns its rows: other requests do not change it.
#ifndef OXAQRYCLN_CLIENT_HIT_LIST_H_
#define OXAQRYCLN_CLIENT_HIT_LIST_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace oxaqrycln::client {

// Names a document. An empty version is the newest one.
struct DocumentName {
  std::string channel;
  std::string archive;
  std::string id;
  std::string version;
};

// All texts are UTF-8.
struct Hit {
  DocumentName document;
  std::vector<std::string> values;  // of the display columns; a row may have fewer than there are columns
  // The value of a column, counted from 0; "" when the row lacks it.
  std::string_view Value(std::size_t column) const noexcept {
    return column < values.size() ? std::string_view(values[column]) : std::string_view();
  }
};

enum class Order { Ascending, Descending };

// What a column holds, as the server says. Dates and numbers come as the server writes them.
enum class ColumnKind { Text, Date, Number };

class HitList {
 public:
  using const_iterator = std::vector<Hit>::const_iterator;

  // How many hits the query has; more than size() when a limit cut the list.
  std::int64_t total() const noexcept { return total_; }
  // The titles of the display columns.
  const std::vector<std::string>& columns() const noexcept { return columns_; }
  // The position, counted from 0, of the column of a title, whatever its letter case; "1" is the first column when none
  // has that title. Raises BadArgument, which lists the columns, when there is none or several.
  std::size_t Column(std::string_view title) const;
  // Of a column, counted from 0.
  ColumnKind KindOf(std::size_t column) const;
  // Whether the server can put the hits together as one image file.
  bool isMultiPageImage() const noexcept { return isMultiPageImage_; }
  // Key and value of each field of the layout, in the server's order.
  const std::vector<std::pair<std::string, std::string>>& layout() const noexcept { return layout_; }

  std::size_t size() const noexcept { return hits_.size(); }
  bool empty() const noexcept { return hits_.empty(); }
  const Hit& operator[](std::size_t position) const { return hits_.at(position); }
  const_iterator begin() const noexcept { return hits_.begin(); }
  const_iterator end() const noexcept { return hits_.end(); }

  // Sorts by a column, counted from 0, as its kind asks for; equal hits keep their order. Makes no request. Raises
  // BadArgument for a column that does not exist.
  void Sort(std::size_t column, Order order = Order::Ascending);
  // Removes a hit, counted from 0. Raises BadArgument when there is none.
  void Remove(std::size_t position);

 private:
  friend class Archive;
  // Whether the first hit comes behind the last one in ascending order.
  bool BeginsGreater(std::size_t column) const;

  std::int64_t total_ = 0;
  bool isMultiPageImage_ = false;
  std::vector<std::string> columns_;
  std::vector<std::pair<std::string, std::string>> layout_;
  std::string flags_;  // the line of the answer that says what the columns hold
  std::vector<Hit> hits_;
};

}  // namespace oxaqrycln::client

#endif  // OXAQRYCLN_CLIENT_HIT_LIST_H_
