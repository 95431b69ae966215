// hit_marks.h - marks the hits of a query in the texts of a document.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_HIT_MARKS_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_HIT_MARKS_H_

#include <cstdint>
#include <string>
#include <vector>

#include "tools/devserver/archive/documents.h"

namespace oxaqrycln::devserver {

// Texts that the client chooses, of at most 256 characters each.
struct MarkTexts {
  std::string on;     // before a hit
  std::string off;    // after a hit
  std::string blank;  // replaces each blank of the text; "" leaves blanks as they are
};

struct MarkedText {
  std::string text;  // lines end with LF
  std::int64_t hitCount;
};

// The marked text of each segment, in order. query: a query of QueryArchive; "" marks nothing. Raises ServerError for
// an invalid query, and when the texts become too long for an answer.
std::vector<MarkedText> MarkHits(Database& database, const std::vector<Segment>& segments, const std::string& query,
                                 const MarkTexts& marks);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_HIT_MARKS_H_
