// hit_marks.h - marks in the texts of a document what a query has found there.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_HIT_MARKS_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_HIT_MARKS_H_

#include <cstdint>
#include <string>
#include <vector>

#include "tools/devserver/archive/documents.h"

namespace oxaqrycln::devserver {

// Text that a client wants in the place of something; each at most 256 characters long.
struct MarkTexts {
  std::string on;     // before a hit
  std::string off;    // behind it
  std::string blank;  // for each blank of the text; "" leaves them
};

struct MarkedText {
  std::string text;  // lines end with LF
  std::int64_t hitCount;
};

// The text of each segment, in their order. query: as of QueryArchive; "" marks nothing. Raises ServerError for a query
// that is none, and when the texts would grow past what an answer may hold.
std::vector<MarkedText> MarkHits(Database& database, const std::vector<Segment>& segments, const std::string& query,
                                 const MarkTexts& marks);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_HIT_MARKS_H_
