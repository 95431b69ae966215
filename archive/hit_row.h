// hit_row.h - reading a row of a hit list: the document it names, and its display columns.
#ifndef OXAQRYCLN_ARCHIVE_HIT_ROW_H_
#define OXAQRYCLN_ARCHIVE_HIT_ROW_H_

#include <string>
#include <string_view>

#include "values/variant.h"

namespace oxaqrycln {

// The outputs for the fields before the display columns; nullptr for one that the page left out.
struct HitRowOutputs {
  Variant* channel;
  Variant* archive;
  Variant* documentId;
  Variant* version;
};

// Writes the outputs and then the display columns, "^column^,^column^". The title row names the channel "Channel" and
// the archive "Archive", whatever its first field holds. Raises Subscript out of range for a row without an output's
// field and Invalid procedure call for a reference that names no channel or archive.
void ReadHitRow(std::string_view line, bool isTitle, const HitRowOutputs& outputs, std::string& columns);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_ARCHIVE_HIT_ROW_H_
