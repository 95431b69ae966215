// text_items.h - how answer lines make up the texts of segments and notes, which may run over several lines.
#ifndef OXAQRYCLN_ARCHIVE_TEXT_ITEMS_H_
#define OXAQRYCLN_ARCHIVE_TEXT_ITEMS_H_

#include <string>
#include <string_view>
#include <vector>

#include "support/response_buffer.h"

namespace oxaqrycln {

// Caret-quoted texts, "^first", "second^": an item ends where a line ends with "^" and the next begins with one. Its
// lines are joined by lineBreak, its first and last character dropped.
std::vector<std::string> SegmentTexts(const ResponseBuffer& lines, std::string_view lineBreak);

// Notes, "header", "^first", "second^": an item is the header, "," and the quoted text, its lines joined by CR LF.
// Raises Subscript out of range for a note that does not end.
std::vector<std::string> Notes(const ResponseBuffer& lines);

// Whether a line of segments begins one; any other line goes on with the text of the segment above it.
bool StartsRecord(std::string_view line) noexcept;

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_ARCHIVE_TEXT_ITEMS_H_
