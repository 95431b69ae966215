#include "archive/text_items.h"

#include <cstdint>
#include <utility>

namespace oxaqrycln {

std::vector<std::string> SegmentTexts(const ResponseBuffer& lines, std::string_view lineBreak) {
  std::vector<std::string> texts;
  if (lines.Count() == 0) return texts;
  std::string current(lines.Line(0));
  const auto complete = [&] {
    texts.push_back(current.size() > 2 ? current.substr(1, current.size() - 2) : std::string());
  };
  for (std::int32_t i = 1; i < lines.Count(); ++i) {
    const std::string_view line = lines.Line(i);
    // Kept: a text is also split between a line that happens to end with a caret and one that happens to begin with
    // one.
    if (lines.Line(i - 1).ends_with('^') && line.starts_with('^')) {
      complete();
      current = line;
    } else {
      current.append(lineBreak).append(line);
    }
  }
  complete();
  return texts;
}

std::vector<std::string> Notes(const ResponseBuffer& lines) {
  std::vector<std::string> notes;
  for (std::int32_t i = 0; i < lines.Count(); ++i) {
    std::string note(lines.Line(i++));
    const std::string_view first = lines.Line(i);
    note.append(",").append(first.substr(first.empty() ? 0 : 1));
    while (!note.ends_with('^')) note.append("\r\n").append(lines.Line(++i));
    note.pop_back();
    notes.push_back(std::move(note));
  }
  return notes;
}

bool StartsRecord(std::string_view line) noexcept {
  return line.starts_with('^') && line.find("^,^") != std::string_view::npos;
}

}  // namespace oxaqrycln
