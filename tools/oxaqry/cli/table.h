// table.h - records as aligned columns for people.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_TABLE_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_TABLE_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace oxaqrycln::oxaqry {

// A UTF-8 text for a terminal. Control characters, which could drive it, become U+FFFD.
std::string Printable(std::string_view text);
// Whether the text holds no control character.
bool IsPrintable(std::string_view text);

// The same for a text of several lines.
std::string PrintableLines(std::string_view text);

struct Output;
// The columns of the terminal that the output is; 0 for any other output.
std::size_t TerminalColumns(const Output& output) noexcept;

class Table {
 public:
  // Titles and cells are UTF-8 whose characters are each one column wide, as all of Windows-1252 are.
  explicit Table(std::vector<std::string> titles) : titles_(std::move(titles)) {}
  // Missing cells are empty; cells without a title get an untitled column.
  void Add(std::vector<std::string> cells) { rows_.push_back(std::move(cells)); }
  // One line for the titles, one that underlines them, one for each row. Where that is wider than a terminal of that
  // many columns, long cells end with an ellipsis; where even this does not fit, each row becomes a record of lines
  // "title: value". 0 is any width.
  std::string Text(std::size_t columns) const;

 private:
  std::string Rows(const std::vector<std::size_t>& widths) const;
  std::string Records() const;

  std::vector<std::string> titles_;
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_TABLE_H_
