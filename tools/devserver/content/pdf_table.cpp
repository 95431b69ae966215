#include "tools/devserver/content/pdf_table.h"

#include <hpdf.h>

#include <algorithm>
#include <memory>
#include <type_traits>

#include "tools/devserver/protocol/errors.h"

namespace oxaqrycln::devserver {
namespace {

// In points of 1/72 inch; y is measured from the bottom of the page.
constexpr float kPageWidth = 842;
constexpr float kPageHeight = 595;
constexpr float kMargin = 36;
constexpr float kTitleSize = 14;
constexpr float kTextSize = 8;
constexpr float kLineHeight = 10;
constexpr float kGap = 8;  // between two columns
constexpr float kHeadGap = 6;
constexpr std::size_t kMostCellLines = 6;
constexpr std::size_t kMostCellBytes = 3000;  // more than fit into these lines
constexpr char kEllipsis = '\x85';

using Document = std::unique_ptr<std::remove_pointer_t<HPDF_Doc>, void (*)(HPDF_Doc)>;
using Lines = std::vector<std::string>;

// A standard font needs no file. WinAnsiEncoding is Windows-1252.
HPDF_Font LoadFont(HPDF_Doc document, const char* name) { return HPDF_GetFont(document, name, "WinAnsiEncoding"); }

const HPDF_BYTE* Bytes(std::string_view text) { return reinterpret_cast<const HPDF_BYTE*>(text.data()); }

float WidthOf(HPDF_Font font, std::string_view text, float size) {
  const HPDF_TextWidth width = HPDF_Font_TextWidth(font, Bytes(text), static_cast<HPDF_UINT>(text.size()));
  return static_cast<float>(width.width) * size / 1000;
}

std::size_t CountFitting(HPDF_Font font, std::string_view text, float width, bool wholeWords) {
  return HPDF_Font_MeasureText(font, Bytes(text), static_cast<HPDF_UINT>(text.size()), width, kTextSize, 0, 0,
                               wholeWords ? HPDF_TRUE : HPDF_FALSE, nullptr);
}

// The text cut to the width, with an ellipsis at its end.
std::string Shorten(HPDF_Font font, std::string text, float size, float width) {
  while (!text.empty() && WidthOf(font, text + kEllipsis, size) > width) text.pop_back();
  return text + kEllipsis;
}

Lines Wrap(HPDF_Font font, std::string_view text, float width) {
  Lines lines;
  while (!text.empty()) {
    std::size_t count = CountFitting(font, text, width, true);
    if (count == 0) count = std::max<std::size_t>(CountFitting(font, text, width, false), 1);
    lines.emplace_back(text.substr(0, count));
    text.remove_prefix(count);
    if (lines.size() == kMostCellLines && !text.empty()) {
      lines.back() = Shorten(font, lines.back(), kTextSize, width);
      break;
    }
  }
  return lines;
}

// Reduces the widths of the columns to the room on the page: columns that need more than their share get an equal part
// of what the others leave.
std::vector<float> FitWidths(std::vector<float> widths, float room) {
  room -= kGap * static_cast<float>(widths.size() - 1);
  std::vector<float> ascending = widths;
  std::ranges::sort(ascending);
  float most = room;
  for (std::size_t index = 0; index < ascending.size(); ++index) {
    most = room / static_cast<float>(ascending.size() - index);
    if (ascending[index] > most) break;
    room -= ascending[index];
  }
  for (float& width : widths) width = std::min(width, std::max(most, 1.0F));
  return widths;
}

// The text as a cell can show it: libharu ends a text at a NUL and misprints other control characters, so all become
// blanks.
std::string Showable(std::string_view shown) {
  std::string text(shown.substr(0, kMostCellBytes));
  std::ranges::replace_if(
      text, [](char character) { return static_cast<unsigned char>(character) < 0x20 || character == 0x7F; }, ' ');
  return text;
}

class Writer {
 public:
  explicit Writer(const PdfTable& table)
      : document_(HPDF_New(nullptr, nullptr), HPDF_Free), title_(Showable(table.title)) {
    if (document_ == nullptr) throw ServerError("No memory for a PDF document");
    regular_ = LoadFont(document_.get(), "Helvetica");
    bold_ = LoadFont(document_.get(), "Helvetica-Bold");
    Check();
    constexpr float kTitleWidth = kPageWidth - 2 * kMargin;
    if (WidthOf(bold_, title_, kTitleSize) > kTitleWidth) title_ = Shorten(bold_, title_, kTitleSize, kTitleWidth);
    MeasureColumns(table);
    for (std::size_t row = 1; row < table.rows.size(); ++row) AddRow(table.rows[row]);
    if (page_ == nullptr) BeginPage();
    NumberPages();
    Check();
  }

