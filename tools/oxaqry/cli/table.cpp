#include "tools/oxaqry/cli/table.h"

#include <algorithm>

#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

std::size_t Width(std::string_view utf8) {
  const auto startsCharacter = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; };
  return static_cast<std::size_t>(std::ranges::count_if(utf8, startsCharacter));
}

void Widen(std::vector<std::size_t>& widths, const std::vector<std::string>& cells) {
  if (widths.size() < cells.size()) widths.resize(cells.size());
  for (std::size_t i = 0; i < cells.size(); ++i) widths[i] = std::max(widths[i], Width(cells[i]));
}

std::string RowText(const std::vector<std::size_t>& widths, const std::vector<std::string>& cells) {
  std::string line;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    line += cells[i];
    line.append(widths[i] - Width(cells[i]) + 2, ' ');
  }
  line.erase(line.find_last_not_of(' ') + 1);
  return line + '\n';
}

}  // namespace

std::string Printable(std::string_view text) {
  std::string printable;
  for (const char character : text) {
    const std::string utf8 = ToUtf8({&character, 1});
    const auto first = static_cast<unsigned char>(utf8[0]);
    const bool isC1 = first == 0xC2 && static_cast<unsigned char>(utf8[1]) < 0xA0;
    printable += first < 0x20 || first == 0x7F || isC1 ? "\uFFFD" : utf8;
  }
  return printable;
}

bool IsPrintable(std::string_view text) { return Printable(text) == ToUtf8(text); }

std::string PrintableLines(std::string_view text) {
  std::string printable;
  for (std::size_t from = 0;;) {
    const std::size_t end = text.find('\n', from);
    std::string_view line = text.substr(from, end - from);
    if (line.ends_with('\r')) line.remove_suffix(1);
    printable += Printable(line);
    if (end == std::string_view::npos) return printable;
    printable += '\n';
    from = end + 1;
  }
}

std::string Table::Text() const {
  std::vector<std::size_t> widths;
  Widen(widths, titles_);
  for (const auto& row : rows_) Widen(widths, row);
  std::vector<std::string> rule;
  for (const std::size_t width : widths) rule.emplace_back(width, '-');
  std::string text = RowText(widths, titles_) + RowText(widths, rule);
  for (const auto& row : rows_) text += RowText(widths, row);
  return text;
}

}  // namespace oxaqrycln::oxaqry
