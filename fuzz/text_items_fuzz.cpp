// The texts of segments and notes in answer lines. Input: the lines, separated by CR LF.
#include "archive/text_items.h"
#include "fuzz/input.h"
#include "tests/support/buffer_of.h"

using namespace oxaqrycln;
using namespace oxaqrycln::fuzz;
using oxaqrycln::testing::BufferOf;

namespace {

void CheckAnyLines(std::string_view text) {
  const ResponseBuffer lines = BufferOf(text);
  const auto count = static_cast<std::size_t>(lines.Count());
  std::size_t joined = 0;
  const auto segments = SegmentTexts(lines, "<br>");
  for (const std::string& each : segments) joined += each.size();
  Require(segments.size() <= count && (segments.empty() == (count == 0)), "a segment text has at least one line");
  Require(joined <= text.size() + count * 4, "segment texts consist of the lines and the breaks between them");
  ErrorOf([&] {
    joined = 0;
    const auto notes = Notes(lines);
    for (const std::string& each : notes) joined += each.size();
    Require(notes.size() <= count / 2, "a note has two lines");
    Require(joined <= text.size() + notes.size(), "notes consist of the lines and a comma each");
  });
  for (std::int32_t i = 0; i < lines.Count(); ++i) {
    if (StartsRecord(lines.Line(i))) Require(lines.Line(i).size() >= 3, "a record has its separators");
  }
}

// Lines that are quoted one by one are separate texts.
void CheckQuotedLines(std::string_view text) {
  std::string quoted;
  std::string headed;
  const auto lines = Parts(text, "\r\n");
  for (const std::string_view line : lines) {
    (quoted += '^').append(line).append("^\r\n");
    (headed += "mia\r\n^").append(line).append("^\r\n");
  }
  const auto segments = SegmentTexts(BufferOf(quoted), "\r\n");
  const auto notes = Notes(BufferOf(headed));
  Require(std::ranges::equal(segments, lines), "a quoted line is a segment text");
  Require(notes.size() == lines.size(), "a header and a quoted line are a note");
  for (std::size_t i = 0; i < notes.size(); ++i) {
    Require(notes[i] == "mia," + std::string(lines[i]), "a note is its header and its text");
  }
}

// A quoted text without a caret is one text, however many lines it has, except two empty lines: their carets look like
// the end of one text and the start of the next.
void CheckQuotedText(std::string text) {
  std::erase(text, '^');
  if (text == "\r\n") return;
  const auto segments = SegmentTexts(BufferOf("^" + text + "^"), "\r\n");
  const auto notes = Notes(BufferOf("mia\r\n^" + text + "^"));
  Require(segments == std::vector{text}, "a quoted text is a segment text");
  Require(notes == std::vector{"mia," + text}, "a header and a quoted text are a note");
}

}  // namespace

void oxaqrycln::fuzz::Run(std::string_view text) {
  CheckAnyLines(text);
  CheckQuotedLines(text);
  CheckQuotedText(std::string(text));
}