  std::string Bytes() {
    HPDF_SaveToStream(document_.get());
    HPDF_ResetStream(document_.get());
    Check();
    std::string bytes(HPDF_GetStreamSize(document_.get()), '\0');
    auto count = static_cast<HPDF_UINT32>(bytes.size());
    HPDF_ReadFromStream(document_.get(), reinterpret_cast<HPDF_BYTE*>(bytes.data()), &count);
    if (count != bytes.size()) throw ServerError("The PDF document could not be read back");
    return bytes;
  }

 private:
  // After its first error libharu does nothing more and keeps the error.
  void Check() const {
    if (HPDF_GetError(document_.get()) == HPDF_OK) return;
    throw ServerError("The PDF document could not be made: error " + std::to_string(HPDF_GetError(document_.get())));
  }

  void MeasureColumns(const PdfTable& table) {
    std::vector<float> widths;
    for (std::size_t row = 0; row < table.rows.size(); ++row) {
      widths.resize(std::max(widths.size(), table.rows[row].size()));
      for (std::size_t column = 0; column < table.rows[row].size(); ++column) {
        const std::string text = Showable(table.rows[row][column]);
        const float width = WidthOf(row == 0 ? bold_ : regular_, text, kTextSize);
        widths[column] = std::max(widths[column], width + 0.5F);
      }
    }
    widths_ = FitWidths(std::move(widths), kPageWidth - 2 * kMargin);
    heads_ = WrapRow(table.rows.front(), bold_);
  }

  std::vector<Lines> WrapRow(const std::vector<std::string>& row, HPDF_Font font) const {
    std::vector<Lines> cells;
    for (std::size_t column = 0; column < row.size(); ++column) {
      cells.push_back(Wrap(font, Showable(row[column]), widths_[column]));
    }
    return cells;
  }

  static float HeightOf(const std::vector<Lines>& cells) {
    std::size_t lines = 1;
    for (const Lines& cell : cells) lines = std::max(lines, cell.size());
    return static_cast<float>(lines) * kLineHeight;
  }

  void AddRow(const std::vector<std::string>& row) {
    const std::vector<Lines> cells = WrapRow(row, regular_);
    if (page_ == nullptr || y_ - HeightOf(cells) < kMargin + kLineHeight) BeginPage();
    DrawRow(cells, regular_);
  }

  void BeginPage() {
    page_ = HPDF_AddPage(document_.get());
    Check();
    pages_.push_back(page_);
    HPDF_Page_SetWidth(page_, kPageWidth);
    HPDF_Page_SetHeight(page_, kPageHeight);
    y_ = kPageHeight - kMargin - kTitleSize;
    Show(kMargin, y_, title_, bold_, kTitleSize);
    y_ -= kTitleSize;
    DrawRow(heads_, bold_);
    HPDF_Page_MoveTo(page_, kMargin, y_ + kLineHeight - 3);
    HPDF_Page_LineTo(page_, kPageWidth - kMargin, y_ + kLineHeight - 3);
    HPDF_Page_Stroke(page_);
    y_ -= kHeadGap;
  }

  void DrawRow(const std::vector<Lines>& cells, HPDF_Font font) {
    float x = kMargin;
    for (std::size_t column = 0; column < cells.size(); ++column) {
      float y = y_;
      for (const std::string& line : cells[column]) {
        Show(x, y, line, font, kTextSize);
        y -= kLineHeight;
      }
      x += widths_[column] + kGap;
    }
    y_ -= HeightOf(cells);
  }

  void NumberPages() {
    for (std::size_t index = 0; index < pages_.size(); ++index) {
      page_ = pages_[index];
      const std::string text = "Page " + std::to_string(index + 1) + " of " + std::to_string(pages_.size());
      Show(kPageWidth - kMargin - WidthOf(regular_, text, kTextSize), kMargin - kLineHeight, text, regular_, kTextSize);
    }
  }

  void Show(float x, float y, const std::string& text, HPDF_Font font, float size) {
    HPDF_Page_BeginText(page_);
    HPDF_Page_SetFontAndSize(page_, font, size);
    HPDF_Page_TextOut(page_, x, y, text.c_str());
    HPDF_Page_EndText(page_);
  }

  Document document_;
  std::string title_;
  HPDF_Font regular_ = nullptr;
  HPDF_Font bold_ = nullptr;
  std::vector<float> widths_;
  std::vector<Lines> heads_;
  std::vector<HPDF_Page> pages_;
  HPDF_Page page_ = nullptr;
  float y_ = 0;
};

}  // namespace

std::string MakePdf(const PdfTable& table) { return Writer(table).Bytes(); }

}  // namespace oxaqrycln::devserver
