#include "tools/oxaqry/cli/table.h"

#include <algorithm>

namespace oxaqrycln::oxaqry {
namespace {

constexpr std::size_t kGap = 2;
// Shorter cells are not readable.
constexpr std::size_t kLeastWidth = 10;

bool StartsCharacter(char byte) noexcept { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }

std::size_t Width(std::string_view utf8) {
  return static_cast<std::size_t>(std::ranges::count_if(utf8, StartsCharacter));
}

void Widen(std::vector<std::size_t>& widths, const std::vector<std::string>& cells) {
  if (widths.size() < cells.size()) widths.resize(cells.size());
  for (std::size_t i = 0; i < cells.size(); ++i) widths[i] = std::max(widths[i], Width(cells[i]));
}

// At most that many characters; the last one is an ellipsis where some are missing.
std::string Shortened(const std::string& utf8, std::size_t most) {
  if (Width(utf8) <= most) return utf8;
  std::size_t end = 0;
  for (std::size_t characters = 1; characters < most; ++characters) {
    do {
      ++end;
    } while (end < utf8.size() && !StartsCharacter(utf8[end]));
  }
  return utf8.substr(0, end) + "\u2026";
}

std::string RowText(const std::vector<std::size_t>& widths, const std::vector<std::string>& cells) {
  std::string line;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const std::string cell = Shortened(cells[i], widths[i]);
    line += cell;
    line.append(widths[i] - Width(cell) + kGap, ' ');
  }
  line.erase(line.find_last_not_of(' ') + 1);
  return line + '\n';
}

std::size_t LineWidth(const std::vector<std::size_t>& widths, std::size_t most) {
  std::size_t sum = 0;
  for (const std::size_t width : widths) sum += std::min(width, most) + kGap;
  return sum - std::min(sum, kGap);
}

}  // namespace

std::string Printable(std::string_view text) {
  std::string printable;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const bool isC1 = byte == 0xC2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0;
    if (byte < 0x20 || byte == 0x7F || isC1) {
      printable += "\uFFFD";
    } else {
      printable += text[i];
    }
    i += isC1 ? 1 : 0;
  }
  return printable;
}

bool IsPrintable(std::string_view text) { return Printable(text) == text; }

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

std::string Table::Text(std::size_t columns) const {
  std::vector<std::size_t> widths;
  Widen(widths, titles_);
  for (const auto& row : rows_) Widen(widths, row);
  std::size_t most = widths.empty() ? 0 : *std::ranges::max_element(widths);
  while (columns > 0 && most > kLeastWidth && LineWidth(widths, most) > columns) --most;
  if (columns > 0 && LineWidth(widths, most) > columns) return Records();
  for (std::size_t& width : widths) width = std::min(width, most);
  return Rows(widths);
}

std::string Table::Rows(const std::vector<std::size_t>& widths) const {
  std::vector<std::string> rule;
  for (const std::size_t width : widths) rule.emplace_back(width, '-');
  std::string text = RowText(widths, titles_) + RowText(widths, rule);
  for (const auto& row : rows_) text += RowText(widths, row);
  return text;
}

std::string Table::Records() const {
  std::string text;
  for (const auto& row : rows_) {
    if (!text.empty()) text += '\n';
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (row[i].empty()) continue;
      text += (i < titles_.size() && !titles_[i].empty() ? titles_[i] + ": " : "  ") + row[i] + '\n';
    }
  }
  return text;
}

}  // namespace oxaqrycln::oxaqry
