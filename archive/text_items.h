// text_items.h - the texts of segments and notes, which may extend over several lines of an answer.
#ifndef OXAQRYCLN_ARCHIVE_TEXT_ITEMS_H_
#define OXAQRYCLN_ARCHIVE_TEXT_ITEMS_H_

#include <string>
#include <string_view>
#include <vector>

#include "support/response_buffer.h"

namespace oxaqrycln {

// Caret-quoted texts, "^first", "second^": an item ends with a line that ends with "^" if the next line begins with
// "^". Its lines are joined by lineBreak, and its first and last character are removed.
std::vector<std::string> SegmentTexts(const ResponseBuffer& lines, std::string_view lineBreak);

// Notes, "header", "^first", "second^": an item is the header, "," and the quoted text, its lines joined by CR LF.
// Raises Subscript out of range for a note that does not end.
std::vector<std::string> Notes(const ResponseBuffer& lines);

// Whether a line begins a segment; any other line continues the text of the segment above it.
bool StartsRecord(std::string_view line) noexcept;

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_ARCHIVE_TEXT_ITEMS_H_
